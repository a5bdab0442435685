// Damaged files of the formats of others: whatever is cut or changed, a load ends, says why it refuses or what is
// missing, and leaves something whole.
#include <gtest/gtest.h>

#include "formats/instruments/LoaderAKP.h"
#include "formats/instruments/LoaderSF2.h"
#include "formats/instruments/LoaderXI.h"
#include "formats/mod/LoaderMOD.h"
#include "formats/samples/LoaderWAV.h"
#include "formats/xm/LoaderXM.h"
#include "tests/support/AkpBuilder.h"
#include "tests/support/Damage.h"
#include "tests/support/ModBuilder.h"
#include "tests/support/Sf2Builder.h"
#include "tests/support/TempDirectory.h"
#include "tests/support/WavBuilder.h"
#include "tests/support/XiBuilder.h"

namespace vonta {
namespace {

using namespace test;

// The program's wave lies beside it.
const std::string& ProgramPath() {
    static const TempDirectory directory;
    static const std::string path = [] {
        directory.Write("tone.WAV", WavBuilder::SixteenBit({1, 2, 3, 4, 5, 6, 7, 8}, 2).Text());
        return directory.File("x.akp");
    }();
    return path;
}

void Check(Sample& sample, std::size_t bytes) {
    EXPECT_LE(sample.Count(), bytes);
    EXPECT_EQ(sample.Count() % static_cast<unsigned>(sample.Channels()), 0u);
}
void Check(Instrument& instrument, std::size_t) { instrument.Validate(); }
void Check(Song& song, std::size_t) { song.Validate(); }

struct Outcome {
    bool loaded;
    LoadReport report;
};

template <class Loader>
Outcome Load(const FileBytes& bytes) {
    MemoryStream stream(bytes, ProgramPath());
    Outcome outcome;
    const auto object = Loader().Load(stream, outcome.report);
    if (object) Check(*object, bytes.size());
    outcome.loaded = object != nullptr;
    return outcome;
}

FileBytes Xi() {
    XmInstrumentRecipe file;
    file.samples = {{.wave = {1, 1, 254, 3}, .loopStart = 1, .loopLength = 2, .type = 1},
                    {.wave = {0, 1, 0, 1}, .loopLength = 4, .type = 0x12}, {}};
    return BuildXi(file);
}

FileBytes Akp() {
    AkpBuilder builder;
    builder.keygroups[0].zones.push_back({.lowVelocity = 64, .pan = -50, .playback = 2, .keyTracking = 0});
    return builder.Build();
}

FileBytes Wav() {
    return WavBuilder::SixteenBit({1, 2, 3, 4}, 2).Before({"LIST", {1, 2, 3, 0}, 3})
        .With(WavBuilder::Sampler(60, {{0, 1}})).With({"data", {1, 2, 3, 4}}).Build();
}

TEST(Damage, IsRefusedOrToldAndLoadsWhatIsThere) {
    const struct {
        const char* format;
        FileBytes whole;
        Outcome (*load)(const FileBytes& bytes);
        bool tellsShort;                             // a part of the file never loads without a line
        std::size_t step;
    } cases[] = {
        {"XM", XmBuilder::Small().Build(), Load<LoaderXM>, true, 1},
        {"MOD", ModBuilder::Small().Build(), Load<LoaderMOD>, true, 13},   // no divisor of a record's 30 bytes
        {"XI", Xi(), Load<LoaderXI>, true, 1},
        {"SF2", Sf2Builder::Small().Build(), Load<LoaderSF2>, true, 1},
        {"AKP", Akp(), Load<LoaderAKP>, false, 1},
        {"WAV", Wav(), Load<LoaderWAV>, false, 1},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.format);
        TryPrefixes(c.whole, [&](const FileBytes& bytes) {
            const Outcome outcome = c.load(bytes);
            EXPECT_NE(outcome.loaded, !outcome.report.error.empty()) << bytes.size();
            EXPECT_TRUE(!outcome.loaded || !c.tellsShort || !outcome.report.lines.empty()) << bytes.size();
        });
        TryFields(c.whole, [&](const FileBytes& bytes) {
            const Outcome outcome = c.load(bytes);
            ASSERT_NE(outcome.loaded, !outcome.report.error.empty());
        }, c.step);
    }
}

}  // namespace
}  // namespace vonta
