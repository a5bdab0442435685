// What a recording of one steady sine sounds like.
#pragma once

#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

namespace vonta {

struct Tone {
    double frequency = 0;                            // Hz, between the first and the last upward zero crossing
    float peak = 0;
    int gaps = 0;                                    // frames at which the wave is not the sine's continuation
};

inline Tone MeasureTone(const std::vector<float>& wave, double rate) {
    Tone tone;
    double first = -1, last = -1;
    int cycles = -1;
    for (std::size_t i = 1; i < wave.size(); ++i) {
        tone.peak = std::max(tone.peak, std::abs(wave[i]));
        if (!(wave[i - 1] < 0 && wave[i] >= 0)) continue;
        last = static_cast<double>(i) - static_cast<double>(wave[i] / (wave[i] - wave[i - 1]));
        if (++cycles == 0) first = last;
    }
    if (cycles < 1) return tone;
    tone.frequency = cycles / (last - first) * rate;
    // A sine's next value follows from the two before.
    const double turn = 2 * std::cos(2 * std::numbers::pi * tone.frequency / rate);
    for (std::size_t i = 2; i < wave.size(); ++i) {
        const double expected = turn * static_cast<double>(wave[i - 1]) - static_cast<double>(wave[i - 2]);
        tone.gaps += std::abs(static_cast<double>(wave[i]) - expected) > 0.02 * static_cast<double>(tone.peak);
    }
    return tone;
}

}  // namespace vonta
