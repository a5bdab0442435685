#include <algorithm>
#include <utility>

#include "app/config/ConfigSettings.h"
#include "interface/keys/KeyEffects.h"
#include "interface/TrackerInterface.h"

namespace vonta {
namespace {

constexpr int kFirstPianoAction = 56, kLowerKeys = 17;   // then the keys of the upper row
constexpr int kOwnVolume = 255;

bool IsModifier(int key) { return key == kKeyLeftShift || key == kKeyLeftControl || key == kKeyAlt; }

// Of the piano rows, before the octave offset. The upper row skips one semitone before its last key.
int NoteOfPianoKey(int index) {
    constexpr int kLowerStart = 48, kUpperStart = 60, kLastUpperNote = 81;
    if (index < kLowerKeys) return kLowerStart + index;
    return index == TrackerInterface::kPianoKeys - 1 ? kLastUpperNote : kUpperStart + index - kLowerKeys;
}

}  // namespace

int TrackerInterface::ModifierMask() const {
    return (m_bControl ? kMaskControl : 0) | (m_bShift ? kMaskShift : 0) | (m_bAlt ? kMaskAlt : 0);
}

bool TrackerInterface::MatchAction(int key, int action, bool checkModifiers) const {
    if (action < 0 || action >= kKeyActions) return false;
    const KeyAction& binding = state_.Settings().keyTable[static_cast<std::size_t>(action)];
    if (binding.key != key) return false;
    return !checkModifiers ||
           (binding.control == m_bControl && binding.shift == m_bShift && binding.alt == m_bAlt);
}

// Releases are always heard, whoever has the keyboard, and so are the modifiers: none of them, no note and no repeat
// stays behind.
void TrackerInterface::OnKey(int key, bool pressed, bool fromDevice) {
    if (!pressed) return OnRelease(key);
    const bool elsewhere = IsEditingText() || state_.m_bDialogOpen || keysAnswered_ || keyboardOwned_;
    if (elsewhere) {
        if (fromDevice && QuestionTakes(key)) AnswerKey(key);
        return UpdateModifiers(key, true);
    }

    const int action = PerformKeyAction(*this, key);
    if (action < 0) UpdateModifiers(key, true);
    else if (fromDevice) Arm(key, action);
    const int piano = OnPianoKey(key, true);
    if (piano >= 0 && fromDevice) Arm(key, piano);
}

void TrackerInterface::OnRelease(int key) {
    UpdateModifiers(key, false);
    OnPianoKey(key, false);
    if (!IsModifier(key)) input_.DisarmKey(key);
}

void TrackerInterface::UpdateModifiers(int key, bool pressed) {
    if (key == kKeyLeftShift) m_bShift = pressed;
    if (key == kKeyLeftControl) m_bControl = pressed;
    if (key == kKeyAlt) m_bAlt = m_bAltFresh = pressed;
}

void TrackerInterface::Arm(int key, int action) {
    input_.ArmRepeat(key, ModifierMask(), action,
                     static_cast<std::uint32_t>(SettingsOf(state_.Settings()).keyboard.delay));
}

// A press sounds and enters the note where the cursor lets it: the result is the action then. Everything else ends the
// note that the key holds, even if the modifiers or the octave have changed since it began.
int TrackerInterface::OnPianoKey(int key, bool pressed) {
    for (int i = 0; i < kPianoKeys; ++i) {
        std::int8_t& held = heldNotes_[static_cast<std::size_t>(i)];
        const int action = kFirstPianoAction + i;
        const bool matches = MatchAction(key, action, true);
        if (!matches && !(held >= 0 && MatchAction(key, action, false))) continue;
        if (held >= 0) ReleaseNote(std::exchange(held, std::int8_t{-1}));
        if (!pressed || !matches || state_.pending.m_nCursorColumn != kColumnNote) return -1;
        held = static_cast<std::int8_t>(std::clamp(NoteOfPianoKey(i) + state_.m_nOctaveOffset, 0, int{kLastNote}));
        OnNote(NoteOfPianoKey(i), false, kOwnVolume);
        return action;
    }
    return -1;
}

// The mask is that of the moment: a changed modifier holds the repeat.
void TrackerInterface::KeyRepeatTick() {
    const int mask = ModifierMask();
    const auto run = [&](bool KeyAction::* repeats) {
        for (int key = 0; key < kKeyCodes; ++key)
            for (int action = 0; action < kKeyActions; ++action) {
                std::uint32_t& left = input_.Repeat(key, mask, action);
                if (left == Input::kNotArmed || !(state_.Settings().keyTable[static_cast<std::size_t>(action)].*repeats))
                    continue;
                if (left > 0) --left;
                else OnKey(key, true, false);
            }
    };
    run(&KeyAction::repeat);
    if (state_.pending.m_bEditMode && !state_.Player().IsPlaying()) run(&KeyAction::repeatEdit);
}

void TrackerInterface::OnEscape() {
    const auto ends = [](const auto& screen) { return screen->IsVisible() && screen->OnEscape(); };
    if (state_.m_bDialogOpen) AnswerNo();
    else if (IsEditingText()) EndTextEdit();
    else if (!std::ranges::any_of(m_screens, ends) && !CloseTopScreen()) AskToQuit();
}

void TrackerInterface::ForgetKeys() {
    input_.Reset();
    m_bShift = m_bControl = m_bAlt = m_bAltFresh = false;
    heldNotes_.fill(-1);
    for (int note = 0; note <= kLastNote; ++note) ReleaseNote(note);
}

}  // namespace vonta
