// One peaking equaliser band of a channel: a biquad per side with Q = 1, at the true sample rate.
#pragma once

#include <array>
#include <cstdint>

namespace vonta {

class EqBand {
public:
    std::uint8_t on = 0;

    // rate and frequency in Hz, gain in dB; the frequency is held below half the rate. The state is kept, so a
    // running sound does not click.
    void Set(float sampleRate, float frequency, float gain);
    void ProcessLeft(float* samples, int frames) { Process(left_, samples, frames); }    // every second float
    void ProcessRight(float* samples, int frames) { Process(right_, samples, frames); }

private:
    using State = std::array<float, 4>;                      // the last two inputs, the last two outputs
    void Process(State& state, float* samples, int frames);

    float b0_ = 1, b1_ = 0, b2_ = 0, a1_ = 0, a2_ = 0;      // divided by a0
    State left_{}, right_{};
};

}  // namespace vonta
