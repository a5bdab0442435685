#include <algorithm>

#include "app/config/ConfigSettings.h"
#include "interface/TrackerInterface.h"
#include "midi/NoteMessage.h"

namespace vonta {
namespace {

constexpr int kMaxTicks = 10;                    // in one frame
constexpr int kMaxMidiMessages = 1024;           // in one frame: a stuck driver does not hold us

// Whole ticks since the last call; what is left over counts for the next.
int TakeTicks(std::uint32_t now, int perSecond, std::uint32_t& last, std::uint32_t& rest) {
    const auto period = static_cast<std::uint32_t>(std::max(1000 / std::max(perSecond, 1), 1));
    const std::uint32_t passed = now - last;
    const std::uint32_t ticks = passed / period + (passed % period + rest) / period;
    rest = (passed % period + rest) % period;
    last = now;
    return static_cast<int>(std::min<std::uint32_t>(ticks, kMaxTicks));
}

// Each modifier has its own action; any combination of them has that of none.
WheelModifier WheelModifierOf(int mask) {
    switch (mask) {
        case kMaskControl: return kWheelControl;
        case kMaskAlt: return kWheelAlt;
        case kMaskShift: return kWheelShift;
        default: return kWheelPlain;
    }
}

}  // namespace

void TrackerInterface::PollInput() {
    const int ticks = TakeTicks(Now(), SettingsOf(state_.Settings()).keyboard.ticksPerSecond, m_nKeyLast, m_nKeyRest);
    PollKeys();
    PollWheel();
    PollMidi();
    input_.EndEvents();
    for (int i = 0; i < ticks; ++i) KeyRepeatTick();
    if (m_bEndTextEdit) StopTextEdit();
}

// What was pressed while a question stood on the screen was meant for it, even behind the key that answered it.
void TrackerInterface::PollKeys() {
    input_.Poll();
    keysAnswered_ = state_.m_bDialogOpen;
    for (int i = 0; i < input_.EventCount(); ++i) {
        int key = kNoKey;
        bool pressed = false;
        input_.GetEvent(i, key, pressed);
        OnKey(key, pressed, true);
    }
    keysAnswered_ = false;
}

void TrackerInterface::PollWheel() {
    wheelRest_ += input_.GetMouseWheel();
    const int notches = static_cast<int>(std::clamp(wheelRest_, -100.0f, 100.0f));
    wheelRest_ = std::clamp(wheelRest_, -100.0f, 100.0f) - static_cast<float>(notches);
    if (notches == 0) return;
    if (state_.m_bDialogOpen) return void(GetScreen(kScreenQuestion).OnWheel(notches));

    for (const auto& screen : m_screens)
        if (screen->IsVisible() && screen->OnWheelAt(input_.MouseX(), input_.MouseY(), notches)) return;
    switch (SettingsOf(state_.Settings()).wheel[WheelModifierOf(ModifierMask())]) {
    case kWheelNothing: break;
    case kWheelScroll:
        for (const auto& screen : m_screens)
            if (screen->IsVisible() && screen->OnWheel(notches)) break;
        break;
    case kWheelRow:
        if (IsVisible(kScreenPattern) || IsVisible(kScreenTrackEditor)) state_.MoveRow(-notches, true);
        break;
    case kWheelInstrument:
        if (IsVisible(kScreenMain)) {
            const ListKind list = CurrentList();
            state_.SelectItem(list, state_.pending.m_nSelected[list] - notches);
        }
        break;
    }
}

void TrackerInterface::PollMidi() {
    const auto input = static_cast<std::size_t>(SettingsOf(state_.Settings()).midiInput);
    DrvMIDIIN* driver = state_.Player().GetMixer().midiIn[input].get();
    std::uint32_t message = 0;
    for (int i = 0; driver && i < kMaxMidiMessages && driver->Read(&message); ++i) {
        const NoteMessage note = DecodeNote(message);
        const bool asked = state_.m_bDialogOpen && note.kind == NoteMessage::Kind::On;   // nothing is written meanwhile
        if (note.kind != NoteMessage::Kind::Other && !asked)
            OnNoteFromMidi(note.note, note.kind == NoteMessage::Kind::On, note.velocity);
    }
}

void TrackerInterface::PollMouse() {
    const KeyRepeat repeat = SettingsOf(state_.Settings()).mouse;
    input_.PollMouse();
    MouseState mouse{input_.MouseX(), input_.MouseY()};
    mouse.left = input_.Left();
    mouse.right = input_.Right();
    mouse.leftEdge = mouse.left && !lastLeft_;
    mouse.rightEdge = mouse.right && !lastRight_;
    mouse.ticks = TakeTicks(Now(), repeat.ticksPerSecond, m_nMouseLast, m_nMouseRest);
    lastLeft_ = mouse.left;
    lastRight_ = mouse.right;
    if (mouse.leftEdge || mouse.rightEdge) StopTextEdit();
    regions_.Update(mouse, repeat.delay);
    KeepNameEdited();
}

}  // namespace vonta
