#include <gtest/gtest.h>

#include <array>
#include <filesystem>

#include "formats/instruments/LoaderAKP.h"
#include "tests/support/AkpBuilder.h"
#include "tests/support/LogCapture.h"
#include "tests/support/TempDirectory.h"
#include "tests/support/WavBuilder.h"

namespace vonta {
namespace {

using namespace test;

WavBuilder ToneWav(unsigned rate = 44100) {
    WavBuilder wav = WavBuilder::SixteenBit({1, 2, 3, 4, 5, 6, 7, 8}, 2);
    wav.rate = rate;
    return wav;
}

// A program in a directory of its own, with waves beside it.
class Program {
public:
    explicit Program(const AkpBuilder& program, const WavBuilder& wav = ToneWav()) {
        directory_.Write("tone.WAV", wav.Text());
        path = directory_.Write("x.akp", program.Text());
        instrument = LoadInstrument(path, report);
    }
    const Sample& First() const { return *instrument->GetSample(0); }

    std::string path;
    LoadReport report;
    std::unique_ptr<Instrument> instrument;

private:
    TempDirectory directory_;
};

AkpBuilder OneZone(AkpZoneRecipe zone, AkpKeygroupRecipe group = {}) {
    group.zones = {zone};
    return {{group}};
}

TEST(LoaderAKP, AKeygroupBecomesKeysAndSamples) {
    const LogCapture log;
    AkpBuilder builder;
    builder.keygroups = {{.lowKey = 10, .highKey = 20, .zones = {{.highVelocity = 63}, {.lowVelocity = 64}}},
                         {.lowKey = 21, .highKey = 22, .zones = {{.name = ""}, {.keyTracking = 0}}}};
    const Program program(builder);
    ASSERT_TRUE(program.instrument) << program.report.error;
    const Instrument& instrument = *program.instrument;
    EXPECT_TRUE(log.Has("* LOADING AKP file (" + program.path + ")...\n\t- file (" + program.path + ") opened\n"));
    EXPECT_TRUE(log.Has("\t- file (" + program.path + ") closed\n\t- instrument loaded correctly\n"));
    EXPECT_EQ(instrument.name, program.path);
    EXPECT_EQ(instrument.numSamples, 3);
    EXPECT_EQ(instrument.GetKeySample(10, 0, 63), 0);
    EXPECT_EQ(instrument.GetKeySample(20, 0, 64), 1);
    EXPECT_EQ(instrument.GetKeySample(22, 0, 0), 2);
    EXPECT_EQ(instrument.GetKeySample(23, 0, 0), -1);
    EXPECT_EQ(instrument.fixedKey[20] + 2 * instrument.fixedKey[21], 2);
    EXPECT_EQ(program.First().name, "tone");
    EXPECT_EQ(program.First().volume, 128);
    EXPECT_EQ(program.First().Count(), 8u);
}

TEST(LoaderAKP, TuneOfZoneKeygroupAndWaveAddUp) {
    const struct { AkpZoneRecipe zone; AkpKeygroupRecipe group; unsigned rate, base; int tone, fine; } cases[] = {
        {{}, {}, 44100, 60, 17, -27},                        // 16 and 100/128
        {{}, {}, 8363, 60, -12, 0},
        {{}, {}, 0, 72, -24, 0},
        {{.fine = 10, .semitones = 1}, {.semitones = 2, .fine = 20}, 8363, 60, -9, 30},
        {{.fine = -100}, {.fine = -100}, 8363, 60, -13, -73},
        {{.fine = 127}, {.fine = 127}, 44100, 60, 17, 127},
        {{.semitones = -128}, {.semitones = -128}, 8363, 127, -128, 0},
    };
    for (const auto& c : cases) {
        const Program program(OneZone(c.zone, c.group), ToneWav(c.rate).With(WavBuilder::Sampler(c.base, {})));
        ASSERT_TRUE(program.instrument);
        EXPECT_EQ(program.First().toneRel, c.tone) << c.rate << " " << c.zone.fine;
        EXPECT_EQ(program.First().fineTune, c.fine) << c.rate << " " << c.zone.fine;
    }
}

TEST(LoaderAKP, PanAndPlayback) {
    const struct { int pan, panning; } pans[] = {{0, 128}, {50, 255}, {-50, 0}, {25, 192}, {127, 255}, {-128, 0}};
    for (const auto& c : pans)
        EXPECT_EQ(Program(OneZone({.pan = c.pan})).First().panning, c.panning) << c.pan;
    const struct { int playback; bool hasLoop; std::uint32_t type, start, end; } loops[] = {
        {0, true, 0, 2, 6}, {2, true, 1, 2, 6}, {3, false, 1, 0, 8}, {4, true, 1, 2, 6}, {4, false, 0, 0, 0},
        {6, true, 1, 2, 6}, {6, false, 0, 0, 0}, {5, true, 0, 2, 6}};
    for (const auto& c : loops) {
        WavBuilder wav = ToneWav();
        if (c.hasLoop) wav = wav.With(WavBuilder::Sampler(60, {{1, 3}}));
        const Program program(OneZone({.playback = c.playback}), wav);
        const SampleData& data = *program.First().data;
        EXPECT_EQ((std::array{std::uint32_t{data.loopType}, data.loopStart, data.loopEnd}),
                  (std::array{c.type, c.start, c.end})) << c.playback;
    }
}

TEST(LoaderAKP, TheFirstEnvelopeShapesTheVolume) {
    const struct { int attack, decay, release; std::array<int, 3> x; int fadeOut; } cases[] = {
        {0, 0, 0, {0, 0, 0}, 4095}, {50, 20, 50, {62, 65, 65}, 3583}, {100, 100, 100, {420, 420, 420}, 50},
        {-20, 30, -128, {0, 13, 13}, 4095}};
    for (const auto& c : cases) {
        const Program program(OneZone({}, {.attack = c.attack, .decay = c.decay, .release = c.release,
                                           .secondAttack = 90}));
        const Envelope& envelope = program.instrument->volumeEnvelopes[0];
        ASSERT_EQ(envelope.numPoints, 4);
        for (std::size_t i = 0; i < 3; ++i)
            EXPECT_EQ(envelope.points[i + 1], (EnvelopePoint{static_cast<std::uint16_t>(c.x[i]), 64})) << c.attack;
        EXPECT_EQ(envelope.points[0], (EnvelopePoint{0, 0}));
        EXPECT_TRUE(envelope.enabled && envelope.timeBased && envelope.sustainOn && envelope.sustainPoint == 3);
        EXPECT_EQ(program.instrument->fadeOut, c.fadeOut) << c.release;
    }
}

TEST(LoaderAKP, AZoneBeforeItsKeysIsPassedOver) {
    const Program program(OneZone({}, {.zonesFirst = true}));
    ASSERT_TRUE(program.instrument);
    EXPECT_EQ(program.instrument->numSamples, 0);
    EXPECT_EQ(program.instrument->CountZones(60), 0);
}

TEST(LoaderAKP, VelocitiesBelowTheRangeAreItsEnd) {
    const Program program(OneZone({.lowVelocity = -64, .highVelocity = 90}));
    EXPECT_EQ(program.instrument->GetZone(60, 0)->velocityLow, 0);   // a saved byte would read back as 192
}

TEST(LoaderAKP, AMissingWaveLeavesItsNumberEmpty) {
    AkpBuilder builder;
    builder.keygroups[0].zones = {{.name = "gone"}, {.name = "../tone"}, {}};
    const Program program(builder);
    ASSERT_TRUE(program.instrument);
    EXPECT_FALSE(program.instrument->GetSample(0));
    EXPECT_FALSE(program.instrument->GetSample(1));
    EXPECT_TRUE(program.instrument->GetSample(2));
    EXPECT_EQ(program.instrument->GetKeySample(60, 2, 64), 2);
    EXPECT_EQ(program.report.lines.size(), 2u);
}

// The current directory is asked before the program's own.
TEST(LoaderAKP, WavesLieInTheCurrentDirectoryOrBesideTheProgram) {
    const TempDirectory here;
    here.Write("tone.wav", WavBuilder::EightBit({1, 2, 3}).Text());
    const auto before = std::filesystem::current_path();
    std::filesystem::current_path(here.Path());
    const Program program((AkpBuilder()));
    std::filesystem::current_path(before);
    EXPECT_EQ(program.First().Count(), 3u);
}

TEST(LoaderAKP, AProgramThatNamesALargeWaveOftenStaysSmall) {
    AkpBuilder builder;
    builder.keygroups[0].zones.assign(256, {});
    const Program program(builder, WavBuilder::EightBit(std::vector<std::uint8_t>(1 << 20, 1)));
    std::size_t floats = 0;
    for (const auto& sample : program.instrument->samples)
        if (sample) floats += sample->Count();
    EXPECT_GE(floats * sizeof(float), std::size_t{32} << 20);
    EXPECT_LE(floats * sizeof(float), std::size_t{41} << 20);
    EXPECT_FALSE(program.report.lines.empty());
}

}  // namespace
}  // namespace vonta
