// A sample at another rate: takes seconds for a long one, so it is worked in pieces, and can be given up.
#pragma once

#include <cstdint>
#include <memory>

#include "edit/Editor.h"
#include "edit/waves/Resampler.h"

namespace vonta {

// At which the sample was recorded, in Hz, by its tuning.
double RateOf(const Sample& sample);

// Makes the wave anew at a rate, a piece at each call, then exchanges it: pitch and loop stay. It gives up by itself
// when the wave has become another one meanwhile.
class ResampleWork {
public:
    static constexpr int kLeastRate = 1000, kMostRate = 192000;   // Hz
    static constexpr std::uint64_t kMostFloats = std::uint64_t{1} << 28;   // of the new wave: one gigabyte

    enum class State { Working, Done, Failed };

    // Null if there is no wave, it has that rate already, or the new one would be too long.
    static std::unique_ptr<ResampleWork> Begin(const Song& song, const Place& at, int rate);

    State Work(Editor& editor, int milliseconds);
    float Done() const { return resampler_.Done(); }   // 0 to 1
    const Place& At() const { return at_; }

private:
    ResampleWork(const Sample& sample, const Place& at, std::int8_t toneRel, std::int8_t fineTune, double ratio);
    bool IsOf(const Song& song) const;
    void Finish(Editor& editor);

    Place at_;
    const float* wave_;                          // to be known again by
    std::uint32_t count_;
    std::int8_t toneRel_, fineTune_;             // of the new rate
    double ratio_;
    std::unique_ptr<Sample> made_;
    Resampler resampler_;
};

}  // namespace vonta
