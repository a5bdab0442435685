// Taking back by key and by button, and what a user sees and hears of it.
#include <gtest/gtest.h>

#include "interface/layout/MainLayout.h"
#include "interface/layout/OptionsLayouts.h"
#include "interface/layout/ScopesLayout.h"
#include "tests/support/DiskRig.h"
#include "tests/support/WavBuilder.h"

namespace vonta {
namespace {

constexpr int kKeyU = kKeyA + 'U' - 'A', kKeyY = kKeyA + 'Y' - 'A', kKeyZ = kKeyA + 'Z' - 'A';

TEST(Undo, KeysAndButtonsTakeBackAndTheCursorGoesThere) {
    InterfaceRig rig(SongBuilder().Channels(8).Order({0, 2}).Pattern(2).Build());
    rig.state.pending.m_bEditMode = true;
    rig.state.ChangePosition(1);
    rig.state.SetRow(9);
    rig.state.JumpToTrack(3);
    rig.state.SelectItem(kListInstruments, 5);
    rig.Frame();
    rig.Tap(kKeyZ);
    const Cell written{48, 5};
    rig.state.ChangePosition(-1);
    rig.state.JumpToTrack(0);
    rig.state.SelectItem(kListInstruments, 1);
    rig.Frame();

    struct Way { void (*take)(InterfaceRig&); bool undoes; };
    const Way ways[] = {
        {[](InterfaceRig& r) { r.Tap(kKeyU, kMaskControl); }, true},
        {[](InterfaceRig& r) { r.Tap(kKeyY, kMaskControl); }, false},
        {[](InterfaceRig& r) { r.Tap(kKeyBack, kMaskControl); }, true},
        {[](InterfaceRig& r) { r.Tap(kKeyU, kMaskControl | kMaskShift); }, false},
        {[](InterfaceRig& r) { r.Click(kLeftOptionsLayout, kLeftUndo); }, true},
        {[](InterfaceRig& r) { r.Click(kLeftOptionsLayout, kLeftRedo); }, false},
    };
    for (const Way& way : ways) {
        way.take(rig);
        EXPECT_EQ(rig.player.GetSong().GetPattern(2)->Read(9, 3), way.undoes ? Cell{} : written);
        EXPECT_EQ(rig.ui.Notice(), way.undoes ? "Undo: note" : "Redo: note");
        EXPECT_EQ(std::tuple(rig.state.PatternNumber(), rig.state.OrderPosition(), rig.state.CursorRow(),
                             rig.state.frame.m_nCursorChannel, rig.state.frame.m_nSelected[kListInstruments]),
                  std::tuple(2, 1, 9, 3, 5));
    }
    rig.Tap(kKeyY, kMaskControl);
    EXPECT_EQ(rig.ui.Notice(), "Redo: nothing left");
    rig.Frame(10000);
    EXPECT_EQ(rig.ui.Notice(), "");
}

TEST(Undo, StaysAwayWhileAQuestionIsOpenOrATextIsTyped) {
    InterfaceRig rig(SongBuilder().SineInstrument(0, 64).Build());
    rig.Frame();
    rig.Click(kMainLayout, kMainTitle, true);
    rig.Type("my song");
    rig.Frame();
    rig.Tap(kKeyU, kMaskControl);                // belongs to the text
    rig.Type("s");
    rig.Type("\r");
    rig.Frame();
    rig.Frame();
    EXPECT_EQ(rig.state.CurrentSong().title, "my songs");
    rig.ui.Ask("really??", {});
    rig.Tap(kKeyU, kMaskControl);
    EXPECT_EQ(rig.state.CurrentSong().title, "my songs");
    rig.ui.CloseQuestion();
    rig.Tap(kKeyU, kMaskControl);                // the whole edit is one step
    EXPECT_EQ(rig.state.CurrentSong().title, "");
    EXPECT_EQ(rig.ui.Notice(), "Undo: title");
    const LayoutItem& names = ItemOf(kMainLayout, kMainItems);
    rig.Click(names.x + 30, names.y + 40, true); // an empty slot's name makes an instrument
    rig.Type("bass");
    rig.Click(kLeftOptionsLayout, kLeftUndo);    // the press ends the edit
    EXPECT_FALSE(rig.ui.IsEditingText());
    rig.Tap(kKeyU, kMaskControl);
    EXPECT_EQ(rig.state.CurrentSong().CountInstruments(), 1);
}

TEST(Undo, ADragAndATakeAreOneStepEach) {
    InterfaceRig rig(SongBuilder().SineInstrument(0, 64).Build());
    rig.Frame();
    const LayoutItem& faster = ItemOf(kScopesLayout, kScopesBpmUp);
    rig.MouseTo(faster.x + 4, faster.y + 4);
    for (int i = 0; i < 60; ++i) rig.MouseTo(faster.x + 4, faster.y + 4, true);
    rig.MouseTo(faster.x + 4, faster.y + 4);
    ASSERT_GT(rig.state.CurrentSong().StartBpm(), 130u);
    rig.state.Play(kPlayPattern, true);
    rig.Frame();
    rig.Frame();
    for (int i = 0; i < 6; ++i) {
        rig.Tap(kKeyZ);
        rig.Sound(200);
    }
    rig.state.StopOrRecord();
    rig.Frame();
    rig.Frame();
    EXPECT_EQ(rig.state.Edits().Steps().UndoCount(), 2u);
    rig.Tap(kKeyU, kMaskControl);
    EXPECT_EQ(rig.ui.Notice(), "Undo: recording");
    for (int row = 0; row < 64; ++row) EXPECT_EQ(rig.At(row, 0), Cell{});
    rig.Tap(kKeyU, kMaskControl);
    EXPECT_EQ(rig.state.CurrentSong().StartBpm(), 125u);
}

TEST(Undo, ASampleOpenedWithAClickIsHeardAndAnotherSongGivesTheOldOneBack) {
    DiskRig rig(SongBuilder().Note(5, 0, 60, 1).Build());
    std::vector<int> wave;
    for (int i = 0; i < 20000; ++i) wave.push_back(i / 50 % 2 ? 16384 : -16384);
    rig.directory.Write("hit.wav", test::WavBuilder::SixteenBit(wave).Text());
    rig.Press(kDiskKind + static_cast<int>(FileKind::Sample));
    rig.Disk().GoTo(rig.directory.Path());
    rig.Frame();
    ASSERT_TRUE(rig.ClickFile("hit.wav"));
    rig.Frame();
    rig.Key(kKeyZ, true);
    rig.Sound(100);
    rig.Frame();
    rig.Sound(100);
    EXPECT_GT(rig.player.GetMixer().scope.TakePeak(0), 3000.0f);
    rig.Key(kKeyZ, false);
    const std::int8_t tuned = rig.state.SelectedSample()->toneRel;
    rig.player.GetSong().GetInstrument(0)->GetSample(0)->toneRel = 7;
    ASSERT_TRUE(rig.ClickFile("hit.wav"));       // over a sample that the song plays
    rig.Frame();
    EXPECT_EQ(rig.state.SelectedSample()->toneRel, 7) << "tuned to " << int{tuned};
    EXPECT_EQ(rig.state.SelectedSample()->volume, kMaxVolume);

}

TEST(Undo, AnotherSongGivesTheOldOneBackUnderItsOwnName) {
    DiskRig rig(SongBuilder().Note(0, 0, 60, 1).Build());
    const auto write = [&](const char* name, int note) {
        const auto song = SongBuilder().Note(0, 0, note, 1).Build();
        DiskStream stream;
        ASSERT_TRUE(stream.Open(rig.directory.File(name), "wb"));
        ASSERT_EQ(SaveFile(&stream, SaveMode::Module, *song, {}), 0);
    };
    write("first.vtm", 10);
    write("second.vtm", 20);
    for (const char* name : {"first.vtm", "second.vtm"}) {
        rig.Disk().LoadDropped(rig.directory.File(name));
        rig.Frame();
        rig.Frame();
    }
    ASSERT_EQ(rig.At(0, 0).note, 20);
    rig.Tap(kKeyU, kMaskControl);
    EXPECT_EQ(rig.At(0, 0).note, 10);
    EXPECT_EQ(rig.state.m_szSongName, "first.vtm");
    EXPECT_FALSE(rig.state.IsChanged());
    EXPECT_EQ(rig.ui.Notice(), "Undo: load song");
    rig.Tap(kKeyA + 'W' - 'A', kMaskControl);    // never over the second one
    rig.Tap(kKeyEnter);
    rig.Answer(kDialogYes);
    rig.Frame();
    EXPECT_EQ(rig.player.GetSong().fileName, rig.directory.File("first.vtm"));
    rig.Tap(kKeyY, kMaskControl);
    EXPECT_EQ(rig.At(0, 0).note, 20);
    EXPECT_EQ(rig.state.m_szSongName, "second.vtm");
}

}  // namespace
}  // namespace vonta
