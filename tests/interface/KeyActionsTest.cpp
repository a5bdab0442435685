#include <gtest/gtest.h>

#include <map>
#include <set>
#include <sstream>

#include "interface/keys/KeyEffects.h"
#include "tests/support/InterfaceRig.h"

namespace vonta {
namespace {

constexpr int kFirstDigitAction = 98, kLastDigitAction = 113;

std::unique_ptr<Song> WrittenSong() {
    SongBuilder builder;
    builder.Channels(18).SineInstrument(0, 1024).SineInstrument(1, 1024).Order({1, 1, 2}).Pattern(2).Pattern(1);
    for (int row = 0; row < 64; ++row)
        for (int track = 0; track < 18; ++track) builder.Note(row, track, 20 + row % 40, 1 + row % 2, row % 60, 10, row % 16);
    return builder.Build();
}

// In the middle of an edit: a pattern full of notes, a selection, something in each clipboard, on a data column.
struct Middle {
    Middle() : rig(WrittenSong()) {
        TrackerState& state = rig.state;
        rig.Frame();
        state.pending.m_bEditMode = true;
        state.m_nOctaveOffset = -12;
        state.SetVisibleChannels(8);
        state.pending.m_nBlock[kListInstruments] = 7;
        state.JumpToTrack(kTrack);
        state.pending.selection = {true, 1, 5, 3, 30};
        rig.Frame();
        state.CopyTrack();
        state.CopyPattern();
        state.CopyBlock();
        state.SetRow(kRow);
        state.pending.m_nCursorColumn = kColumnParamLow;
        state.ClearAtCursor(true, true, false);  // so that a paste changes something
        state.SetRow(kRow);
        state.ChangePosition(1);                 // which begins at its first row
        state.SetRow(kRow);
        rig.environment.macros[1] = {3, 4, 5};
        rig.Frame();
    }

    // All that a user could see or hear of it.
    std::string Look() {
        TrackerState& state = rig.state;
        const EditValues& at = state.pending;
        std::ostringstream out;
        out << at.m_nCursorChannel << ' ' << at.m_nCursorColumn << ' ' << state.CursorRow() << ' ' << at.m_bEditMode << ' '
            << state.OrderPosition() << ' ' << state.PatternNumber() << ' ' << state.m_nCursorAdd << ' '
            << state.m_nOctaveOffset << ' ' << state.m_bSolo << state.m_bSoloChannel << state.m_bDialogOpen << ' '
            << at.selection.m_nSelRowB << rig.player.IsPlaying() << rig.ui.QuestionText() << rig.host.environmentSaves << ' ';
        for (int list = 0; list < kListKinds; ++list) out << at.m_nSelected[static_cast<std::size_t>(list)] << ',' << at.m_nBlock[static_cast<std::size_t>(list)] << ' ';
        for (int slot = 0; slot < kScreens; ++slot) out << rig.ui.IsVisible(slot);
        if (const Sample* sample = state.SelectedSample()) out << sample->selActive << sample->selEnd;
        for (int channel = 0; channel < kTracks; ++channel) out << +rig.player.GetChannel(channel).active;
        for (int row = 0; row < 64; ++row)
            for (int track = 0; track <= kTrack; ++track) {
                const Cell cell = rig.At(row, track);
                out << +cell.note << '.' << +cell.instrument << '.' << cell.volume << '.' << +cell.effect << '.' << +cell.param << ';';
            }
        return out.str();
    }

    static constexpr int kTrack = 17, kRow = 40;
    InterfaceRig rig;
};

// Each by its own binding, in a place where it is allowed.
TEST(KeyActions, EachOfThe210HasItsEffectOrStopsTheChain) {
    // Action 39 does nothing at all.
    const std::map<int, int> takenBefore{{39, -1}};
    // Nothing to be seen at once: copies, what only stops the chain, and the sample editor's keys without a selection.
    const std::set<int> silent{13, 16, 19, 39, 184, 185, 186, 187, 188, 189, 190, 191, 192};
    for (int action = 0; action < kKeyActions; ++action) {
        Middle middle;
        InterfaceRig& rig = middle.rig;
        const KeyAction& binding = rig.config.keyTable[static_cast<std::size_t>(action)];
        const bool digit = action >= kFirstDigitAction && action <= kLastDigitAction;
        if (action == 54 || binding.group == kGroupPianoDown || binding.group == kGroupPianoUp)
            rig.state.pending.m_nCursorColumn = kColumnNote;
        if (digit) rig.state.SetRow(action - kFirstDigitAction + 1);   // where the parameter ends in another digit
        if (binding.group == kGroupSampleEditor) rig.ui.ToggleScreen(kScreenSampleEditor);
        if (action == 148) rig.ui.ToggleScreen(kScreenMixer);
        if (action == 150) rig.ui.ToggleScreen(kScreenHelp);
        if (action == 24) rig.state.m_nOctaveOffset = 24;
        if (action == 199) rig.state.pending.m_nBlock[kListInstruments] = 0;
        rig.Frame();
        const std::string before = middle.Look();
        const int mask = (binding.control ? kMaskControl : 0) | (binding.shift ? kMaskShift : 0) | (binding.alt ? kMaskAlt : 0);
        rig.Modifiers(mask, true);
        rig.Frame();
        if (binding.group == kGroupPianoDown || binding.group == kGroupPianoUp) {
            rig.Key(binding.key, true);
            rig.Frame();
            EXPECT_LE(rig.At(Middle::kRow, Middle::kTrack).note, kLastNote);
            EXPECT_EQ(rig.At(Middle::kRow, Middle::kTrack).instrument, 1);
        } else {
            const auto taken = takenBefore.find(action);
            EXPECT_EQ(PerformKeyAction(rig.ui, binding.key), taken == takenBefore.end() ? action : taken->second);
        }
        rig.Frame();
        rig.Frame();
        rig.Sound(40);
        EXPECT_TRUE(silent.contains(action) || middle.Look() != before) << action << ' ' << binding.name;
    }
}

TEST(KeyActions, ModifiersMustAgreeBothWays) {
    InterfaceRig rig(WrittenSong());
    rig.Tap(kKeyF1 + 2);                         // octave 3
    EXPECT_EQ(rig.state.m_nOctaveOffset, -24);
    EXPECT_LT(rig.At(3, 0).note, kNoNote);
    rig.Tap(kKeyF1 + 2, kMaskShift);             // cuts the track
    EXPECT_EQ(rig.state.m_nOctaveOffset, -24);
    EXPECT_EQ(rig.At(3, 0).note, kNoNote);
    rig.Tap(kKeyDown, kMaskControl);             // the cursor compares the key alone
    EXPECT_EQ(rig.state.CursorRow(), 1);
    rig.Tap(kKeyRight, kMaskControl);            // a pattern number, not the cursor
    EXPECT_EQ(rig.state.pending.m_nCursorColumn, kColumnNote);
    EXPECT_EQ(rig.state.PatternNumber(), 2);
}

TEST(KeyActions, WhatIsRefusedLetsTheKeyGoOn) {
    InterfaceRig rig(WrittenSong());
    rig.config.keyTable[200].key = kKeyDelete;   // the bank, by the key that deletes
    rig.Tap(kKeyDelete);
    EXPECT_EQ(rig.state.pending.m_nBlock[kListInstruments], 8);
    rig.state.pending.m_bEditMode = true;
    rig.Tap(kKeyDelete);
    EXPECT_EQ(rig.state.pending.m_nBlock[kListInstruments], 8);
    EXPECT_EQ(rig.At(0, 0).note, kNoNote);
}

TEST(KeyActions, TheKeyOfADigitIsAPianoKeyOnTheNoteColumn) {
    InterfaceRig rig(WrittenSong());
    rig.state.pending.m_bEditMode = true;
    rig.state.m_nCursorAdd = 0;
    rig.Tap(kKey0 + 5);
    EXPECT_EQ(rig.At(0, 0).note, 66);
    rig.Tap(kKeyEnter);                          // there is a gap before the last key of the row
    EXPECT_EQ(rig.At(0, 0).note, 81);
    rig.state.pending.m_nCursorColumn = kColumnEffect;
    rig.Tap(kKey0 + 4);
    EXPECT_EQ(rig.At(0, 0).effect, 4);
    EXPECT_EQ(rig.At(0, 0).note, 81);
}

TEST(KeyActions, ANoteSoundsUntilItsKeyIsLetGoWhateverChangesMeanwhile) {
    InterfaceRig rig(SongBuilder().SineInstrument(0, 1024, {VTSAMPLE_LOOP_FORDWARD, 0, 1024}).Build());
    const auto held = [&] {
        rig.Frame();
        rig.Sound(60);
        int count = 0;
        for (int channel = 0; channel < kTracks; ++channel)
            count += rig.player.GetChannel(channel).active && !rig.player.GetChannel(channel).keyOff;
        return count;
    };
    rig.Key(kKeyA + 'Q' - 'A', true);
    EXPECT_EQ(held(), 1);
    rig.Key(kKeyA + 'Z' - 'A', true);
    EXPECT_EQ(held(), 2);
    rig.Tap(kKeyF1);                             // another octave
    rig.Modifiers(kMaskShift, true);
    rig.Key(kKeyA + 'Q' - 'A', false);
    EXPECT_EQ(held(), 1);
    rig.ui.Tell("a question");                   // takes the keys, but neither their releases nor the modifiers
    rig.Modifiers(kMaskControl, true);
    rig.Frame();
    EXPECT_EQ(rig.ui.ModifierMask(), kMaskControl | kMaskShift);
    rig.Modifiers(kMaskControl, false);
    rig.Key(kKeyA + 'Z' - 'A', false);
    rig.Modifiers(kMaskShift, false);
    EXPECT_EQ(held(), 0);
    EXPECT_EQ(rig.ui.ModifierMask(), 0);
    rig.ui.OnNoteFromMidi(120, true, 64);
    EXPECT_EQ(held(), 1);
    rig.ui.ForgetKeys();
    EXPECT_EQ(held(), 0);
}

TEST(KeyActions, HeldKeysRepeatAfterTheDelayOncePerTick) {
    constexpr int kTick = 40;                    // milliseconds, 25 ticks a second; the delay is 7 ticks
    InterfaceRig rig(WrittenSong());
    rig.state.pending.m_bEditMode = true;
    const auto hold = [&](int key, int ticks) {
        rig.state.SetRow(0);
        rig.Key(key, true);
        for (int i = 0; i <= ticks; ++i) rig.Frame(kTick);
        return rig.state.CursorRow();
    };
    EXPECT_EQ(hold(kKeyDown, 9), 4);             // the press, and three ticks behind the delay
    rig.Modifiers(kMaskShift, true);             // another modifier holds the repeat
    rig.Frame(3 * kTick);
    EXPECT_EQ(rig.state.CursorRow(), 4);
    rig.Modifiers(kMaskShift, false);
    rig.Frame(10 * kTick);
    EXPECT_EQ(rig.state.CursorRow(), 14);
    rig.Frame(1000 * kTick);                     // at most ten in one frame
    EXPECT_EQ(rig.state.CursorRow(), 24);
    rig.Key(kKeyDown, false);
    rig.Frame(5 * kTick);
    EXPECT_EQ(rig.state.CursorRow(), 24);
    hold(kKeyDown, 9);
    rig.ui.ForgetKeys();                         // the release is heard elsewhere
    rig.Frame(5 * kTick);
    EXPECT_EQ(rig.state.CursorRow(), 4);

    EXPECT_EQ(hold(kKeyA, 0), 0);                // Q's neighbour plays nothing
    const int piano = kKeyA + 'Q' - 'A';
    EXPECT_EQ(hold(piano, 9), 4);                // writes again and again
    rig.Key(piano, false);
    rig.state.pending.m_bEditMode = false;
    rig.Frame();
    hold(kKeyA + 'Q' - 'A', 9);
    EXPECT_EQ(rig.state.CursorRow(), 0);
}

TEST(Questions, TakeTheKeysAndAreAnsweredOnce) {
    InterfaceRig rig(WrittenSong());
    rig.TapAction(48);
    EXPECT_EQ(rig.ui.QuestionText(), "     Delete Instrument??");
    rig.Tap(kKeyDown);
    EXPECT_EQ(rig.state.CursorRow(), 0);
    rig.Tap(kKeyA + 'N' - 'A');
    EXPECT_FALSE(rig.state.m_bDialogOpen);
    EXPECT_TRUE(rig.state.SelectedInstrument());
    rig.TapAction(48);
    rig.Tap(kKeyEnter);
    EXPECT_FALSE(rig.state.SelectedInstrument());
    rig.TapAction(48);                           // there is none to ask about
    EXPECT_FALSE(rig.state.m_bDialogOpen);

    rig.TapAction(204);                          // its choices are the mouse's
    rig.Tap(kKeyEnter);
    EXPECT_EQ(rig.ui.Mode(), DialogMode::Zap);
    EXPECT_TRUE(rig.state.m_bDialogOpen);
    rig.state.MarkSaved();                       // else it would be asked what to do with the song
    rig.ui.AnswerChoice(1);
    rig.Frame();
    EXPECT_EQ(rig.At(0, 0).note, kNoNote);

    rig.state.MarkSaved();
    rig.ui.OnEscape();
    rig.ui.AskToQuit();
    EXPECT_TRUE(rig.state.m_bDialogOpen);
    rig.Tap(kKeyA + 'Y' - 'A');
    EXPECT_TRUE(rig.state.m_bQuit && !rig.state.m_bDialogOpen);
}

TEST(TextEdit, TakesCharactersUntilItEndsWhileKeysRest) {
    InterfaceRig rig(WrittenSong());
    std::string& title = rig.player.GetSong().title;
    title = "\xC3\x84";                          // one letter of two bytes
    rig.ui.StartTextEdit(title);
    rig.Tap(kKeyDown);
    EXPECT_EQ(rig.state.CursorRow(), 0);
    rig.Type("bc\b");
    EXPECT_EQ(title, "\xC3\x84" "b");
    rig.ui.OnBackspace();
    rig.ui.OnBackspace();
    rig.ui.OnBackspace();
    EXPECT_EQ(title, "");
    for (int i = 0; i < 30; ++i) rig.ui.OnCharacter("\xC3\xA9");
    EXPECT_EQ(title.size(), 48u);                // 24 letters
    rig.Frame(256);
    rig.Frame(256);                              // the caret has come and gone
    EXPECT_EQ(title.size(), 48u);
    rig.Type("\r");
    rig.Frame();
    EXPECT_FALSE(rig.ui.IsEditingText());
    rig.ui.StartTextEdit(title);
    rig.state.requests.song.object = Song::MakeDefault();   // the text goes with the song
    rig.Frame();
    EXPECT_FALSE(rig.ui.IsEditingText());
}

TEST(Wheel, DoesWhatTheConfigurationSaysForTheKeyHeld) {
    InterfaceRig rig(WrittenSong());
    rig.config.mouse = {kWheelRow, kWheelInstrument, kWheelNothing, kWheelNothing};
    const auto turn = [&](float notches) {
        rig.input.OnWheel(notches);
        rig.Frame();
    };
    turn(1);
    EXPECT_EQ(rig.state.CursorRow(), 63);
    turn(-2.5f);
    turn(-0.5f);                                 // parts of a notch add up
    EXPECT_EQ(rig.state.CursorRow(), 2);
    rig.Modifiers(kMaskControl, true);
    turn(-3);
    EXPECT_EQ(rig.state.pending.m_nSelected[kListInstruments], 4);
    turn(90);
    EXPECT_EQ(rig.state.pending.m_nSelected[kListInstruments], 1);
    rig.Modifiers(kMaskShift, true);             // two of them count as none
    turn(-2);
    EXPECT_EQ(rig.state.pending.m_nSelected[kListInstruments], 1);
    EXPECT_EQ(rig.state.CursorRow(), 4);
}

}  // namespace
}  // namespace vonta
