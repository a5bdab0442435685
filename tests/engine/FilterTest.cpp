#include "engine/mix/Filter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <vector>

namespace vonta {
namespace {

using Sound = std::vector<float>;

Sound Filtered(Filter& filter, const Sound& in) {
    Sound stereo(2 * in.size(), 99.0f);
    for (std::size_t i = 0; i < in.size(); ++i) stereo[2 * i] = in[i];
    filter.Process(stereo.data(), static_cast<int>(in.size()));
    Sound out(in.size());
    for (std::size_t i = 0; i < in.size(); ++i) {
        out[i] = stereo[2 * i];
        EXPECT_EQ(stereo[2 * i + 1], 99.0f);       // the other side is not its own
    }
    return out;
}

Sound Noise(std::size_t frames) {
    std::mt19937 random(11);
    Sound sound(frames);
    for (float& v : sound) v = static_cast<float>(random() % 20000) - 10000;
    return sound;
}

// Each filter in double precision, as its difference equation is written down.
std::vector<double> Reference(int type, double f, double r, const Sound& in) {
    const double k = type <= 2 ? 0.00014247619 : 0.00014247166;
    const double c = std::cos(f * k), s = std::sin(f * k), a = 2 - 2 * c;
    const double damping = type == 3 ? std::max(1 - std::sqrt(2.0) * std::sqrt(1 - c) / r, 0.01) : r;
    const double notch = (1 - r) * (1 - r) / (2 * (std::abs(c) + 1)) + r;
    const double peak = std::sqrt((r - 4 * c * c + 2) * r + 1) * (1 - r);
    double p = 0, q = 0, x1 = 0, x2 = 0, y1 = 0, y2 = 0;
    std::vector<double> out;
    for (const double x : in) {
        double y = x;
        switch (type) {
            case 1:
                p = ((p - q) * (1 / (1 - a) + 1) * r + x) * a + p * (1 - a);
                y = q = (1 - a) * q + p * a;
                break;
            case 2:
            case 3:
                q += (x - y1) * a;
                y = y1 + q;
                q *= damping;
                break;
            case 4: y = -r * r * y2 + 2 * c * r * y1 + peak * x; break;
            case 5: y = notch * (x - 2 * c * x1 + x2) + 2 * r * c * y1 - r * r * y2; break;
            case 6: y = y1 + (x - y1) * r; break;
            case 7: y = r * r * x - 2 * r * c * x1 + (s * s + c * c) * x2 + 2 * c * r * y1 - r * r * y2; break;
            case 8:
                q += (x - p) * 4.567e-6;
                p += q;
                q *= 0.96;
                y = x - p;
                break;
            default: break;
        }
        x2 = x1;
        x1 = x;
        y2 = y1;
        y1 = y;
        out.push_back(y);
    }
    return out;
}

TEST(Filter, EachKindFollowsItsDifferenceEquation) {
    for (int type = 0; type < kFilterTypes; ++type)
        for (const float cutoff : {40.0f, 500.0f, 3000.0f, 10000.0f})
            for (const float resonance : {0.05f, 0.5f, 0.9f}) {
                const FilterBank bank = MakeFilterBank();
                bank[type]->SetCutoff(cutoff);
                bank[type]->SetResonance(resonance);
                const Sound in = Noise(600), out = Filtered(*bank[type], in);
                const auto want = Reference(type, cutoff, resonance, in);
                const double loudest = std::abs(*std::max_element(want.begin(), want.end(), [](double a, double b) {
                    return std::abs(a) < std::abs(b); }));
                if (loudest > 1e12) continue;      // runs away: another test's
                for (std::size_t i = 0; i < in.size(); ++i)
                    ASSERT_NEAR(out[i], want[i], 2e-4 * loudest + 1e-3)
                        << "type " << type << " at " << cutoff << " Hz, " << resonance << ", frame " << i;
            }
}

TEST(Filter, CuttingTheSoundAnywhereChangesNoFrame) {
    for (int type = 0; type < kFilterTypes; ++type) {
        const FilterBank whole = MakeFilterBank(), cut = MakeFilterBank();
        for (Filter* filter : {whole[type].get(), cut[type].get()}) {
            filter->SetCutoff(2000);
            filter->SetResonance(0.6f);
        }
        const Sound in = Noise(500), want = Filtered(*whole[type], in);
        Sound out;
        for (std::size_t at = 0, length = 1; at < in.size(); at += length, length = length % 17 + 1) {
            const std::size_t end = std::min(at + length, in.size());
            const auto first = in.begin() + static_cast<std::ptrdiff_t>(at);
            const Sound piece = Filtered(*cut[type], Sound(first, in.begin() + static_cast<std::ptrdiff_t>(end)));
            out.insert(out.end(), piece.begin(), piece.end());
        }
        EXPECT_EQ(out, want) << type;
    }
}

TEST(Filter, ControlsAreHeldInTheirRanges) {
    const float inf = std::numeric_limits<float>::infinity(), nan = std::numeric_limits<float>::quiet_NaN();
    struct Case { float cutoff, resonance, asCutoff, asResonance; };
    const Case cases[] = {
        {0, 0.5f, 1, 0.5f},       {20000, 0.5f, 10000, 0.5f}, {800, 0, 800, 0.01f}, {-5, -5, 1, 0.01f},
        {inf, 0.5f, 10000, 0.5f}, {nan, nan, 1, 0.01f},
    };
    const Sound in = Noise(100);
    for (int type = 0; type < kFilterTypes; ++type)
        for (const Case& c : cases) {
            const FilterBank given = MakeFilterBank(), meant = MakeFilterBank();
            given[type]->SetCutoff(c.cutoff);
            given[type]->SetResonance(c.resonance);
            meant[type]->SetCutoff(c.asCutoff);
            meant[type]->SetResonance(c.asResonance);
            EXPECT_EQ(Filtered(*given[type], in), Filtered(*meant[type], in)) << type;
        }
}

TEST(Filter, AStateThatRanAwayStartsAnew) {
    const float inf = std::numeric_limits<float>::infinity(), nan = std::numeric_limits<float>::quiet_NaN();
    for (int type = 1; type < kFilterTypes; ++type)
        for (const float poison : {inf, nan, 3e38f}) {
            const FilterBank bank = MakeFilterBank(), fresh = MakeFilterBank();
            for (Filter* filter : {bank[type].get(), fresh[type].get()}) {
                filter->SetCutoff(1000);
                filter->SetResonance(0.5f);
            }
            Filtered(*bank[type], {poison, poison});
            const Sound in(50, 1000.0f);
            EXPECT_EQ(Filtered(*bank[type], in), Filtered(*fresh[type], in)) << type << " after " << poison;
        }
}

}  // namespace
}  // namespace vonta
