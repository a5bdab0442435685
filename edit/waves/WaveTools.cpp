#include "edit/waves/WaveTools.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <utility>

namespace vonta {
namespace {

constexpr float kLoudest = 32767.0f;             // fits a signed 16-bit file
constexpr std::size_t kRun = 4096;               // values that are summed as floats before the sum grows large

bool Normalise(std::span<float> stretch, int) {
    const float peak = PeakOf(stretch);
    if (!(peak > 0) || !std::isfinite(peak) || peak == kLoudest) return false;
    Scale(stretch, kLoudest / peak);
    return true;
}

// gain(part): of the way through, 0 at the first frame and 1 at the last.
template <class Gain>
bool Fade(std::span<float> stretch, int channels, Gain gain) {
    const auto width = static_cast<std::size_t>(channels), frames = stretch.size() / width;
    const double perFrame = frames > 1 ? 1.0 / static_cast<double>(frames - 1) : 0.0;
    for (std::size_t frame = 0; frame < frames; ++frame) {
        const auto level = static_cast<float>(gain(static_cast<double>(frame) * perFrame));
        for (std::size_t side = 0; side < width; ++side) stretch[frame * width + side] *= level;
    }
    return frames > 0;
}

bool FadeIn(std::span<float> stretch, int channels) {
    return Fade(stretch, channels, [](double part) { return part; });
}

bool FadeOut(std::span<float> stretch, int channels) {
    return Fade(stretch, channels, [](double part) { return 1.0 - part; });
}

// From end to end, and the sides of each frame back into their order.
bool Reverse(std::span<float> stretch, int channels) {
    std::ranges::reverse(stretch);
    for (std::size_t i = 0; channels == 2 && i + 1 < stretch.size(); i += 2) std::swap(stretch[i], stretch[i + 1]);
    return !stretch.empty();
}

bool Silence(std::span<float> stretch, int) {
    std::ranges::fill(stretch, 0.0f);
    return !stretch.empty();
}

float MeanOf(std::span<const float> stretch, std::size_t side, std::size_t width) {
    double sum = 0;
    for (std::size_t at = side; at < stretch.size();) {
        float run = 0;
        const std::size_t end = std::min(stretch.size(), at + kRun);
        for (; at < end; at += width) run += stretch[at];
        sum += static_cast<double>(run);
    }
    return static_cast<float>(sum / static_cast<double>(std::max<std::size_t>(stretch.size() / width, 1)));
}

bool RemoveDc(std::span<float> stretch, int channels) {
    const auto width = static_cast<std::size_t>(channels);
    bool changed = false;
    for (std::size_t side = 0; side < width; ++side) {
        const float mean = MeanOf(stretch, side, width);
        if (mean == 0 || !std::isfinite(mean)) continue;
        for (std::size_t at = side; at < stretch.size(); at += width) stretch[at] -= mean;
        changed = true;
    }
    return changed;
}

bool SwapSides(std::span<float> stretch, int channels) {
    if (channels != 2) return false;
    for (std::size_t i = 0; i + 1 < stretch.size(); i += 2) std::swap(stretch[i], stretch[i + 1]);
    return !stretch.empty();
}

struct ToolRow {
    const char* name;
    bool (*apply)(std::span<float> stretch, int channels);
};
// In the order of WaveTool.
constexpr std::array<ToolRow, kWaveTools> kTools{{
    {"normalise", Normalise},
    {"fade in", FadeIn},
    {"fade out", FadeOut},
    {"reverse", Reverse},
    {"silence", Silence},
    {"remove DC", RemoveDc},
    {"swap sides", SwapSides},
}};

}  // namespace

const char* NameOf(WaveTool tool) { return kTools[static_cast<std::size_t>(tool)].name; }

bool Apply(WaveTool tool, std::span<float> stretch, int channels) {
    return kTools[static_cast<std::size_t>(tool)].apply(stretch, channels);
}

void Scale(std::span<float> stretch, float factor) {
    for (float& value : stretch) value *= factor;
}

float PeakOf(std::span<const float> stretch) {
    float peak = 0;
    for (const float value : stretch) peak = std::max(peak, std::abs(value));
    return peak;
}

void MixToMono(std::span<const float> stereo, std::span<float> mono) {
    for (std::size_t frame = 0; frame < mono.size(); ++frame)
        mono[frame] = 0.5f * stereo[2 * frame] + 0.5f * stereo[2 * frame + 1];
}

}  // namespace vonta
