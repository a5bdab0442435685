#include "edit/waves/LoopTools.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <numbers>

namespace vonta {
namespace {

constexpr std::int64_t kSearched = 8192;         // frames on each side of the present end
constexpr std::int64_t kCompared = 256;          // frames on each side of the seam
constexpr std::int64_t kLeastLoop = 16, kLeastCompared = 8;   // frames
constexpr double kPull = 1e-3;                   // towards the present end, of the signal's power, at the search's edge

class Frames {
public:
    Frames(std::span<const float> wave, int channels) : wave_(wave), width_(static_cast<std::size_t>(channels)) {}
    std::int64_t Count() const { return static_cast<std::int64_t>(wave_.size() / width_); }
    float Left(std::int64_t frame) const { return wave_[static_cast<std::size_t>(frame) * width_]; }
    // Whether the wave passes through the level on its way to the frame, upwards or downwards.
    bool Crosses(std::int64_t frame, float level, bool upwards) const {
        const float before = Left(frame - 1), here = Left(frame);
        return upwards ? before < level && here >= level : before > level && here <= level;
    }
    // Of the squared differences around two frames, and of the power there.
    struct Likeness {
        double difference = 0, power = 0;
        std::int64_t frames = 0;
    };
    Likeness Compare(std::int64_t a, std::int64_t b) const {
        const std::int64_t before = std::min({kCompared, a, b});
        const std::int64_t after = std::min({kCompared, Count() - a, Count() - b});
        Likeness likeness;
        likeness.frames = before + after;
        const std::size_t count = static_cast<std::size_t>(likeness.frames) * width_;
        const float* one = wave_.data() + static_cast<std::size_t>(a - before) * width_;
        const float* other = wave_.data() + static_cast<std::size_t>(b - before) * width_;
        for (std::size_t i = 0; i < count; ++i) {
            const double x = static_cast<double>(one[i]), y = static_cast<double>(other[i]);
            likeness.difference += (x - y) * (x - y);
            likeness.power += x * x + y * y;
        }
        return likeness;
    }

private:
    std::span<const float> wave_;
    std::size_t width_;
};

// The best of the ends that fit; `fits` chooses among the frames.
template <class Fits>
std::optional<std::int64_t> BestEnd(const Frames& wave, const LoopSpan& loop, Fits fits) {
    std::optional<std::int64_t> best;
    double least = std::numeric_limits<double>::max();
    const std::int64_t first = std::max(loop.start + kLeastLoop, loop.end - kSearched);
    const std::int64_t last = std::min(wave.Count() - 1, loop.end + kSearched);
    for (std::int64_t end = std::max<std::int64_t>(first, 1); end <= last; ++end) {
        if (!fits(end)) continue;
        const Frames::Likeness likeness = wave.Compare(loop.start, end);
        if (likeness.frames < kLeastCompared) continue;
        const double way = static_cast<double>(std::abs(end - loop.end)) / static_cast<double>(kSearched);
        const double score = likeness.difference / std::max(likeness.power, 1.0) + kPull * way;
        if (score >= least) continue;
        least = score;
        best = end;
    }
    return best;
}

}  // namespace

std::int64_t LongestCrossfade(const LoopSpan& loop) {
    return std::max<std::int64_t>(std::min(loop.start, loop.end - loop.start), 0);
}

void CrossfadeLoop(std::span<float> wave, int channels, const LoopSpan& loop, std::int64_t frames) {
    const auto width = static_cast<std::size_t>(channels);
    frames = std::min(frames, LongestCrossfade(loop));
    for (std::int64_t i = 0; i < frames; ++i) {
        const double part = static_cast<double>(i + 1) / static_cast<double>(frames + 1);
        const auto weight = static_cast<float>(0.5 - 0.5 * std::cos(std::numbers::pi * part));
        const std::size_t to = static_cast<std::size_t>(loop.end - frames + i) * width;
        const std::size_t from = static_cast<std::size_t>(loop.start - frames + i) * width;
        for (std::size_t side = 0; side < width; ++side)
            wave[to + side] += (wave[from + side] - wave[to + side]) * weight;
    }
}

std::optional<std::int64_t> FindLoopEnd(std::span<const float> wave, int channels, const LoopSpan& loop) {
    const Frames frames(wave, channels);
    if (loop.start < 0 || loop.start >= frames.Count() || loop.end <= loop.start) return {};
    const float level = frames.Left(loop.start);
    const bool upwards = frames.Left(std::min(loop.start + 1, frames.Count() - 1)) >= level;
    const auto crosses = [&](std::int64_t at) { return frames.Crosses(at, level, upwards); };
    if (const auto end = BestEnd(frames, loop, crosses)) return end;
    return BestEnd(frames, loop, [](std::int64_t) { return true; });
}

}  // namespace vonta
