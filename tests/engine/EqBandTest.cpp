#include "engine/mix/EqBand.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>
#include <vector>

namespace vonta {
namespace {

// Level of a sine after the band, in dB, once the band has settled.
double ResponseDb(EqBand& band, double rate, double frequency) {
    constexpr int kFrames = 8000, kSettled = 4000;
    std::vector<float> sound(2 * kFrames);
    for (int i = 0; i < kFrames; ++i)
        sound[2 * i] = static_cast<float>(1000 * std::sin(2 * std::numbers::pi * frequency * i / rate));
    const std::vector<float> before = sound;
    band.ProcessLeft(sound.data(), kFrames);
    double in = 0, out = 0;
    for (int i = kSettled; i < kFrames; ++i) {
        in += before[2 * i] * before[2 * i];
        out += sound[2 * i] * sound[2 * i];
    }
    return 10 * std::log10(out / in);
}

TEST(EqBand, LiftsOrCutsItsFrequencyByItsGainAtAnyRate) {
    for (const float rate : {22050.0f, 44100.0f, 96000.0f})
        for (const float gain : {-25.0f, -6.0f, 0.0f, 12.0f, 25.0f}) {
            EqBand band;
            band.Set(rate, 2000, gain);
            EXPECT_NEAR(ResponseDb(band, rate, 2000), gain, 0.1) << rate;
            EqBand far;
            far.Set(rate, 2000, gain);
            EXPECT_NEAR(ResponseDb(far, rate, 20), 0, 0.2) << rate;
        }
}

TEST(EqBand, IsTransparentUntilSetAndKeepsTheStateOfEachSideWhenSetAgain) {
    std::vector<float> sound = {100, 7, -50, 7, 25, 7};
    const std::vector<float> before = sound;
    EqBand band;
    band.ProcessLeft(sound.data(), 3);
    EXPECT_EQ(sound, before);
    band.Set(44100, 1000, 20);
    std::vector<float> both = {100, 100};
    band.ProcessLeft(both.data(), 1);              // hears the -50 and 25 before; the right side is fresh
    band.ProcessRight(both.data() + 1, 1);
    EXPECT_NE(both[0], both[1]);
}

TEST(EqBand, StaysSaneWithWhateverASongHolds) {
    const float inf = std::numeric_limits<float>::infinity(), nan = std::numeric_limits<float>::quiet_NaN();
    for (const float frequency : {-1.0f, 0.0f, 13500.0f, 22050.0f, 1e9f, inf, -inf, nan})
        for (const float gain : {-1e9f, 0.0f, 25.0f, 1e9f, inf, nan})
            for (const float rate : {0.0f, 8000.0f, 22050.0f}) {
                EqBand band;
                band.Set(rate, frequency, gain);
                std::vector<float> sound(2 * 5000, 0.0f);
                sound[0] = 32768;
                band.ProcessLeft(sound.data(), 5000);
                for (const float v : sound) ASSERT_TRUE(std::isfinite(v));
                EXPECT_LT(std::abs(sound[2 * 4999]), 1e6f) << frequency << " Hz " << gain << " dB at " << rate;
            }
}

}  // namespace
}  // namespace vonta
