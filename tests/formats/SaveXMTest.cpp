#include <gtest/gtest.h>

#include "tests/support/FakePlugins.h"
#include "tests/support/ModuleBytes.h"
#include "tests/support/SongBuilder.h"
#include "tests/support/XmBuilder.h"

namespace vonta {
namespace {

using test::ByteBuilder;
using test::JoinLines;
using test::LoadBytes;
using test::SaveBytes;
using Bytes = std::vector<std::uint8_t>;

constexpr std::size_t kHeader = 336, kPatternHeader = 9;

Bytes Slice(const Bytes& bytes, std::size_t at, std::size_t width) {
    return {bytes.begin() + static_cast<std::ptrdiff_t>(at),
            bytes.begin() + static_cast<std::ptrdiff_t>(at + width)};
}

// All zeros but for one.
Bytes Zeros(std::size_t count, std::size_t at, std::uint8_t value) {
    Bytes bytes(count);
    bytes[at] = value;
    return bytes;
}

// A song of one pattern with one row, so that its instruments start at a known place.
SongBuilder OneRow() { return std::move(SongBuilder().Channels(2).Order({0}).Pattern(0, 1)); }
constexpr std::size_t kInstruments = kHeader + kPatternHeader + 2;

TEST(SaveXM, TheHeaderHoldsTheSongsFields) {
    const auto song = OneRow().Tempo(3).Bpm(90).Order({2, 1, 0}).Restart(2).SampleInstrument(4, {0}).Build();
    song->title = "a title of 25 characters.";
    ByteBuilder expected;
    expected.Text("Extended Module: ").FixedText("a title of 25 chara", 20).U8(26);
    expected.FixedText("Vonta Tracker", 20).U16(0x104).U32(276).U16(3).U16(2).U16(2).U16(1).U16(5).U16(1);
    expected.U16(3).U16(90).U8(2).U8(1).Zeros(254);
    EXPECT_EQ(Slice(SaveBytes(*song, SaveMode::Xm).bytes, 0, kHeader), expected.bytes);
}

TEST(SaveXM, CellsArePackedUnlessFull) {
    const struct { Cell cell; Bytes bytes; } cases[] = {
        {{}, {0x80}},
        {{0, 0, kNoVolume, 0, 0}, {0x81, 1}},
        {{95, 0, kNoVolume, 0, 0}, {0x81, 96}},
        {{96, 0, kNoVolume, 0, 0}, {0x80}},
        {{kNoteOff, 0, kNoVolume, 0, 0}, {0x81, 0x61}},
        {{130, 0, kNoVolume, 0, 0}, {0x80}},
        {{kNoNote, 128, 0, 0, 0}, {0x86, 128, 0x10}},
        {{kNoNote, 0, 128, 0, 0}, {0x84, 0x50}},
        {{kNoNote, 0, 0x8060, 0, 0}, {0x80}},
        {{kNoNote, 0, kNoVolume, 16, 0x40}, {0x90, 0x40}},
        {{kNoNote, 0, kNoVolume, 12, 0x80}, {0x98, 12, 0x40}},
        {{kNoNote, 1, 2, 3, 4}, {0, 1, 17, 3, 4}},
        {{11, 1, 2, 12, 1}, {0x8F, 12, 1, 17, 12}},
    };
    for (const auto& c : cases) {
        const auto song = OneRow().Build();
        song->GetPattern(0)->Write(0, 0, c.cell);
        const auto bytes = SaveBytes(*song, SaveMode::Xm).bytes;
        Bytes expected = {9, 0, 0, 0, 0, 1, 0, static_cast<std::uint8_t>(c.bytes.size() + 1), 0};
        expected.insert(expected.end(), c.bytes.begin(), c.bytes.end());
        expected.push_back(0x80);
        EXPECT_EQ(Slice(bytes, kHeader, bytes.size() - kHeader), expected) << int{c.cell.note};
    }
}

TEST(SaveXM, EmptyPlacesAreWrittenSoThatNumbersStay) {
    auto instrument = std::make_unique<Instrument>();
    instrument->SetSample(2, MakeSample({256}), 1);
    const auto song = OneRow().Pattern(2, 1).Instrument(1, std::move(instrument)).Build();
    const auto bytes = SaveBytes(*song, SaveMode::Xm).bytes;
    const std::size_t second = kInstruments;
    EXPECT_EQ(Slice(bytes, second, kPatternHeader), (Bytes{9, 0, 0, 0, 0, 64, 0, 128, 0}));
    const std::size_t instruments = second + kPatternHeader + 128 + kPatternHeader + 2;
    EXPECT_EQ(Slice(bytes, instruments, 29), Zeros(29, 0, 29));
    const std::size_t samples = instruments + 29 + 243;
    EXPECT_EQ(Slice(bytes, samples, 40), Zeros(40, 14, 0x10));

    const auto loaded = LoadBytes(bytes);
    ASSERT_TRUE(loaded.song) << loaded.report.error;
    EXPECT_EQ(JoinLines(loaded.report), "");
    EXPECT_EQ(loaded.song->GetInstrument(1)->GetKeySample(0, 0, 127), 255);
    EXPECT_EQ(loaded.song->GetInstrument(1)->GetSample(2)->Count(), 1u);
}

TEST(SaveXM, WavesAreMonoDeltasOfTheDepthTheyNeed) {
    const struct { const char* what; std::vector<float> wave; int channels; Bytes header, deltas;
    } cases[] = {
        {"8 bits", {256, 32512, -32768, 0}, 1, {4, 0, 0, 0, 1, 0, 0, 0, 2, 0, 0, 0}, {1, 126, 1, 128}},
        {"16 bits",
         {1, -32768, 32767, 0},
         1,
         {8, 0, 0, 0, 2, 0, 0, 0, 4, 0, 0, 0},
         {1, 0, 0xFF, 0x7F, 0xFF, 0xFF, 1, 0x80}},
        {"between 16 bits",
         {1.9f, -1.9f, 40000, -40000},
         1,
         {8, 0, 0, 0, 2, 0, 0, 0, 4, 0, 0, 0},
         {1, 0, 0xFE, 0xFF, 0x00, 0x80, 1, 0}},
        {"stereo, 8 bits",
         {512, 0, 256, 512, 0, 0, 256, 256},
         2,
         {4, 0, 0, 0, 1, 0, 0, 0, 2, 0, 0, 0},
         {1, 0, 0xFF, 1}},
        {"stereo, 16 bits",
         {1, 2, 5, 5, 0, 0, 0, 0},
         2,
         {8, 0, 0, 0, 2, 0, 0, 0, 4, 0, 0, 0},
         {1, 0, 4, 0, 0xFB, 0xFF, 0, 0}},
    };
    for (const auto& c : cases) {
        const auto song =
            OneRow().SampleInstrument(0, c.wave, c.channels, {VTSAMPLE_LOOP_PINGPONG, 1, 3}).Build();
        const auto bytes = SaveBytes(*song, SaveMode::Xm).bytes;
        const std::size_t sample = kInstruments + 243, wide = c.deltas.size() > 4;
        EXPECT_EQ(Slice(bytes, sample, 12), c.header) << c.what;
        EXPECT_EQ(Slice(bytes, sample + 12, 5),
                  (Bytes{64, 0, static_cast<std::uint8_t>(wide ? 0x12 : 2), 128, 0}))
            << c.what;
        EXPECT_EQ(Slice(bytes, sample + 40, bytes.size() - sample - 40), c.deltas) << c.what;
    }
}

// Blocks of a long wave join without a step.
TEST(SaveXM, SavedAndLoadedIsTheSameWhereTheFormatHasAPlace) {
    auto wave = SineWave(50001);
    for (float& value : wave) value = std::trunc(value);
    wave[50000] = wave[49999];                       // what the self-check of samples makes of the end
    auto instrument = MakeInstrument(MakeSample(wave, 1, {VTSAMPLE_LOOP_PINGPONG, 100, 50000}));
    instrument->SetName("an instrument");
    instrument->SetKeySample(7, 1, 0, 127);
    instrument->fadeOut = 300;
    auto second = MakeSample({256, 512, 512});
    second->fineTune = -7;
    second->toneRel = -12;
    second->panning = 3;
    second->volume = 40;
    second->SetName("its second sample");
    instrument->AddSample(std::move(second));
    Envelope& volume = instrument->volumeEnvelopes[0];
    volume = {.enabled = 1, .numPoints = 4, .sustainOn = 1, .sustainPoint = 2, .loopStart = 1, .loopEnd = 3};
    instrument->panEnvelopes[0] = {.enabled = 0, .numPoints = 2, .loopOn = 1, .loopEnd = 1};
    SongBuilder builder;
    builder.Channels(5).Tempo(7).Bpm(99).Pattern(1, 1).Pattern(0, 256).Order({0, 1, 0}).Restart(2);
    for (int i = 0; i < 256; ++i)
        builder.Note(i, i % 5, i % 98 < 96 ? i % 98 : i % 98 + 32, i % 129, 2 * (i % 65), i % 16, i & 0xFE);
    const auto song = builder.Instrument(0, std::move(instrument)).Build();
    song->title = "Round trip";

    const auto saved = SaveBytes(*song, SaveMode::Xm);
    EXPECT_EQ(JoinLines(saved.report), "");
    const auto loaded = LoadBytes(saved.bytes);
    ASSERT_TRUE(loaded.song) << loaded.report.error;
    EXPECT_EQ(JoinLines(loaded.report), "");
    const Song& back = *loaded.song;
    EXPECT_EQ(back.comments, "an instrument\r");
    for (int row = 0; row < 256; ++row)
        for (int track = 0; track < 5; ++track)
            EXPECT_EQ(back.GetPattern(0)->Read(row, track), song->GetPattern(0)->Read(row, track)) << row;
    const Sample &from = *song->GetInstrument(0)->GetSample(0), &to = *back.GetInstrument(0)->GetSample(0);
    ASSERT_EQ(from.Count(), to.Count());
    EXPECT_TRUE(std::equal(from.Wave(), from.Wave() + from.Count(), to.Wave()));
    EXPECT_EQ(SaveBytes(*loaded.song, SaveMode::Xm).bytes, saved.bytes);    // so all other fields came back
}

// 256 rows of 64 full cells need more bytes than the pattern's size can tell.
TEST(SaveXM, AnOverfullPatternLosesItsLastCellsAndStaysReadable) {
    SongBuilder builder;
    builder.Channels(64).Pattern(1, 1).Note(0, 0, 5).Pattern(0, 256).Order({0, 1});
    for (int row = 0; row < 256; ++row)
        for (int track = 0; track < 64; ++track) builder.Note(row, track, 60, 1, 64, 1, 1);
    const auto song = builder.Build();
    const auto saved = SaveBytes(*song, SaveMode::Xm);
    const auto loaded = LoadBytes(saved.bytes);
    ASSERT_TRUE(loaded.song) << loaded.report.error;
    EXPECT_EQ(JoinLines(loaded.report), "");
    int lost = 0;
    for (int row = 0; row < 256; ++row)
        for (int track = 0; track < 64; ++track) lost += loaded.song->GetPattern(0)->Read(row, track) == Cell{};
    EXPECT_EQ(lost, (256 * 64 * 5 - 65535 + 3) / 4);
    EXPECT_EQ(loaded.song->GetPattern(1)->Read(0, 0).note, 5);
    EXPECT_EQ(JoinLines(saved.report),
              "Cells at the end of overfull patterns left out: " + std::to_string(lost) + "\n");
}

TEST(SaveXM, EverythingLostIsToldOnceWithItsCount) {
    auto instrument = MakeInstrument(MakeSample({1.5f, 2, 3, 4}, 2));
    instrument->AddKeySample(5, 1, 0, 127);
    instrument->volumeEnvelopes[0].enabled = 1;      // this one has its place
    instrument->panEnvelopes[7].enabled = 1;
    for (int i = 1; i < 20; ++i) instrument->AddSample(MakeSample({0}));
    const auto song = OneRow().Instrument(0, std::move(instrument)).Note(0, 0, kNoteOff, 0, 0x8070, 16).Volume(0, 1, 33).Build();
    song->SetSynth(3, std::make_unique<test::FakeSynth>("lead.dll"));
    EXPECT_EQ(JoinLines(SaveBytes(*song, SaveMode::Xm).report),
              "Plug-ins of the song left out: 1\n"
              "Volume column entries left out: 1\n"
              "Volumes rounded to 64 steps: 1\n"
              "Effects above F, which become others: 1\n"
              "Samples left out, of instruments with many: 4\n"
              "Instruments that lose velocity zones or layers: 1\n"
              "Instruments that lose envelopes: 1\n"
              "Stereo samples made mono: 1\n"
              "Samples brought down to 16 bits: 1\n");
}

// The song's own limits are the widest that any format is asked to hold; a bare one holds nothing.
TEST(SaveForeign, ExtremesOfTheSongAreSavedAndLoaded) {
    Song bare;
    auto full = SongBuilder().Channels(64).Build();
    full->SetPatternPosLenght(256);
    full->SetPatternPosRestart(255);
    full->patternList.fill(255);
    for (int i = 0; i < kMaxPatterns; ++i) full->SetPattern(i, std::make_unique<Pattern>());
    for (int i = 0; i < kMaxInstruments; ++i) full->SetInstrument(i, MakeInstrument(MakeSample({0})));
    for (Song* song : {&bare, full.get()})
        for (const SaveMode mode : {SaveMode::Xm, SaveMode::Mod}) {
            const auto saved = SaveBytes(*song, mode);
            const auto loaded = LoadBytes(saved.bytes);
            ASSERT_TRUE(loaded.song) << loaded.report.error;
            EXPECT_EQ(JoinLines(loaded.report), "");
        }
}

}  // namespace
}  // namespace vonta
