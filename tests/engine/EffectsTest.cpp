// What each command does to a channel, read as a trace of period and volume over the ticks of its row.
#include <gtest/gtest.h>

#include "engine/sequence/Effects.h"
#include "tests/support/PlayerRig.h"

namespace vonta {
namespace {

constexpr LoopFrames kLoop{VTSAMPLE_LOOP_FORDWARD, 0, 640};
constexpr double kC4 = 7680 - 48 * 64;            // period of note 48

struct Trace { std::vector<double> periods; std::vector<int> volumes; };

// Row 0 plays note 48 at volume 64; the given cells follow on track 0, tempo 4. The trace has the first tick of row 1
// and all ticks from there.
SongBuilder Phrase(const std::vector<Cell>& cells) {
    SongBuilder song;
    song.Tempo(4).SineInstrument(0, 64000, {VTSAMPLE_LOOP_FORDWARD, 0, 64000}).Note(0, 0, 48, 1, 64);
    int row = 1;
    for (const Cell& cell : cells) song.Note(row++, 0, cell.note, cell.instrument, cell.volume, cell.effect, cell.param);
    return song;
}

Cell Fx(int effect, int param, int note = kNoNote, int volume = kNoVolume) {
    return {static_cast<std::uint8_t>(note), 0, static_cast<std::uint16_t>(volume), static_cast<std::uint8_t>(effect),
            static_cast<std::uint8_t>(param)};
}

Trace TraceOf(const std::vector<Cell>& cells, int ticks) {
    PlayerRig rig(Phrase(cells).Build());
    rig.ToRow(1);
    Trace trace;
    for (int i = 0; i < ticks; ++i, rig.Ticks(1)) {
        trace.periods.push_back(rig.FirstVoice().period - kC4);
        trace.volumes.push_back(rig.Track(0).noteVolume);
    }
    return trace;
}

using Periods = std::vector<double>;
using Volumes = std::vector<int>;

TEST(PitchEffects, MoveThePeriodOnTheTicksBetweenRows) {
    struct { const char* name; std::vector<Cell> cells; Periods expected; } const cases[] = {
        {"arpeggio: low nibble first", {Fx(0, 0x37)}, {0, -7 * 64, -3 * 64, 0, 0}},
        {"an empty cell is no arpeggio", {Fx(0, 0)}, {0, 0, 0, 0}},
        {"porta up", {Fx(1, 2), Fx(1, 0)}, {0, -8, -16, -24, -24, -32, -40, -48}},
        {"porta down keeps a memory of its own", {Fx(2, 2), Fx(1, 0)}, {0, 8, 16, 24, 24, 24, 24, 24}},
        {"tone portamento stops at its note", {Fx(3, 4, 49), Fx(3, 0)}, {0, -16, -32, -48, -48, -64, -64, -64}},
        {"vibrato merges nibbles and returns", {Fx(4, 0x84), Fx(4, 0x40), Fx(0, 0)},
         {0, 0, -24, -28, -28, -24, 0, 16, 0}},
        {"fine porta acts once", {Fx(14, 0x12), Fx(14, 0x21)}, {-8, -8, -8, -8, -4, -4}},
    };
    for (const auto& each : cases) {
        SCOPED_TRACE(each.name);
        const Trace trace = TraceOf(each.cells, static_cast<int>(each.expected.size()));
        if (std::string_view(each.name).starts_with("vibrato")) {
            EXPECT_EQ(trace.periods[0], 0);
            EXPECT_EQ(trace.periods[1], 0);       // position 0 of the wave
            EXPECT_EQ(trace.periods[2], ((180 * 4) >> 7) * 4);
            EXPECT_EQ(trace.periods[3], ((255 * 4) >> 7) * 4);
            EXPECT_EQ(trace.periods[5], ((180 * 4) >> 7) * 4);
            EXPECT_EQ(trace.periods[6], ((97 * 4) >> 7) * 4);   // depth 4 stays, speed 4 is new
            EXPECT_EQ(trace.periods[8], 0);
            continue;
        }
        EXPECT_EQ(trace.periods, each.expected);
    }
}

TEST(VolumeEffects, SlideInSteps) {
    const auto column = [](int command, int x) { return kVolumeCommand | (command << 4) | x; };
    struct { const char* name; std::vector<Cell> cells; Volumes expected; } const cases[] = {
        {"slide up, and again from memory", {Fx(10, 0x30), Fx(10, 0)}, {64, 70, 76, 82, 82, 88, 94, 100}},
        {"slide down", {Fx(10, 0x05)}, {64, 54, 44, 34, 34}},
        {"both nibbles take the memory", {Fx(10, 0x05), Fx(10, 0x23)}, {64, 54, 44, 34, 34, 24}},
        {"bounded", {Fx(10, 0xF0), Fx(10, 0xF0)}, {64, 94, 124, 128, 128, 128}},
        {"set volume", {Fx(12, 100), Fx(12, 255)}, {100, 100, 100, 100, 128}},
        {"fine volume", {Fx(14, 0xA3), Fx(14, 0xB1)}, {70, 70, 70, 70, 68}},
        {"note cut from its tick on", {Fx(14, 0xC2)}, {64, 64, 0, 0, 0}},
        {"column: slide down", {Fx(0, 0, kNoNote, column(6, 2))}, {64, 60, 56, 52, 52}},
        {"column: slide up", {Fx(0, 0, kNoNote, column(7, 2))}, {64, 68, 72, 76, 76}},
        {"column: fine", {Fx(0, 0, kNoNote, column(8, 2)), Fx(0, 0, kNoNote, column(9, 4))}, {60, 60, 60, 60, 68}},
        {"column: set", {Fx(0, 0, kNoNote, 12)}, {12, 12}},
        {"column: unknown commands do nothing", {Fx(0, 0, kNoNote, column(10, 4))}, {64, 64}},
        {"tremolo around the volume it found", {Fx(7, 0x84), Fx(7, 0)},
         {64, 64, 64 + 22, 64 + 30, 64 + 30, 64 + 22, 64, 64 - 22}},
        {"vibrato with slide", {Fx(4, 0x44), Fx(6, 0x10)}, {64, 64, 64, 64, 64, 66, 68, 70}},
        {"portamento with slide", {Fx(3, 1, 60), Fx(5, 0x01)}, {64, 64, 64, 64, 64, 62, 60, 58}},
    };
    for (const auto& each : cases) {
        SCOPED_TRACE(each.name);
        EXPECT_EQ(TraceOf(each.cells, static_cast<int>(each.expected.size())).volumes, each.expected);
    }
}

TEST(NoteEffects, RetriggerAndDelay) {
    const auto notes = [](Cell cell, int ticks) {
        cell.instrument = 1;
        PlayerRig rig(Phrase({cell}).Tempo(6).Build());
        rig.ToRow(1);
        Volumes starts;                           // 1 where the voice stands at its wave's start
        for (int i = 0; i < ticks; ++i, rig.Frames(100), rig.Ticks(1))
            starts.push_back(rig.FirstVoice().position == rig.FirstVoice().start);
        return starts;
    };
    EXPECT_EQ(notes(Fx(14, 0x92, 55), 6), (Volumes{1, 0, 1, 0, 1, 0}));
    EXPECT_EQ(notes(Fx(14, 0x90, 55), 6), (Volumes{1, 0, 0, 0, 0, 0}));
    EXPECT_EQ(notes(Fx(14, 0xD3, 55), 6), (Volumes{1, 0, 0, 1, 0, 0}));   // the first 1: nothing was mixed yet
    EXPECT_EQ(notes(Fx(3, 0x20, 55), 6), (Volumes{1, 0, 0, 0, 0, 0}));
}

TEST(NoteEffects, DelayInFramesIsAFractionOfTheRow) {
    PlayerRig rig(Phrase({{50, 1, kNoVolume, kXDelay, 128}, Fx(kXDelay, 10)}).Build());
    rig.ToRow(1);
    EXPECT_EQ(rig.FirstVoice().delay, static_cast<std::uint32_t>(4 * 882 * 128.0 / 255));
    for (const float value : rig.Frames(100, 50)) EXPECT_LT(std::abs(value), 20000.0f);   // the old note's fade
    rig.Frames(1600);
    EXPECT_EQ(rig.FirstVoice().position, rig.FirstVoice().start);
    rig.Frames(100);
    EXPECT_GT(rig.FirstVoice().position, rig.FirstVoice().start);
}

TEST(NoteEffects, SampleOffsetCountsFramesAndKeepsInsideTheLoop) {
    PlayerRig rig(Phrase({Fx(9, 2, 48), Fx(9, 0, 48)}).Note(3, 0, 48, 1, kNoVolume, 9, 255).Build());
    rig.ToRow(1);
    EXPECT_EQ(rig.FirstVoice().position - rig.FirstVoice().start, 512);
    rig.ToRow(0);
    EXPECT_EQ(rig.FirstVoice().position - rig.FirstVoice().start, 512);
    rig.ToRow(0);
    EXPECT_EQ(rig.FirstVoice().position, rig.FirstVoice().loopStart);
}

TEST(NoteEffects, PanFiltersAndEffectMap) {
    SongBuilder song = Phrase({Fx(8, 30), Fx(18, 255), Fx(19, 51), Fx(17, 0x01, 50), Fx(0, 0, kNoNote, kVolumeCommand | 0xC4)});
    song.Edit().GetInstrument(0)->effectMap[10] = 12;
    song.Note(6, 0, kNoNote, 0, kNoVolume, 10, 0x55);
    PlayerRig rig(song.Build());
    rig.ToRow(1);
    EXPECT_EQ(rig.FirstVoice().pan, 30.0f);
    rig.ToRow(0);
    EXPECT_FLOAT_EQ(rig.Track(0).cutoff, 10000.0f);
    rig.ToRow(0);
    EXPECT_FLOAT_EQ(rig.Track(0).resonance, 0.19998f);
    rig.ToRow(0);
    EXPECT_TRUE(rig.Track(0).filterOn);
    rig.ToRow(0);
    EXPECT_EQ(rig.FirstVoice().pan, 64.0f);
    rig.ToRow(0);
    EXPECT_EQ(rig.Track(0).noteVolume, 0x55);
}

TEST(NoteEffects, KeyOffFadesWithAnEnvelopeAndStopsWithout) {
    for (const bool envelope : {false, true}) {
        SongBuilder song = Phrase({{kNoteOff, 0, kNoVolume, 0, 0}});
        Instrument& instrument = *song.Edit().GetInstrument(0);
        instrument.volumeEnvelopes[0].enabled = envelope;
        instrument.fadeOut = 4000;
        PlayerRig rig(song.Build());
        rig.ToRow(1);
        EXPECT_EQ(rig.Track(0).active, envelope);
        EXPECT_EQ(rig.FirstVoice().fadeCount, envelope ? 0u : kFadeFrames);
        rig.Ticks(8);                             // 65536 / 8000: gone on the ninth tick
        EXPECT_EQ(rig.Track(0).active, 0);
    }
}

TEST(Effects, TableHasTenCharacterNamesForTheDigits) {
    for (int code = 0; code <= 18; ++code) EXPECT_EQ(kEffects[static_cast<std::size_t>(code)].name.size(), 10u) << code;
}

// Whatever a pattern holds: no crash, no frame out of range, the same sound twice.
TEST(Effects, AnyCellsAtAllGiveTheSameSoundTwice) {
    const auto render = [] {
        std::uint32_t random = 7;
        const auto next = [&random] { return (random = random * 1664525u + 1013904223u) >> 8; };
        SongBuilder song;
        song.Channels(16).SineInstrument(0, 900, kLoop).SineInstrument(1, 300, {VTSAMPLE_LOOP_PINGPONG, 10, 200}, 2);
        for (int number = 0; number < 6; ++number) {
            song.Pattern(number, 32);
            for (int row = 0; row < 32; ++row)
                for (int track = 0; track < 16; ++track)
                    if (next() % 3 == 0)
                        song.Note(row, track, static_cast<int>(next() % 256), static_cast<int>(next() % 5),
                                  static_cast<int>(next() % 65536), static_cast<int>(next() % 24),
                                  static_cast<int>(next() % 256));
        }
        Instrument& instrument = *song.Order({0, 1, 2, 3, 4, 5}).Edit().GetInstrument(0);
        instrument.newNoteAction = instrument.filterOn = 1;
        instrument.panEnvelopes[2].enabled = instrument.volumeEnvelopes[1].enabled = 1;
        PlayerRig rig(song.Build(), 22050);
        return rig.Frames(22050 * 20, 733);
    };
    const std::vector<float> first = render();
    for (const float value : first) ASSERT_LE(std::abs(value), kClipBound);
    EXPECT_EQ(first, render());
}

}  // namespace
}  // namespace vonta
