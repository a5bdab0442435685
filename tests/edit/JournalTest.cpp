// What the journal promises: whatever was done can be taken back and done again, to the byte.
#include <gtest/gtest.h>

#include <cstdlib>

#include "tests/edit/RandomEdits.h"
#include "tests/support/ModuleBytes.h"

namespace vonta {
namespace {

using Bytes = std::vector<std::uint8_t>;
using test::RandomEdits;

// A song in a player that nothing drives, and the hands on it.
struct Desk {
    explicit Desk(std::unique_ptr<Song> song = nullptr) { player.SetSong(std::move(song)); }
    Bytes Saved() { return test::SaveBytes(player.GetSong(), SaveMode::Module).bytes; }

    SndPlayer player;
    Editor editor{player};
};

constexpr Place kHere{0, 0, 2, 1, 0, 0, 0};

// The module as it was after each step that can still be taken back, and a walk through them.
class Walk {
public:
    explicit Walk(unsigned seed) : edits_(player_, seed) {
        player_.SetSong(edits_.RandomSong());
        player_.GetSong().KeepStart();
        edits_.editor.Steps().SetBudget(std::size_t{1} << 40);
        states_.push_back(Saved());
    }

    void Edit() {
        const std::uint64_t before = Journaled().State();
        edits_.Edit();
        if (Journaled().State() == before) return ExpectState("what is no step changes nothing");
        EXPECT_EQ(Journaled().RedoCount(), 0u) << "a new step leads elsewhere";
        states_.resize(Journaled().UndoCount());
        states_.push_back(Saved());
    }

    void WalkBackAndForth() {
        for (int steps = edits_.Between(0, 12); steps > 0 && Journaled().Undo(); --steps) ExpectState("undone");
        for (int steps = edits_.Between(0, 12); steps > 0 && Journaled().Redo(); --steps) ExpectState("done again");
    }

    std::size_t Steps() const { return states_.size(); }

    void WalkToTheBeginning() {
        while (Journaled().Undo()) ExpectState("undone");
        EXPECT_EQ(Journaled().UndoCount(), 0u);
        while (Journaled().Redo()) {}
        ExpectState("done again");
    }

private:
    Journal& Journaled() { return edits_.editor.Steps(); }
    Bytes Saved() { return test::SaveBytes(player_.GetSong(), SaveMode::Module).bytes; }
    void ExpectState(const char* when) {
        ASSERT_LT(Journaled().UndoCount(), states_.size());
        EXPECT_TRUE(Saved() == states_[Journaled().UndoCount()])
            << when << ": " << (Journaled().NextUndo() ? Journaled().NextUndo()->name : "") << " / "
            << (Journaled().NextRedo() ? Journaled().NextRedo()->name : "");
    }

    SndPlayer player_;
    RandomEdits edits_;
    std::vector<Bytes> states_;                  // by the number of steps that lead there
};

TEST(Journal, EveryStepOfEveryKindGoesBackAndForthToTheByte) {
    const char* wanted = std::getenv("VONTA_RANDOM_STEPS");
    const int count = wanted ? std::atoi(wanted) : 400;
    for (const unsigned seed : {1u, 2u, 3u, 4u, 5u, 6u}) {
        std::printf("%d edits, seed %u\n", count, seed);
        Walk walk(seed);
        for (int i = 0; i < count && !testing::Test::HasFailure(); ++i) {
            walk.Edit();
            if (i % 20 == 19) walk.WalkBackAndForth();
        }
        EXPECT_GT(walk.Steps(), static_cast<std::size_t>(count) / 4);
        walk.WalkToTheBeginning();
        if (HasFailure()) FAIL() << "seed " << seed;
    }
}

// A song opened is unchanged until it is edited, and again when the edit is taken back; each song has its own mark.
TEST(Journal, KnowsWhetherTheSongIsAsItWasSaved) {
    Desk desk;
    Editor& editor = desk.editor;
    EXPECT_FALSE(editor.IsChanged());
    EnterNote(editor, kHere, 40, 1, kStepNote);
    EXPECT_TRUE(editor.IsChanged());
    editor.MarkSaved();
    EnterNote(editor, kHere, 41, 1, kStepNote);
    editor.Steps().Undo();
    EXPECT_FALSE(editor.IsChanged());
    editor.Steps().Undo();
    EXPECT_TRUE(editor.IsChanged()) << "older than what is on disk";
    editor.Steps().Redo();
    ReplaceSong(editor, kStepLoadSong, kHere, Song::MakeDefault());
    EXPECT_TRUE(editor.IsChanged());
    editor.MarkSaved();
    EnterNote(editor, kHere, 42, 1, kStepNote);
    for (const bool changed : {false, false, true}) {
        editor.Steps().Undo();
        EXPECT_EQ(editor.IsChanged(), changed) << editor.Steps().UndoCount();
    }
    editor.Steps().Redo();
    EnterNote(editor, kHere, 50, 1, kStepNote);  // what was undone, the load too, cannot be had again
    EXPECT_TRUE(editor.IsChanged());
    EXPECT_EQ(editor.Steps().Redo(), nullptr);
}

TEST(Journal, AGestureIsOneStepAndEndsWithAnUndo) {
    Desk desk;
    Editor& editor = desk.editor;
    const auto play = [&](int note) {
        Place at = kHere;
        at.row = note % 8;
        EnterNote(editor, at, note, 1, kStepTake);
    };
    const Bytes empty = desk.Saved();
    editor.Steps().SetGesture(7);
    for (int note = 40; note < 60; ++note) play(note);
    SetBpm(editor, kHere, 130);                  // by another name
    for (int bpm = 131; bpm < 150; ++bpm) SetBpm(editor, kHere, bpm);
    EXPECT_EQ(editor.Steps().UndoCount(), 2u);
    editor.Steps().Undo();
    EXPECT_EQ(desk.player.GetSong().StartBpm(), 125u);
    editor.Steps().Redo();
    EXPECT_EQ(desk.player.GetSong().StartBpm(), 149u);
    editor.Steps().Undo();
    editor.Steps().Undo();
    EXPECT_TRUE(desk.Saved() == empty);
    editor.Steps().Redo();
    play(70);                                    // a take that goes on behind an undo is another step
    EXPECT_EQ(editor.Steps().UndoCount(), 2u);
    editor.Steps().SetGesture(8);
    play(71);
    EXPECT_EQ(editor.Steps().UndoCount(), 3u);
}

TEST(Journal, KeepsToItsMemoryAndAlwaysTheLastStep) {
    constexpr std::uint32_t kFrames = 100000;
    constexpr std::size_t kWave = kFrames * sizeof(float);
    Desk desk;
    Editor& editor = desk.editor;
    editor.Steps().SetBudget(5 * kWave);
    for (int i = 0; i < 20; ++i) LoadIntoSlot(editor, kHere, MakeSample(SineWave(kFrames)), "wave");
    EXPECT_LE(editor.Steps().Bytes(), 5 * kWave);
    EXPECT_EQ(editor.Steps().UndoCount(), 4u);
    while (editor.Steps().Undo()) EXPECT_LE(editor.Steps().Bytes(), 5 * kWave);
    while (editor.Steps().Redo()) {}
    EXPECT_EQ(editor.Steps().UndoCount(), 4u);
    editor.Steps().SetBudget(0);
    ASSERT_EQ(editor.Steps().UndoCount(), 1u);
    ASSERT_TRUE(editor.Steps().Undo());
    EXPECT_TRUE(editor.Steps().Redo());
}

// The wave that was replaced is the one that comes back, not a copy of it.
TEST(Journal, MovesWavesAndCopiesNone) {
    Desk desk(SongBuilder().SineInstrument(0, 5000).Build());
    const float* wave = desk.player.GetSong().GetInstrument(0)->GetSample(0)->Wave();
    LoadIntoSlot(desk.editor, kHere, MakeSample(SineWave(100)), "other");
    ReplaceSong(desk.editor, kStepLoadSong, kHere, nullptr);
    desk.editor.Steps().Undo();
    desk.editor.Steps().Undo();
    EXPECT_EQ(desk.player.GetSong().GetInstrument(0)->GetSample(0)->Wave(), wave);
}

}  // namespace
}  // namespace vonta
