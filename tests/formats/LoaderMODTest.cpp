#include <gtest/gtest.h>

#include "tests/support/ModBuilder.h"
#include "tests/support/ModuleBytes.h"

namespace vonta {
namespace {

using test::JoinLines;
using test::LoadBytes;
using test::ModBuilder;
using test::ModSampleRecipe;

TEST(LoaderMOD, TheTagTellsTheNumberOfChannels) {
    const struct { const char* tag; int channels; } cases[] = {
        {"M.K.", 4}, {"M!K!", 4}, {"FLT4", 4}, {"OCTA", 8}, {"CD81", 8}, {"TDZ3", 3}, {"TDZ1", 1},
        {"8CHN", 8}, {"10CH", 10}, {"32CH", 32}, {"64CH", 64}, {"99CH", 99}, {"TDZ0", 0}, {"xCHN", 0}, {"0CHN", 0},
        {"-1CH", 0}, {"xyCH", 0}, {"M.K!", 0}, {"FLT8", 0}, {"    ", 0},
    };
    for (const auto& c : cases) {
        ModBuilder mod = ModBuilder::Small();
        mod.tag = c.tag;
        mod.channels = c.channels;
        const auto loaded = LoadBytes(mod.Build());
        ASSERT_EQ(loaded.song != nullptr, c.channels > 0) << c.tag;
        EXPECT_NE(loaded.song == nullptr, loaded.report.error.empty());
        if (!loaded.song) continue;
        EXPECT_EQ(loaded.song->numChannels, std::min(c.channels, 64)) << c.tag;
        EXPECT_EQ(loaded.song->GetPattern(1)->Read(0, 0).note, 71) << c.tag;
        EXPECT_EQ(JoinLines(loaded.report),
                  c.channels > 64 ? "The file has 99 channels: the last 35 are dropped.\n" : "") << c.tag;
    }
}

TEST(LoaderMOD, HeaderFieldsBecomeTheSongs) {
    ModBuilder mod = ModBuilder::Small();
    mod.restart = 1;
    mod.orders.assign(128, 0);
    mod.orders[127] = 127;                           // behind the song's end, and still the last pattern
    const auto loaded = LoadBytes(mod.Build());
    ASSERT_TRUE(loaded.song) << loaded.report.error;
    const Song& song = *loaded.song;
    EXPECT_EQ(song.length, 2u);
    EXPECT_EQ(song.restartPos, 0u);
    EXPECT_EQ(song.numPatterns, 128);
    EXPECT_EQ(song.numInstruments, 31);
    EXPECT_EQ(song.comments, "first\rsecond\r" + std::string(29, '\r'));
}

TEST(LoaderMOD, CellsAreConverted) {
    const struct { std::array<std::uint8_t, 4> bytes; Cell cell; } cases[] = {
        {{0, 0, 0, 0}, {kNoNote, 0, kNoVolume, 0, 0}},
        {{0x03, 0x58, 0x10, 0}, {36, 1, kNoVolume, 0, 0}},       // period 856
        {{0x03, 0x57, 0x10, 0}, {37, 1, kNoVolume, 0, 0}},       // between two: the smaller one's
        {{0x0D, 0xAC, 0, 0}, {0, 0, kNoVolume, 0, 0}},           // 3500
        {{0x0F, 0xFF, 0, 0}, {0, 0, kNoVolume, 0, 0}},
        {{0x00, 28, 0, 0}, {95, 0, kNoVolume, 0, 0}},
        {{0x00, 27, 0, 0}, {96, 0, kNoVolume, 0, 0}},            // too high to be played
        {{0x10, 0, 0xFF, 0x20}, {kNoNote, 31, kNoVolume, 15, 0x20}},
        {{0xF0, 0, 0xF3, 0x7F}, {kNoNote, 255, kNoVolume, 3, 0x7F}},
        {{0, 0, 0x0C, 0x40}, {kNoNote, 0, kNoVolume, 12, 0x80}},
        {{0, 0, 0x0C, 0xC1}, {kNoNote, 0, kNoVolume, 12, 0x82}},
    };
    for (const auto& c : cases) {
        ModBuilder mod = ModBuilder::Small();
        mod.patterns[1] = {0, 0, 0, 0};
        mod.patterns[1].insert(mod.patterns[1].end(), c.bytes.begin(), c.bytes.end());
        const auto loaded = LoadBytes(mod.Build());
        ASSERT_TRUE(loaded.song);
        EXPECT_EQ(loaded.song->GetPattern(1)->Read(0, 1), c.cell) << int{c.bytes[0]} << " " << int{c.bytes[1]};
    }
}

TEST(LoaderMOD, SampleRecordsBecomeInstruments) {
    ModBuilder mod;
    mod.samples = {
        {.name = "exactly 22 characters!", .wave = {1, 0xFF, 0x80, 0x7F, 5, 6}, .words = 3, .fineTune = 8,
         .volume = 64, .loopStart = 1, .loopLength = 2},
        {.wave = {1, 2}, .words = 1, .fineTune = 7, .volume = 255, .loopStart = 0x8001, .loopLength = 1},
        {.volume = 3, .loopLength = 0},
    };
    const auto loaded = LoadBytes(mod.Build());
    ASSERT_TRUE(loaded.song) << loaded.report.error;
    const Instrument& first = *loaded.song->GetInstrument(0);
    EXPECT_EQ(first.name, "exactly 22 characters!");
    EXPECT_EQ(first.numSamples, 1);
    EXPECT_EQ(first.GetKeySample(127, 0, 127), 0);

    const struct {
        std::uint32_t count;
        int fineTune, volume, loopType;
        std::uint32_t loopStart, loopEnd;
    } expected[] = {
        {6, -128, 128, VTSAMPLE_LOOP_FORDWARD, 2, 6},
        {2, 112, 128, VTSAMPLE_LOOP_NONE, 0x10002, 0x10004},
        {0, 0, 6, VTSAMPLE_LOOP_NONE, 0, 0},
    };
    for (int i = 0; i < 3; ++i) {
        const Sample& sample = *loaded.song->GetInstrument(i)->GetSample(0);
        EXPECT_EQ(sample.Count(), expected[i].count) << i;
        EXPECT_EQ(sample.fineTune, expected[i].fineTune) << i;
        EXPECT_EQ(sample.volume, expected[i].volume) << i;
        EXPECT_EQ(sample.data->loopType, expected[i].loopType) << i;
        EXPECT_EQ(sample.data->loopStart, expected[i].loopStart) << i;
        EXPECT_EQ(sample.data->loopEnd, expected[i].loopEnd) << i;
    }
    const float* wave = first.GetSample(0)->Wave();
    EXPECT_EQ((std::vector<float>(wave, wave + 4)), (std::vector<float>{256, -256, -32768, 32512}));
}

// A wave of as many bytes as 16 bits hold no more, and behind it another. Wherever the file is cut, no instrument gets
// what belongs to another, and a line says where.
TEST(LoaderMOD, LongWavesAreReadWholeAndThoseOfACutFileAsFarAsTheyGo) {
    ModBuilder mod;
    mod.samples = {{.name = "long", .wave = std::vector<std::uint8_t>(131070, 1), .words = 65535, .loopStart = 32768,
                    .loopLength = 32767},
                   {.name = "short", .wave = {3, 4}, .words = 1}};
    const auto whole = mod.Build();
    const struct { std::size_t missing; std::uint32_t first, second, loopEnd; const char* lines; } cases[] = {
        {0, 131070, 2, 131070, ""},
        {2, 131070, 0, 131070, "The file ends early: the samples of 1 instruments are missing.\n"},
        {65536 + 2, 65534, 0, 65534,
         "The file ends in the sample of instrument 1 \"long\": it has 65534 of its 131070 frames.\n"
         "The file ends early: the samples of 1 instruments are missing.\n"},
        {131072 + 1024, 0, 0, 131070,
         "The file ends in pattern 0: what follows is empty, and all samples are missing.\n"},
    };
    for (const auto& c : cases) {
        const auto loaded = LoadBytes({whole.begin(), whole.end() - static_cast<std::ptrdiff_t>(c.missing)});
        ASSERT_TRUE(loaded.song);
        EXPECT_EQ(JoinLines(loaded.report), c.lines) << c.missing;
        const Sample& first = *loaded.song->GetInstrument(0)->GetSample(0);
        EXPECT_EQ(first.Count(), c.first);
        EXPECT_EQ(loaded.song->GetInstrument(1)->GetSample(0)->Count(), c.second);
        if (c.first == 0) continue;
        EXPECT_EQ(first.Wave()[c.first - 1], 256.0f);
        EXPECT_EQ(first.data->loopEnd, c.loopEnd);
        EXPECT_EQ(first.data->loopType, c.loopEnd > 65536 ? VTSAMPLE_LOOP_FORDWARD : VTSAMPLE_LOOP_NONE);
    }
}

}  // namespace
}  // namespace vonta
