#include "engine/mix/StereoSum.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <vector>

namespace vonta {
namespace {

constexpr int kMost = 41;

float In(int i) { return static_cast<float>(i * 37 % 101 - 50); }
float Before(int i) { return static_cast<float>(i) * 0.5f; }

// Runs a form at every length and both ways, and compares each float with what `expect(i)` says of float i; what lies
// behind the output stays.
template <class Form, class Expect>
void Check(const Form& form, Expect expect) {
    std::vector<float> in(2 * kMost + 2), out(2 * kMost + 2);
    for (int i = 0; i < 2 * kMost + 2; ++i) in[i] = In(i);
    for (int frames = 0; frames <= kMost; ++frames)
        for (const bool add : {false, true}) {
            for (int i = 0; i < 2 * kMost + 2; ++i) out[i] = Before(i);
            Sum({out.data(), add}, in.data(), frames, form);
            for (int i = 0; i < 2 * kMost + 2; ++i) {
                const bool written = i < frames * Form::kSides;
                const float want = written ? (add ? Before(i) : 0.0f) + expect(i) : Before(i);
                ASSERT_EQ(out[i], want) << "float " << i << " of " << frames << " frames, add " << add;
            }
        }
}

TEST(StereoSum, EachFormAtEachLengthStoresAndAddsWhatItShould) {
    Check(StereoToStereo(0.5f, 2.0f), [](int i) { return In(i) * (i % 2 ? 2.0f : 0.5f); });
    Check(MonoToStereo(0.5f, 2.0f), [](int i) { return In(i / 2) * (i % 2 ? 2.0f : 0.5f); });
    Check(StereoToMono(0.25f), [](int i) { return (In(2 * i) + In(2 * i + 1)) * 0.25f; });
    Check(MonoToMono(3.0f), [](int i) { return In(i) * 3.0f; });
    Check(Unscaled(), In);
    Check(Clipped(2.0f, 30.0f), [](int i) { return std::clamp(In(i) * 2.0f, -30.0f, 30.0f); });
}

TEST(StereoSum, DropNonFiniteKeepsEveryNumber) {
    const float inf = std::numeric_limits<float>::infinity(), nan = std::numeric_limits<float>::quiet_NaN();
    std::vector<float> values = {1, nan, -3e38f, inf, -inf, 0, 1e-40f};
    DropNonFinite(values.data(), 7);
    EXPECT_EQ(values, (std::vector<float>{1, 0, -3e38f, 0, 0, 0, 1e-40f}));
}

}  // namespace
}  // namespace vonta
