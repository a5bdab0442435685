#include <gtest/gtest.h>

#include <functional>

#include "tests/support/PlayerRig.h"

namespace vonta {
namespace {

using Rows = std::vector<std::string>;

struct OrderCase {
    const char* name;
    std::function<void(SongBuilder&)> write;      // into four patterns of four rows, played in order at tempo 1
    Rows expected;
};

const OrderCase kOrders[] = {
    {"plain", [](SongBuilder&) {}, {"0:0", "0:1", "0:2", "0:3", "1:0", "1:1"}},
    {"break", [](SongBuilder& s) { s.Pattern(0, 4).Effect(1, 0, 13, 0x02); }, {"0:0", "0:1", "1:2", "1:3", "2:0"}},
    {"break reads decimal", [](SongBuilder& s) { s.Pattern(0, 4).Effect(0, 0, 13, 0x12).Pattern(1, 16); },
     {"0:0", "1:12", "1:13"}},
    {"break with a digit above nine is taken as it stands",
     [](SongBuilder& s) { s.Pattern(0, 4).Effect(0, 0, 13, 0x1F).Pattern(1, 64); }, {"0:0", "1:31", "1:32"}},
    {"break beyond the next pattern enters at its first row",
     [](SongBuilder& s) { s.Pattern(0, 4).Effect(0, 0, 13, 0x05); }, {"0:0", "1:0", "1:1"}},
    {"break to the row just behind the end plays an empty row",
     [](SongBuilder& s) { s.Pattern(0, 4).Effect(0, 0, 13, 0x04); }, {"0:0", "1:4", "2:0"}},
    {"jump", [](SongBuilder& s) { s.Pattern(0, 4).Effect(1, 0, 11, 2); }, {"0:0", "0:1", "2:0", "2:1"}},
    {"jump beyond the list goes to the first position",
     [](SongBuilder& s) { s.Pattern(1, 4).Effect(0, 0, 11, 200); }, {"0:0", "0:1", "0:2", "0:3", "1:0", "0:0"}},
    {"break and jump on one row: the position of the jump, the row of the break",
     [](SongBuilder& s) { s.Pattern(0, 4).Effect(0, 0, 13, 0x03).Effect(0, 1, 11, 2); }, {"0:0", "2:3", "3:0"}},
    {"the first jump of a row counts",
     [](SongBuilder& s) { s.Pattern(0, 4).Effect(0, 0, 11, 3).Effect(0, 1, 11, 1); }, {"0:0", "3:0"}},
    {"pattern loop", [](SongBuilder& s) { s.Pattern(0, 4).Effect(1, 0, 14, 0x60).Effect(2, 0, 14, 0x62); },
     {"0:0", "0:1", "0:2", "0:1", "0:2", "0:1", "0:2", "0:3", "1:0"}},
    {"pattern delay holds a row",
     [](SongBuilder& s) { s.Pattern(0, 4).Effect(1, 0, 14, 0xE2); }, {"0:0", "0:1", "0:1", "0:1", "0:2"}},
    {"the end returns to the restart position",
     [](SongBuilder& s) { s.Restart(2).Pattern(0, 4).Effect(0, 0, 11, 3).Pattern(3, 4).Effect(0, 0, 13, 0); },
     {"0:0", "3:0", "2:0", "2:1"}},
    {"a missing pattern plays as 64 empty rows", [](SongBuilder& s) { s.Order({9, 0}).Pattern(0, 4); },
     {"0:0", "0:1", "0:2"}},
};

TEST(Sequencer, FollowsJumpsBreaksLoopsAndDelays) {
    for (const OrderCase& each : kOrders) {
        SCOPED_TRACE(each.name);
        SongBuilder song;
        song.Tempo(1);
        for (int number = 0; number < 4; ++number) song.Pattern(number, 4);
        song.Order({0, 1, 2, 3});
        each.write(song);
        PlayerRig rig(song.Build());
        EXPECT_EQ(rig.Rows(static_cast<int>(each.expected.size())), each.expected);
    }
}

TEST(Sequencer, RowZeroComesARowAfterPlayAndEachRowLastsTempoTicks) {
    PlayerRig rig(SongBuilder().Tempo(3).SineInstrument(0, 640).Note(0, 0, 48, 1).Note(1, 0, 50, 1).Build());
    rig.Ticks(2);
    EXPECT_FALSE(rig.Track(0).active);
    rig.Ticks(1);
    EXPECT_TRUE(rig.Track(0).active);
    EXPECT_EQ(rig.FirstVoice().note, 48);
    rig.Ticks(2);
    EXPECT_EQ(rig.FirstVoice().note, 48);
    rig.Ticks(1);
    EXPECT_EQ(rig.FirstVoice().note, 50);
}

TEST(Sequencer, PatternModeRepeatsThePatternAndIgnoresTheBreaksPosition) {
    PlayerRig rig(SongBuilder().Tempo(1).Pattern(1, 4).Pattern(0, 4).Effect(2, 0, 13, 0x01).Order({0, 1}).Build());
    rig.player.PerformPlay(kPlayPattern);
    EXPECT_EQ(rig.Rows(5), (Rows{"0:0", "0:1", "0:2", "0:0", "0:1"}));
}

TEST(Sequencer, APositionThatWasSetIsPerformedFirst) {
    PlayerRig rig(SongBuilder().Tempo(1).Pattern(0, 8).Pattern(1, 8).Order({0, 1}).Build());
    rig.Rows(3);
    rig.player.SetPosition(1);
    rig.player.SetRow(5);
    rig.player.PerformPlay(kPlayFromHere);
    EXPECT_EQ(rig.Rows(2), (Rows{"1:5", "1:6"}));
    rig.player.SetPosition(7);
    EXPECT_EQ(rig.player.GetCurrentPlayPos().position, 1);
    rig.player.PreviousPattern();
    rig.player.PreviousPattern();
    EXPECT_EQ(rig.player.GetCurrentPlayPos().pattern, 0u);
}

TEST(Sequencer, StopsAtTheEndWhenAskedAndTempoZeroIsAnEnd) {
    struct Listener : SongEndListener {
        int ends = 0;
        void OnSongEnd() override { ++ends; }
    } listener;
    for (const bool byTempo : {false, true}) {
        SongBuilder song;
        song.Tempo(2).Pattern(0, 4).Order({0});
        if (byTempo) song.Effect(3, 0, 15, 0);
        PlayerRig rig(song.Build());
        rig.player.SetSongEndListener(&listener);
        rig.player.SetStopAtEnd(true);
        rig.Ticks(20);
        EXPECT_TRUE(rig.player.HasEnded());
        EXPECT_TRUE(rig.player.IsPlaying());
        rig.player.SetStopAtEnd(false);
        EXPECT_FALSE(rig.player.HasEnded());
    }
    EXPECT_EQ(listener.ends, 2);
}

TEST(Sequencer, KnowsASongThatRunsInACircleButNotAPatternLoop) {
    const auto circle = [](auto write) {
        SongBuilder song;
        song.Tempo(1).Pattern(0, 4).Pattern(1, 4).Order({0, 1, 0});
        write(song);
        PlayerRig rig(song.Build());
        rig.player.SetVisitTracking(true);
        rig.player.PerformPlay(0);
        for (int row = 1; row < 40; ++row) {
            rig.player.DoTick();
            if (rig.player.Revisited()) return row;
        }
        return 0;
    };
    EXPECT_EQ(circle([](SongBuilder&) {}), 0);
    EXPECT_EQ(circle([](SongBuilder& s) { s.Effect(3, 0, 14, 0x63); }), 0);
    EXPECT_EQ(circle([](SongBuilder& s) { s.Effect(3, 0, 11, 0); }), 9);           // back to 0:0
    EXPECT_EQ(circle([](SongBuilder& s) { s.Effect(3, 0, 11, 0).Effect(3, 1, 13, 2); }), 9);
}

TEST(Clock, TicksAreWholeFramesAndTempoChangesWaitForTheNextBlock) {
    struct { std::uint32_t bpm, rate; float frames; float step; } const cases[] = {
        {125, 44100, 882.0f, 1.0f}, {250, 44100, 441.0f, 0.5f}, {33, 44100, 3340.909f, 3.787879f}, {125, 8000, 160.0f, 1.0f}};
    for (const auto& each : cases) {
        PlayerRig rig(SongBuilder().Bpm(each.bpm).Build(), each.rate);
        EXPECT_NEAR(rig.player.GetMixer().samplesPerTick, each.frames, 0.001f);
        const std::uint32_t before = rig.player.TicksPlayed();
        const int tick = static_cast<int>(each.frames);
        for (int i = 0; i < 7; ++i) rig.player.Render(tick / 7 + (i < tick % 7));
        EXPECT_EQ(rig.player.TicksPlayed(), before + 1) << each.bpm;
    }

    PlayerRig rig(SongBuilder().Tempo(1).Effect(0, 0, 15, 250).Build());
    rig.player.Render(1024);                      // row 0 at frame 882 doubles the speed, from the next block on
    EXPECT_EQ(rig.player.TicksPlayed(), 1u);
    rig.player.Render(441 - 142);
    EXPECT_EQ(rig.player.TicksPlayed(), 2u);
}

TEST(Clock, CountsASongSilentlyAsItPlays) {
    const auto make = [] {
        return SongBuilder().Tempo(5).SineInstrument(0, 64, {VTSAMPLE_LOOP_FORDWARD, 0, 64}).Note(0, 0, 48, 1)
            .Effect(8, 0, 15, 180).Effect(20, 1, 15, 3).Effect(30, 1, 14, 0xE4).Order({0, 0}).Build();
    };
    PlayerRig heard(make()), counted(make());
    heard.player.SetStopAtEnd(true);
    counted.player.SetStopAtEnd(true);
    int blocks = 0, silent = 0;
    while (!heard.player.Render(1024)) ++blocks;
    while (!counted.player.RenderSilently(1024)) ++silent;
    EXPECT_EQ(blocks, silent);
    EXPECT_FALSE(counted.Track(0).active);
}

TEST(Seek, CarriesTempoAndMemoriesAlong) {
    PlayerRig rig(SongBuilder().Tempo(6).Pattern(0, 8).Pattern(1, 8).Effect(1, 0, 1, 0x12).Effect(2, 0, 15, 3)
                      .Order({0, 1}).Build());
    rig.player.SeekToTick(6 * 11 + 3 * 2);
    const PlayPosition at = rig.player.GetCurrentPlayPos();
    EXPECT_EQ(at.position, 1);
    EXPECT_EQ(at.row, 3);
    EXPECT_EQ(rig.player.Memory(0).portaUpMemory, 0x12);
    EXPECT_EQ(rig.player.GetSong().GetTempo(), 3u);
    EXPECT_EQ(rig.player.TicksPlayed(), 72u);
}

TEST(Seek, StartsNoNoteNotEvenADelayedOne) {
    PlayerRig rig(SongBuilder().Tempo(6).SineInstrument(0, 640, {VTSAMPLE_LOOP_FORDWARD, 0, 640})
                      .Note(0, 0, 48, 1, kNoVolume, 14, 0xD2).Note(0, 1, 48, 1, kNoVolume, 14, 0x92).Note(0, 2, 48, 1).Build());
    rig.player.SeekToTick(20);
    for (int track = 0; track < 3; ++track) EXPECT_FALSE(rig.Track(track).active) << track;
}

}  // namespace
}  // namespace vonta
