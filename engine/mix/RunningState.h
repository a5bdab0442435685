// How a recursive filter walks over one side of an interleaved stereo buffer, with its state in registers.
#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

namespace vonta {

// Sound at the 16-bit scale never comes near; a filter that has run away passes it soon.
constexpr float kRunawayState = 1e15f;

template <std::size_t size>
bool IsBounded(const std::array<float, size>& state) {
    return std::all_of(state.begin(), state.end(), [](float v) { return std::abs(v) < kRunawayState; });   // no NaN
}

// samples[0], samples[2], ... become step(state, sample), in order. A state that ran away or is no number is cleared,
// and with it this call's output: otherwise the filter, and all that follows, would stay dead for good.
template <std::size_t size, class Step>
void RunState(std::array<float, size>& kept, float* samples, int frames, Step step) {
    std::array<float, size> state = kept;
    float* at = samples;
    int left = frames;
    for (; left >= 4; left -= 4, at += 8) {
        at[0] = step(state, at[0]);
        at[2] = step(state, at[2]);
        at[4] = step(state, at[4]);
        at[6] = step(state, at[6]);
    }
    for (; left > 0; --left, at += 2) at[0] = step(state, at[0]);

    kept = state;
    if (IsBounded(state)) return;
    kept.fill(0);
    for (int i = 0; i < frames; ++i) samples[2 * i] = 0;
}

}  // namespace vonta
