#include <gtest/gtest.h>

#include "formats/instruments/LoaderXI.h"
#include "tests/support/Damage.h"
#include "tests/support/LogCapture.h"
#include "tests/support/TempDirectory.h"
#include "tests/support/XiBuilder.h"

namespace vonta {
namespace {

using namespace test;

XmInstrumentRecipe ThreeSamples() {
    XmInstrumentRecipe file;
    file.name = "three";
    file.samples = {{.name = "eight", .wave = {1, 1, 254, 3}, .loopStart = 1, .loopLength = 2, .fineTune = 0xF0,
                     .type = 1, .relativeNote = 12},
                    {.name = "sixteen", .wave = {0, 1, 0, 1, 255, 255}, .loopStart = 2, .loopLength = 4, .type = 0x12},
                    {.name = "empty"}};
    file.keyMap[95] = 2;
    file.volumeType = 3;
    file.panType = 4;
    file.volumeSustain = 1;
    file.fadeOut = 300;
    return file;
}

struct LoadedXi {
    LoadReport report;
    std::unique_ptr<Instrument> instrument;

    explicit LoadedXi(const FileBytes& bytes) {
        MemoryStream stream(bytes, "x.xi");
        instrument = LoaderXI().Load(stream, report);
    }
};

TEST(LoaderXI, TheInstrumentOfAFile) {
    const TempDirectory directory;
    const auto bytes = BuildXi(ThreeSamples());
    const auto path = directory.Write("x.xi", {bytes.begin(), bytes.end()});
    LoadReport report;
    const LogCapture log;
    const auto instrument = LoadInstrument(path, report);
    ASSERT_TRUE(instrument) << report.error;
    EXPECT_TRUE(report.lines.empty());
    EXPECT_TRUE(log.Text().starts_with("* Trying Load Instrument (" + path + ")\n* LOADING XI file (" + path +
                                       ")...\n\t- file (" + path + ") opened\n")) << log.Text();
    EXPECT_TRUE(log.Has("\t\tnumvolp: 2\n\t\t\t- num. samples 3\n\t- file (" + path +
                        ") closed\n\t- instrument loaded correctly\n")) << log.Text();
    EXPECT_EQ(instrument->name, "three");
    ASSERT_EQ(instrument->numSamples, 3);
    EXPECT_EQ(instrument->GetKeySample(0, 0, 127), 0);
    EXPECT_EQ(instrument->GetKeySample(95, 0, 0), 2);
    EXPECT_EQ(instrument->CountZones(96), 0);
    EXPECT_EQ(instrument->fadeOut, 300);
    EXPECT_EQ(instrument->volumeEnvelopes[0].enabled + 2 * instrument->volumeEnvelopes[0].sustainOn, 3);
    EXPECT_EQ(instrument->volumeEnvelopes[0].points[1], (EnvelopePoint{10, 32}));
    EXPECT_EQ(instrument->panEnvelopes[0].loopOn, 1);
    EXPECT_EQ(instrument->GetSample(0)->Wave()[1], 512.0f);
    EXPECT_EQ(instrument->GetSample(1)->data->loopStart, 1u);   // frames of 16 bits
    EXPECT_EQ(instrument->GetSample(1)->Wave()[0], 256.0f);
}

TEST(LoaderXI, TakesSixteenSamplesAndTellsOfMore) {
    XmInstrumentRecipe file;
    file.samples.assign(20, {.wave = {1}});
    const LoadedXi loaded(BuildXi(file));
    ASSERT_TRUE(loaded.instrument);
    EXPECT_EQ(loaded.instrument->numSamples, 16);
    EXPECT_EQ(loaded.report.lines.size(), 1u);
    EXPECT_EQ(loaded.instrument->GetSample(15)->Wave()[0], 256.0f);
}

TEST(LoaderXI, AFileWithoutAWholeHeaderIsNone) {
    auto bytes = BuildXi(ThreeSamples());
    for (const std::size_t size : {std::size_t{0}, std::size_t{297}, std::size_t{298}}) {
        MemoryStream stream({bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(size)});
        EXPECT_EQ(LoaderXI().Check(stream), size == 298);
    }
    bytes[19] = ';';
    MemoryStream other(bytes);
    EXPECT_FALSE(LoaderXI().Check(other));
}

}  // namespace
}  // namespace vonta
