#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>

#include "formats/Loaders.h"
#include "tests/support/RealSongs.h"

namespace vonta {
namespace {

// A field of a file's head, as sox reads it.
int AskSox(const char* option, const std::string& path) {
    const std::string command = std::string("soxi ") + option + " '" + path + "'";
    int value = -1;
    if (FILE* answer = ::popen(command.c_str(), "r")) {
        if (std::fscanf(answer, "%d", &value) != 1) value = -1;
        ::pclose(answer);
    }
    return value;
}

TEST(RealRecordings, EveryWavLoadsWithItsRateAndLength) {
    const auto paths = RealSongs(".wav");
    ASSERT_GE(paths.size(), 9u) << "tools/fetch-songs lays recordings into build/songs";
    for (const auto& path : paths) {
        SCOPED_TRACE(path);
        LoadReport report;
        const auto sample = LoadSample(path, true, report);
        ASSERT_TRUE(sample) << report.error;
        EXPECT_EQ(report.formatName, "WAV");
        EXPECT_TRUE(report.lines.empty());
        EXPECT_EQ(sample->Channels(), AskSox("-c", path));
        EXPECT_EQ(static_cast<int>(sample->Count()) / sample->Channels(), AskSox("-s", path));
        const double semitones = 12 * std::log2(AskSox("-r", path) / 8363.0);
        EXPECT_NEAR(sample->toneRel + sample->fineTune / 128.0, semitones, 1.0 / 128);
    }
}

TEST(RealBanks, LoadWithTheirFirst256Samples) {
    for (const char* name : {"TimGM6mb.sf2", "sf_GMbank.sf2"}) {
        LoadReport report;
        const auto instrument = LoadInstrument(RealFile(name), report);
        ASSERT_TRUE(instrument) << report.error << ": tools/fetch-songs lays the banks into build/songs";
        EXPECT_FALSE(instrument->name.empty());
        EXPECT_GT(instrument->CountLayers(60, 64), 0);
        for (int i = 0; i < kMaxSamples; ++i) {
            ASSERT_TRUE(instrument->GetSample(i)) << i;
            EXPECT_GT(instrument->GetSample(i)->Count(), 0u) << i;
        }
        ASSERT_EQ(report.lines.size(), 1u);
        EXPECT_TRUE(report.lines[0].ends_with("the first 256 are taken.")) << report.lines[0];
    }
}

}  // namespace
}  // namespace vonta
