#include <gtest/gtest.h>

#include <cstdlib>

#include "formats/Loaders.h"
#include "formats/samples/LoaderRaw.h"
#include "formats/samples/LoaderWAV.h"
#include "tests/support/Damage.h"
#include "tests/support/LogCapture.h"
#include "tests/support/SongBuilder.h"
#include "tests/support/TempDirectory.h"
#include "tests/support/WavBuilder.h"

namespace vonta {
namespace {

using namespace test;

struct LoadedWav {
    LoaderWAV loader;
    LoadReport report;
    std::unique_ptr<Sample> sample;

    explicit LoadedWav(const FileBytes& bytes) {
        MemoryStream stream(bytes, "x.wav");
        sample = loader.Load(stream, report);
    }
    explicit LoadedWav(const WavBuilder& wav) : LoadedWav(wav.Build()) {}
};

std::vector<float> Values(const Sample& sample) { return {sample.Wave(), sample.Wave() + sample.Count()}; }

TEST(Wav, ValuesComeOnTheSixteenBitScale) {
    const struct { WavBuilder wav; int channels; std::vector<float> values; } cases[] = {
        {WavBuilder::EightBit({0, 1, 127, 128, 255}), 1, {-32768, -32512, -256, 0, 32512}},
        {WavBuilder::SixteenBit({0, 1, -1, 32767, -32768}), 1, {0, 1, -1, 32767, -32768}},
        {WavBuilder::EightBit({0, 255}, 2), 2, {-32768, 32512}},
        {WavBuilder::SixteenBit({1, 2, 3, 4}, 2), 2, {1, 2, 3, 4}},
        {WavBuilder::EightBit({128, 129, 130}, 2), 2, {0, 256}},                       // a half frame at the end
        {WavBuilder::SixteenBit({1, 2, 3}, 2), 2, {1, 2}},
        {WavBuilder().With({"data", {1, 0, 2, 0, 3}}), 1, {1, 2}},                     // half a value at the end
    };
    for (const auto& c : cases) {
        const LoadedWav loaded(c.wav);
        ASSERT_TRUE(loaded.sample) << loaded.report.error;
        EXPECT_EQ(loaded.sample->Channels(), c.channels);
        EXPECT_EQ(Values(*loaded.sample), c.values);
        EXPECT_TRUE(loaded.report.lines.empty());
    }
}

TEST(Wav, OtherChunksStandAnywhereBehindTheFormat) {
    const auto sampler = WavBuilder::Sampler(62, {{10, 20}, {30, 40}});
    const auto data = WavBuilder::SixteenBit({1, 2, 3});
    auto longFormat = data;
    longFormat.formatExtra = 2;
    const struct { const char* what; WavBuilder wav; bool hasLoop; int baseNote; } cases[] = {
        {"sampler before", data.Before(sampler), true, 62},
        {"sampler after", data.With(sampler), true, 62},
        {"sampler without loops", data.With(WavBuilder::Sampler(62, {})).With({"LIST", {}}), false, 62},
        {"sampler cut short", data.With({"smpl", {1, 2, 3}}), false, 60},
        {"odd list with its filling byte", data.Before({"LIST", {1, 2, 3, 0}, 3}).With(sampler), true, 62},
        {"odd list without one", data.Before({"LIST", {1, 2, 3}}).With(sampler), true, 62},
        {"longer format", longFormat.With(sampler), true, 62},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        const LoadedWav loaded(c.wav);
        ASSERT_TRUE(loaded.sample) << loaded.report.error;
        EXPECT_EQ(Values(*loaded.sample), (std::vector<float>{1, 2, 3}));
        EXPECT_EQ(loaded.loader.GetSampleRate(), 44100u);
        EXPECT_EQ(loaded.loader.GetLoopStart(), c.hasLoop ? 10u : 0u);
        EXPECT_EQ(loaded.loader.GetLoopEnd(), c.hasLoop ? 20u : 0u);
        EXPECT_EQ(loaded.loader.GetBaseNote(), c.baseNote);
    }
}

TEST(Wav, WhatCannotBePlayedIsRefusedWithALine) {
    const auto changed = [](auto change) {
        WavBuilder wav = WavBuilder::SixteenBit({1, 2, 3, 4, 5, 6});
        change(wav);
        return wav.Build();
    };
    auto noFormat = changed([](WavBuilder&) {});
    noFormat[12] = 'J';
    const struct { const char* what; FileBytes bytes; const char* line; } cases[] = {
        {"not RIFF", changed([](WavBuilder& wav) { wav.riff = "RIFX"; }), "\t- ERROR: not a WAV file\n"},
        {"not WAVE", changed([](WavBuilder& wav) { wav.form = "AVI "; }), "\t- ERROR: not WAVE format\n"},
        {"another chunk first", noFormat, "\t- ERROR: format header not found\n"},
        {"ADPCM", changed([](WavBuilder& wav) { wav.tag = 2; }), "\t- ERROR: compresed WAVE data not supported\n"},
        {"floats", changed([](WavBuilder& wav) { wav.tag = 3; }), "\t- ERROR: compresed WAVE data not supported\n"},
        {"three channels", changed([](WavBuilder& wav) { wav.channels = 3; }),
         "\t- ERROR: WAVE channels bigger than 2\n"},
        {"no channels", changed([](WavBuilder& wav) { wav.channels = 0; }), "\t- ERROR: WAVE channels bigger than 2\n"},
        {"24 bits", changed([](WavBuilder& wav) { wav.bits = 24; }), "\t- Mono 24 Bits \n"},
        {"no bits", changed([](WavBuilder& wav) { wav.bits = 0; }), "\t- Mono 0 Bits \n"},
        {"no data", changed([](WavBuilder& wav) { wav.chunks.clear(); }), "* LOADING"},
        {"empty", {}, "\t- ERROR: not a WAV file\n"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        const TempDirectory directory;
        const std::string path = directory.Write("x.wav", {c.bytes.begin(), c.bytes.end()});
        const LogCapture log;
        LoadReport report;
        EXPECT_FALSE(LoaderWAV().Load(path, report));
        EXPECT_TRUE(log.Has(c.line)) << log.Text();
        EXPECT_FALSE(report.error.empty());
    }
}

TEST(Wav, TheRateSetsTheTune) {
    const struct { unsigned rate; bool autoTune; int tone, fine; } cases[] = {
        {8363, true, 0, 0},   {16726, true, 12, 0}, {44100, true, 28, 100}, {22050, true, 16, 100},
        {44100, false, 0, 0}, {0, true, 0, 0},      {1, true, -128, -45},
    };
    const TempDirectory directory;
    for (const auto& c : cases) {
        WavBuilder wav = WavBuilder::SixteenBit({1, 2, 3});
        wav.rate = c.rate;
        LoadReport report;
        const auto sample = LoadSample(directory.Write("x.wav", wav.Text()), c.autoTune, report);
        ASSERT_TRUE(sample) << report.error;
        EXPECT_EQ(sample->toneRel, c.tone) << c.rate;
        EXPECT_EQ(sample->fineTune, c.fine) << c.rate;
    }
}

TEST(LoadSample, LoopsCountFloatsAndStayInTheWave) {
    const TempDirectory directory;
    const std::vector<int> stereo(2000, 7);
    const struct { unsigned start, end; std::uint32_t loopStart, loopEnd; } cases[] = {
        {10, 20, 20, 40}, {10, 5000, 20, 2000}, {3000, 5000, 2000, 2000}, {0xFFFFFFFF, 0x80000001, 2000, 2000}};
    for (const auto& c : cases) {
        const auto wav = WavBuilder::SixteenBit(stereo, 2).With(WavBuilder::Sampler(60, {{c.start, c.end}}));
        LoadReport report;
        const auto sample = LoadSample(directory.Write("x.wav", wav.Text()), true, report);
        ASSERT_TRUE(sample);
        EXPECT_EQ(sample->Count(), 2000u);
        EXPECT_EQ(sample->data->loopStart, c.loopStart);
        EXPECT_EQ(sample->data->loopEnd, c.loopEnd);
    }
}

TEST(LoadSample, TellsItsStepsAndTakesAnythingElseAsRaw) {
    const TempDirectory directory;
    const auto wav = directory.Write("a.raw", WavBuilder::SixteenBit({1}, 1).Text());
    const auto raw = directory.Write("b.wav", std::string("\x00\x7F\x80\xFF", 4));
    const auto empty = directory.Write("c.wav", "");
    const auto missing = directory.File("d.wav");
    const struct { std::string path; std::vector<float> values; std::string log; } cases[] = {
        {wav, {1}, "* LOADING WAV file...\n\t- file (" + wav + ") opened\n\t- Mono 16 Bits \n\t- file (" + wav +
                       ") closed\n\t- sample loaded correctly\n"},
        {raw, {0, 32512, -32768, -256}, "* LOADING SMP file...\n\t- file (" + raw + ") opened\n\t- file (" + raw +
                                             ") closed\n\t- sample loaded correctly\n"},
        {empty, {}, "* LOADING SMP file...\n\t- file (" + empty + ") opened\n"},
        {missing, {}, "\t- Sample format not supported\n"},
    };
    for (const auto& c : cases) {
        const LogCapture log;
        LoadReport report;
        const auto sample = LoadSample(c.path, true, report);
        EXPECT_EQ(log.Text(), "* Trying Load Sample (" + c.path + ")\n" + c.log);
        ASSERT_EQ(sample == nullptr, c.values.empty());
        EXPECT_EQ(report.error.empty(), !c.values.empty());
        EXPECT_EQ(sample ? Values(*sample) : std::vector<float>(), c.values);
    }
}

TEST(SaveSample, WritesThePlainHeadAndTruncatedValues) {
    const TempDirectory directory;
    const auto sample = MakeSample({1.9f, -1.9f, 40000.0f, -40000.0f}, 2, {VTSAMPLE_LOOP_FORDWARD, 0, 1});
    LoadReport report;
    ASSERT_EQ(SaveSample(directory.File("x.wav"), *sample, report), 0) << report.error;
    WavBuilder expected = WavBuilder::SixteenBit({1, -1, 32767, -32768}, 2);
    auto bytes = expected.Build();
    bytes[4] = static_cast<std::uint8_t>(bytes.size() - 8);
    EXPECT_EQ(directory.Bytes("x.wav"), bytes);
    EXPECT_EQ(Values(*LoadSample(directory.File("x.wav"), true, report)), (std::vector<float>{1, -1, 32767, -32768}));
}

TEST(SaveSample, FailuresAreToldAndLeaveTheOldFile) {
    const TempDirectory directory;
    const auto path = directory.Write("x.wav", "old");
    LoadReport empty, nowhere;
    EXPECT_EQ(SaveSample(path, Sample(), empty), 1);
    EXPECT_EQ(directory.Text("x.wav"), "old");
    EXPECT_EQ(SaveSample(directory.File("no/x.wav"), *MakeSample({1.0f}), nowhere), 1);
    EXPECT_FALSE(empty.error.empty());
    EXPECT_FALSE(nowhere.error.empty());
}

// What another program writes loads, or is refused with the line for it.
TEST(Wav, FilesOfSox) {
    const char* const compressed = "\t- ERROR: compresed WAVE data not supported\n";
    const struct { const char* options; int channels, rate, frames; const char* refusal; } cases[] = {
        {"-r 22050 -b 8 -c 1", 1, 22050, 2205, nullptr},     {"-r 44100 -b 8 -c 2", 2, 44100, 4410, nullptr},
        {"-r 8000 -b 16 -c 1", 1, 8000, 800, nullptr},       {"-r 96000 -b 16 -c 2", 2, 96000, 9600, nullptr},
        {"-r 44100 -b 24 -c 2", 2, 44100, 0, compressed},    {"-r 44100 -b 32 -e float -c 1", 1, 44100, 0, compressed},
        {"-r 44100 -b 16 -c 6", 6, 44100, 0, compressed},    {"-r 8000 -e ima-adpcm -c 1", 1, 8000, 0, compressed},
    };
    const TempDirectory directory;
    const auto path = directory.File("sox.wav");
    for (const auto& c : cases) {
        SCOPED_TRACE(c.options);
        const std::string command = std::string("sox -n ") + c.options + " " + path + " synth 0.1 sine 440";
        ASSERT_EQ(std::system(command.c_str()), 0) << "sox is one of the packages of tools/packages";
        const LogCapture log;
        LoadReport report;
        const auto sample = LoadSample(path, true, report);
        ASSERT_EQ(sample == nullptr, c.refusal != nullptr) << report.error;
        if (c.refusal) {
            EXPECT_TRUE(log.Has(c.refusal));
            continue;
        }
        EXPECT_EQ(sample->Channels(), c.channels);
        EXPECT_EQ(sample->Count(), static_cast<unsigned>(c.frames * c.channels));
        const double semitones = 12 * std::log2(c.rate / 8363.0);
        EXPECT_NEAR(sample->toneRel + sample->fineTune / 128.0, semitones, 1.0 / 128);
    }
}

}  // namespace
}  // namespace vonta
