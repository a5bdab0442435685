// Samples and instruments from files, played: their pitch is what the file says.
#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <numbers>

#include "formats/Loaders.h"
#include "tests/support/AkpBuilder.h"
#include "tests/support/PlayerRig.h"
#include "tests/support/RealSongs.h"
#include "tests/support/TempDirectory.h"
#include "tests/support/WavBuilder.h"

namespace vonta {
namespace {

using namespace test;

constexpr double kConcertPitch = 440.0;              // Hz
constexpr int kConcertKey = 69;                      // its MIDI key
constexpr int kReferenceKey = 48;                    // sounds a tuned sample as it was recorded
constexpr int kRate = 44100;

// How strong a frequency is in a second of the left side, seen through a window.
double Strength(const std::vector<float>& frames, std::size_t start, double frequency) {
    const auto turn = std::polar(1.0, -2 * std::numbers::pi * frequency / kRate);
    const auto windowTurn = std::polar(1.0, 2 * std::numbers::pi / kRate);
    std::complex<double> sum = 0, at = 1, window = 1;
    for (std::size_t i = 0; i < kRate; ++i, at *= turn, window *= windowTurn)
        sum += (1 - window.real()) * static_cast<double>(frames[2 * (start + i)]) * at;
    return std::abs(sum);
}

// How far the strongest tone about concert pitch lies from it, in cents.
double CentsFromConcertPitch(const std::vector<float>& frames) {
    double best = 0, bestStrength = 0;
    for (double cents = -60; cents <= 60; cents += 0.25) {
        const double strength = Strength(frames, kRate, kConcertPitch * std::exp2(cents / 1200));
        if (strength > bestStrength) best = cents, bestStrength = strength;
    }
    return best;
}

double PlayedCents(std::unique_ptr<Instrument> instrument, int key) {
    PlayerRig rig(SongBuilder().Instrument(0, std::move(instrument)).Pattern(0, 256).Note(0, 0, key, 1).Order({0})
                      .Build(), kRate);
    return CentsFromConcertPitch(rig.Frames(2 * kRate));
}

// A tone of concert pitch, as a WAV file of this rate.
WavBuilder ConcertTone(unsigned rate) {
    std::vector<int> values;
    for (unsigned i = 0; i < 3 * rate; ++i)
        values.push_back(static_cast<int>(8000 * std::sin(2 * std::numbers::pi * kConcertPitch * i / rate)));
    WavBuilder wav = WavBuilder::SixteenBit(values);
    wav.rate = rate;
    return wav;
}

TEST(LoadedPitch, ATunedWavSoundsAsRecorded) {
    const TempDirectory directory;
    for (const unsigned rate : {8000u, 22050u, 44100u, 48000u}) {
        LoadReport report;
        auto sample = LoadSample(directory.Write("tone.wav", ConcertTone(rate).Text()), true, report);
        ASSERT_TRUE(sample) << report.error;
        sample->volume = 128;
        EXPECT_NEAR(PlayedCents(MakeInstrument(std::move(sample)), kReferenceKey), 0, 3) << rate;
    }
}

TEST(LoadedPitch, AKeygroupProgramSoundsItsWaveAtItsBaseNote) {
    const TempDirectory directory;
    directory.Write("tone.WAV", ConcertTone(32000).With(WavBuilder::Sampler(57, {})).Text());
    const auto path = directory.Write("x.akp", AkpBuilder{{{.semitones = 12, .zones = {{.semitones = -24}}}}}.Text());
    LoadReport report;
    EXPECT_NEAR(PlayedCents(LoadInstrument(path, report), kConcertKey), 0, 3);
}

// Samples of which the bank gives root key, rate and, in cents, how much too low they are. The player takes no notice
// of the last.
TEST(LoadedPitch, BanksSoundInTune) {
    const struct { const char* bank; const char* sample; double tooLow; } cases[] = {
        {"TimGM6mb.sf2", "Square Wave C1", 0}, {"TimGM6mb.sf2", "Oboe A5", 0},   {"TimGM6mb.sf2", "FluteG5", 31},
        {"sf_GMbank.sf2", "Strings G3", 0},    {"sf_GMbank.sf2", "Syn Vox F#3", 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.sample);
        LoadReport report;
        auto instrument = LoadInstrument(RealFile(c.bank), report);
        ASSERT_TRUE(instrument) << report.error << ": tools/fetch-songs lays the banks into build/songs";
        int number = 0;
        while (number < kMaxSamples && instrument->GetSample(number)->name != c.sample) ++number;
        ASSERT_LT(number, kMaxSamples);
        instrument->keyZones = {};
        instrument->SetKeySample(kConcertKey, number, 0, 127);
        instrument->GetSample(number)->data->loopType = VTSAMPLE_LOOP_FORDWARD;
        EXPECT_NEAR(PlayedCents(std::move(instrument), kConcertKey), -c.tooLow, 3);
    }
}

}  // namespace
}  // namespace vonta
