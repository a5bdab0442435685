// A wave at another rate, made piece by piece: ten minutes take seconds, so whoever asks for it goes on meanwhile.
#pragma once

#include <cstdint>
#include <memory>
#include <span>

struct soxr;

namespace vonta {

class Resampler {
public:
    // The wave stays where it is until the last Work. ratio: frames made of one frame, above 0.
    Resampler(std::span<const float> wave, int channels, double ratio, std::span<float> result);
    ~Resampler();
    Resampler(const Resampler&) = delete;
    Resampler& operator=(const Resampler&) = delete;

    static std::uint64_t FramesMade(std::uint64_t frames, double ratio);   // at least 1

    bool Work(int milliseconds);                 // about so long; true while there is more to do
    float Done() const;                          // 0 to 1
    bool HasFailed() const { return failed_; }   // out of memory

private:
    struct Free { void operator()(soxr* converter) const; };

    std::span<const float> wave_;
    std::span<float> result_;
    std::size_t width_, taken_ = 0, made_ = 0;   // floats of a frame; frames
    std::unique_ptr<soxr, Free> converter_;
    bool failed_ = false;
};

}  // namespace vonta
