// The filter bank of a channel: one object of each kind per side, run in place on every second float.
//
// Coefficients are computed as for 44100 Hz at any sample rate, so that a filter sounds as the song was made.
// Control 1 is the cutoff (Hz, 1 to 10000), control 2 the resonance (at least 0.01). Audio thread only.
#pragma once

#include <array>
#include <memory>
#include <string_view>

namespace vonta {

constexpr int kFilterTypes = 9;

class Filter {
public:
    virtual ~Filter() = default;
    virtual void Process(float* samples, int frames) = 0;   // samples[0], samples[2], ...
    virtual void SetCutoff(float value) = 0;
    virtual void SetResonance(float value) = 0;
    virtual void Reset() = 0;                               // clears the state, keeps the coefficients
    virtual std::string_view GetName(int parameter) const = 0;   // 1 and 2 the controls, any other the filter
};

using FilterBank = std::array<std::unique_ptr<Filter>, kFilterTypes>;

FilterBank MakeFilterBank();

}  // namespace vonta
