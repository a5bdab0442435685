// What works on whole ranges, on the song's numbers and on its parts, by the buttons of the screens.
#include <gtest/gtest.h>

#include "interface/layout/AdvancedEditLayout.h"
#include "interface/layout/ScopesLayout.h"
#include "tests/support/FakePlugins.h"
#include "tests/support/InterfaceRig.h"

namespace vonta {
namespace {

using test::FakeEffect;
using test::FakeSynth;

// Two instruments in turns down two tracks of patterns 0 and 1.
std::unique_ptr<Song> TwoPatterns() {
    SongBuilder builder;
    builder.SineInstrument(0, 256).SineInstrument(1, 256).Order({0, 1, 0});
    for (const int pattern : {1, 0}) {
        builder.Pattern(pattern, 8);
        for (int row = 0; row < 8; ++row)
            for (int track = 0; track < 2; ++track) builder.Note(row, track, row == 7 ? kNoteOff : 50, 1 + row % 2);
    }
    return builder.Build();
}

TEST(SongEditing, TransposeTakesTheScopeAndTheInstrumentThatItsButtonNames) {
    constexpr int kCells = 7;                    // notes in a track
    struct Case { int column, scope, amount; int wanted; int changed; };
    const Case cases[] = {{0, 0, 0, 51, 4}, {1, 0, 1, 49, kCells}, {1, 1, 2, 62, 2 * kCells}, {0, 2, 3, 38, 16},
                          {1, 2, 0, 51, 4 * kCells}, {1, 3, 1, 49, 6}, {0, 3, 2, 62, 4}};
    for (const Case& c : cases) {
        InterfaceRig rig(TwoPatterns());
        rig.ui.ShowScreen(kScreenAdvancedEdit);
        rig.state.pending.selection = {true, 1, 4, 0, 2};
        rig.Frame();
        rig.Click(kAdvancedEditLayout, TransposeId(c.column, c.scope, c.amount));
        int changed = 0, offs = 0;
        for (const int pattern : {0, 1})
            for (int row = 0; row < 8; ++row)
                for (int track = 0; track < 2; ++track) {
                    const Cell cell = rig.state.CurrentSong().GetPattern(pattern)->Read(row, track);
                    changed += cell.note == c.wanted;
                    offs += cell.note == kNoteOff;
                    EXPECT_TRUE(cell.note == c.wanted || cell.note == 50 || cell.note == kNoteOff);
                }
        EXPECT_EQ(changed, c.changed) << c.column << c.scope << c.amount;
        EXPECT_EQ(offs, 4);
    }
    InterfaceRig rig(TwoPatterns());
    for (const int by : {-60, 200}) {
        rig.state.Transpose(Scope::Track, false, by);
        EXPECT_EQ(rig.At(0, 0).note, by < 0 ? 0 : 127);
    }
}

TEST(SongEditing, ReplaceAndFadeKeepToTheirScope) {
    InterfaceRig rig(TwoPatterns());
    rig.ui.ShowScreen(kScreenAdvancedEdit);
    rig.state.pending.m_nSelected[kListInstruments] = 9;
    rig.state.pending.selection = {true, 0, 1, 0, 4};
    rig.Frame();
    rig.Click(kAdvancedEditLayout, kAdvReplace + static_cast<int>(Scope::Block));
    for (int row = 0; row < 8; ++row) EXPECT_EQ(rig.At(row, 0).instrument, row == 2 || row == 4 ? 9 : 1 + row % 2) << row;

    Pattern& pattern = rig.OnView();
    pattern.Write(1, 0, {50, 1, kNoVolume, 12, 200});
    pattern.Write(4, 0, {50, 1, kNoVolume, 3, 20});
    rig.Click(kAdvancedEditLayout, kAdvScaleFade);
    const int faded[] = {200, 140, 80, 20};
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(rig.At(1 + i, 0).effect, 12);
        EXPECT_EQ(rig.At(1 + i, 0).param, faded[i]);
    }
    EXPECT_EQ(rig.At(0, 0).effect + rig.At(5, 0).effect + rig.At(2, 1).effect, 0);
    rig.state.pending.selection = {true, 0, 1, 0, 3};
    pattern.Write(3, 0, {50, 1, kNoVolume, 12, 0});
    rig.Click(kAdvancedEditLayout, kAdvScaleFade);
    EXPECT_EQ(rig.At(2, 0).param, 140) << "three rows are too few";
}

TEST(SongEditing, ExpandAndShrinkMoveEveryOtherRow) {
    InterfaceRig rig(TwoPatterns());
    const auto before = [&] {
        std::string text;
        for (int row = 0; row < rig.state.PatternRows(); ++row) text += std::to_string(rig.At(row, 1).instrument);
        return text;
    };
    rig.state.SetRow(7);
    rig.Click(kScopesLayout, kScopesExpand);
    EXPECT_EQ(before(), "1020102010201020");
    rig.Click(kScopesLayout, kScopesShrink);
    EXPECT_EQ(before(), "12121212");
    EXPECT_EQ(rig.state.CursorRow(), 7);
    rig.Click(kScopesLayout, kScopesShrink);
    EXPECT_EQ(before(), "1111");
    EXPECT_EQ(rig.state.CursorRow(), 3);
    struct Case { int rows; int button; int want; };
    for (const Case& c : {Case{1, kScopesShrink, 1}, {3, kScopesShrink, 1}, {200, kScopesExpand, 200}, {128, kScopesExpand, 256}}) {
        rig.OnView().SetNumRows(c.rows);
        rig.Click(kScopesLayout, c.button);
        EXPECT_EQ(rig.state.PatternRows(), c.want);
    }
}

TEST(SongEditing, TheNumbersOfTheSongStayInTheirLimits) {
    struct Case { const char* name; int up, down, low, high; int (*value)(InterfaceRig&); };
    const Case cases[] = {
        {"length", kScopesLengthUp, kScopesLengthDown, 1, 255,
         [](InterfaceRig& rig) { return static_cast<int>(rig.state.CurrentSong().GetPatternPosLenght()); }},
        {"restart", kScopesRestartUp, kScopesRestartDown, 0, 2,
         [](InterfaceRig& rig) { return static_cast<int>(rig.state.CurrentSong().GetPatternPosRestart()); }},
        {"position", kScopesPositionUp, kScopesPositionDown, 0, 2, [](InterfaceRig& rig) { return rig.state.OrderPosition(); }},
        {"entry", kScopesPatternUp, kScopesPatternDown, 0, 255,
         [](InterfaceRig& rig) { return rig.state.CurrentSong().GetPatternPosIndex(0); }},
        {"bpm", kScopesBpmUp, kScopesBpmDown, 32, 255, [](InterfaceRig& rig) { return static_cast<int>(rig.player.GetBPM()); }},
        {"ticks", kScopesTicksUp, kScopesTicksDown, 0, 31,
         [](InterfaceRig& rig) { return static_cast<int>(rig.state.CurrentSong().GetTempo()); }},
        {"shown", kScopesShownUp, kScopesShownDown, 0, 255, [](InterfaceRig& rig) { return rig.state.PatternNumber(); }},
        {"rows", kScopesRowsUp, kScopesRowsDown, 1, 256, [](InterfaceRig& rig) { return rig.state.PatternRows(); }}};
    for (const Case& c : cases) {
        InterfaceRig rig(TwoPatterns());
        rig.Frame();
        const auto press = [&](int id) {
            const LayoutItem& item = ItemOf(kScopesLayout, id);
            for (int i = 0; i < 300; ++i) rig.Click(item.x + 4, item.y + 4);
        };
        const int start = c.value(rig);
        rig.Click(kScopesLayout, c.up);
        EXPECT_EQ(c.value(rig), start + 1) << c.name;
        press(c.up);
        EXPECT_EQ(c.value(rig), c.high) << c.name;
        press(c.down);
        EXPECT_EQ(c.value(rig), c.low) << c.name;
    }
    InterfaceRig rig;
    rig.state.m_nCursorAdd = kMaxCursorAdd;
    rig.state.ChangeCursorAdd(1);
    EXPECT_EQ(rig.state.m_nCursorAdd, 0);
    rig.state.ChangeCursorAdd(-1);
    EXPECT_EQ(rig.state.m_nCursorAdd, kMaxCursorAdd);
}

TEST(SongEditing, AShorterListKeepsPositionAndRestartInside) {
    InterfaceRig rig(TwoPatterns());
    Song& song = rig.player.GetSong();
    const auto list = [&] {
        std::string text;
        for (int i = 0; i < static_cast<int>(song.GetPatternPosLenght()); ++i) text += std::to_string(song.GetPatternPosIndex(i));
        return text;
    };
    song.SetPatternPosRestart(2);
    rig.state.ChangePosition(1);
    rig.Click(kScopesLayout, kScopesInsert);
    EXPECT_EQ(list(), "0110");
    rig.state.ChangePosition(5);
    rig.Click(kScopesLayout, kScopesDelete);
    EXPECT_EQ(list(), "011");
    EXPECT_EQ(rig.state.OrderPosition(), 2);
    EXPECT_EQ(rig.state.PatternNumber(), 1);
    rig.Click(kScopesLayout, kScopesLengthDown);
    rig.Click(kScopesLayout, kScopesLengthDown);
    EXPECT_EQ(rig.state.OrderPosition(), 0);
    EXPECT_EQ(song.GetPatternPosRestart(), 0u);
    EXPECT_EQ(rig.state.PatternNumber(), 0);
}

TEST(SongEditing, FewerChannelsEndTheSoundOfThoseCutOff) {
    InterfaceRig rig(SongBuilder().Channels(4).SineInstrument(0, 44100, {VTSAMPLE_LOOP_FORDWARD, 0, 44100}).Build());
    for (const int channel : {1, 3}) rig.player.QueueNoteOn(48, 0, channel, 255);
    rig.Sound(60);
    ASSERT_TRUE(rig.player.GetChannel(3).active);
    rig.state.ChangeChannels(-2);
    rig.Sound(60);
    EXPECT_FALSE(rig.player.GetChannel(3).active);
    EXPECT_TRUE(rig.player.GetChannel(1).active);
    rig.state.ChangeChannels(-2);
    EXPECT_EQ(rig.state.SongChannels(), 2);
    rig.state.ChangeChannels(100);
    EXPECT_EQ(rig.state.SongChannels(), 64);
}

TEST(SongEditing, WhatWaitsIsDoneInItsOrderInOneFrame) {
    InterfaceRig rig(TwoPatterns());
    TrackerState& state = rig.state;
    rig.player.Play(0);
    rig.Frame();
    // The new sample makes an instrument where the old one is deleted in the same frame, and names it.
    state.requests.deleteInstrument = true;
    state.requests.sample.sample = 0;
    state.requests.sample.object = MakeSample(SineWave(64));
    state.requests.sample.fileName = "drums/big.kick.wav";
    state.requests.synth.slot = 3;
    state.requests.synth.object = std::make_unique<FakeSynth>("a");
    state.requests.clearEffects = true;
    state.requests.effect.slot = 1;
    state.requests.effect.object = std::make_unique<FakeEffect>("b");
    rig.Frame();
    const Instrument* made = state.CurrentSong().GetInstrument(0);
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(made->name, "big.kick");
    EXPECT_EQ(made->GetSample(0)->Count(), 64u);
    EXPECT_NE(made->FindZone(60, 64), nullptr);
    EXPECT_EQ(state.m_szSampleName, "drums/big.kick.wav");
    EXPECT_NE(state.CurrentSong().GetSynth(3), nullptr);
    EXPECT_NE(rig.player.GetMixer().effects[1], nullptr);
    EXPECT_TRUE(rig.player.IsPlaying());

    // A replaced instrument leaves its mute and its colour to its successor.
    state.CurrentSong().GetInstrument(1)->muted = 1;
    state.CurrentSong().GetInstrument(1)->color = 0x112233;
    state.requests.instrument.slot = 1;
    state.requests.instrument.object = MakeInstrument(MakeSample(SineWave(32)));
    state.requests.song.unknownChunks = true;    // without a song it means nothing
    rig.Frame();
    EXPECT_EQ(state.CurrentSong().GetInstrument(1)->GetSample(0)->Count(), 32u);
    EXPECT_EQ(state.CurrentSong().GetInstrument(1)->color, 0x112233u);
    EXPECT_EQ(state.CurrentSong().GetInstrument(1)->muted, 1);
    EXPECT_FALSE(state.m_bDialogOpen);

    // A song replaces all of that, plays on from its start, and the cursor moves inside it.
    state.pending.m_nCursorChannel = 9;
    state.SetRow(5);
    state.requests.instrument.object = MakeInstrument(MakeSample(SineWave(16)));
    state.requests.song.object = SongBuilder().Channels(4).Pattern(0, 4).Build();
    state.requests.song.fileName = "next.vtm";
    state.requests.song.unknownChunks = true;
    rig.Frame();
    EXPECT_EQ(state.CurrentSong().GetInstrument(0), nullptr);
    EXPECT_EQ(state.CurrentSong().fileName, "next.vtm");
    EXPECT_TRUE(state.m_bDialogOpen);
    EXPECT_EQ(state.frame.m_nCursorChannel, 0);
    EXPECT_LT(state.CursorRow(), 4);
    EXPECT_TRUE(rig.player.IsPlaying());
}

TEST(SongEditing, TheFourZapsEmptyWhatTheyName) {
    InterfaceRig rig(TwoPatterns());
    TrackerState& state = rig.state;
    state.requests.effect.object = std::make_unique<FakeEffect>("b");
    state.ChangePosition(2);
    rig.Frame();
    state.ClearEffects();
    state.ClearPatterns();
    rig.Frame();
    EXPECT_EQ(rig.player.GetMixer().effects[0], nullptr);
    EXPECT_EQ(state.CurrentSong().GetPattern(0), nullptr);
    EXPECT_EQ(state.CurrentSong().GetPatternPosLenght(), 1u);
    EXPECT_EQ(std::tuple(state.OrderPosition(), state.PatternNumber(), state.CursorRow()), std::tuple(0, 0, 0));
    EXPECT_NE(state.CurrentSong().GetInstrument(1), nullptr);
    state.ClearInstruments();
    rig.Frame();
    EXPECT_EQ(state.CurrentSong().CountInstruments(), 0);
    state.NewSong();
    rig.Frame();
    EXPECT_EQ(state.CurrentSong().title, "NEWsong");
    EXPECT_EQ(state.SongChannels(), 10);
    EXPECT_NE(state.CurrentSong().GetPattern(0), nullptr);
}

TEST(SongEditing, InstrumentsAndSamplesAreCopiedExchangedAndDeleted) {
    InterfaceRig rig(SongBuilder().SineInstrument(0, 100).SineInstrument(4, 200).Build());
    EditValues& at = rig.state.pending;
    const auto count = [&](int instrument, int sample) {
        const Instrument* found = rig.state.CurrentSong().GetInstrument(instrument);
        return found && found->GetSample(sample) ? static_cast<int>(found->GetSample(sample)->Count()) : -1;
    };
    rig.ui.ShowScreen(kScreenAdvancedEdit);
    rig.state.CurrentSong().GetInstrument(0)->GetSample(0)->volume = 77;
    at.m_nSelected[kListInstruments] = 5;
    rig.Frame();
    rig.Click(kAdvancedEditLayout, kAdvCopyInstrument);
    EXPECT_EQ(count(4, 0), 100);
    EXPECT_EQ(rig.state.SelectedSample()->volume, 77);
    EXPECT_NE(rig.state.SelectedInstrument()->FindZone(60, 64), nullptr) << "a copy sounds";
    at.m_nSelected[kListInstruments] = 9;
    at.m_nSample = 3;
    rig.Click(kAdvancedEditLayout, kAdvCopySample);
    EXPECT_EQ(count(8, 3), 100);
    EXPECT_EQ(count(8, 0), 0) << "made with one empty sample";
    rig.Click(kAdvancedEditLayout, kAdvExchangeSamples);   // with the source's first
    rig.state.CurrentSong().GetInstrument(0)->GetSample(0)->volume = 5;
    EXPECT_EQ(rig.state.SelectedSample()->volume, 77);
    rig.Click(kAdvancedEditLayout, kAdvExchangeInstruments);
    EXPECT_EQ(count(0, 3), 100);
    EXPECT_EQ(count(8, 3), -1);
    rig.Click(kAdvancedEditLayout, kAdvDeleteSample);      // there is none
    rig.Click(kAdvancedEditLayout, kAdvDeleteInstrument);
    EXPECT_EQ(rig.state.CurrentSong().GetInstrument(8), nullptr);
    rig.Click(kAdvancedEditLayout, kAdvExchangeSamples);   // with nothing
    rig.Click(kAdvancedEditLayout, kAdvExit);
    EXPECT_TRUE(rig.ui.IsVisible(kScreenScopes));
}

TEST(SongEditing, TheCellsOfTheChannelsMuteMarkAndSolo) {
    InterfaceRig rig;                            // ten channels: five cells in each of two rows
    rig.Frame();
    const auto muted = [&] {
        std::string text;
        for (int channel = 0; channel < 10; ++channel) text += rig.player.IsChannelMuted(channel) ? 'm' : '.';
        return text;
    };
    rig.Click(70, 150);
    EXPECT_EQ(muted(), ".m........");
    rig.Click(330, 240);
    EXPECT_EQ(muted(), ".m.......m");
    rig.Click(150, 230, true);
    EXPECT_TRUE(rig.state.m_marks[7]);
    EXPECT_EQ(rig.state.m_nNextMarked, 7);
    for (const char* want : {"mm.mmmmmmm", ".........."}) {
        rig.MouseTo(150, 150, true);
        rig.MouseTo(150, 150, true, true);
        for (int i = 0; i < 20; ++i) rig.MouseTo(150, 150, true, true);   // held: once is enough
        rig.MouseTo(150, 150);
        EXPECT_EQ(muted(), want);
    }
    rig.MouseTo(10, 150, false, true);           // the right one first
    rig.MouseTo(10, 150, true, true);
    rig.MouseTo(10, 150);
    EXPECT_EQ(muted(), ".mmmmmmmmm");
    EXPECT_FALSE(rig.state.m_marks[0]);
    rig.MouseTo(10, 150, true, true);
    rig.MouseTo(10, 150);
    EXPECT_EQ(muted(), "..........");

    rig.state.ToggleSoloChannel();               // follows the cursor, and ends with all open
    rig.state.JumpToTrack(4);
    rig.Frame();
    EXPECT_EQ(muted(), "mmmm.mmmmm");
    rig.state.JumpToTrack(9);
    rig.Frame();
    EXPECT_EQ(muted(), "mmmmmmmmm.");
    rig.state.ToggleSoloChannel();
    rig.Frame();
    EXPECT_EQ(muted(), "..........");
}

TEST(SongEditing, WhatSoundsCanBeSeenWithoutALock) {
    InterfaceRig rig(SongBuilder().SineInstrument(0, 44100, {VTSAMPLE_LOOP_FORDWARD, 0, 44100}).Build());
    const ScopeTap& scope = rig.player.GetMixer().scope;
    const auto highest = [](const ScopeTap::Trace& trace) {
        float most = 0;
        for (const auto& point : trace) most = std::max(most, std::abs(static_cast<float>(point)));
        return most;
    };
    rig.Frame();
    rig.player.QueueNoteOn(48, 0, 3, 255);
    rig.Sound(60);
    EXPECT_TRUE(scope.IsActive(3));
    EXPECT_FALSE(scope.IsActive(2));
    EXPECT_GT(highest(scope.OfTrack(3)), 1000.0f);
    EXPECT_EQ(highest(scope.OfTrack(2)), 0.0f);
    EXPECT_GT(highest(scope.OfOutput(0)), 1000.0f);
    EXPECT_GT(rig.player.GetMixer().scope.TakePeak(1), 1000.0f);
    EXPECT_EQ(rig.player.GetMixer().scope.TakePeak(1), 0.0f);
    rig.player.Stop(0, 1);
    rig.Sound(60);
    EXPECT_FALSE(scope.IsActive(3));
    EXPECT_EQ(highest(scope.OfTrack(3)), 0.0f);
}

}  // namespace
}  // namespace vonta
