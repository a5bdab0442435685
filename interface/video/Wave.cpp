#include "interface/video/Wave.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace vonta {
namespace {

constexpr float kFullScale = 32768.0f;

// What is quiet is shown up to ten times as high as it is, so that a pad can be seen beside a drum.
float Shown(float value) {
    const float size = std::min(std::abs(value) / kFullScale, 1.0f);
    return std::copysign(10 * size / (1 + 9 * size), value);
}

}  // namespace

float ShownLevel(float peak) {
    constexpr float kQuietest = 48;              // dB below full scale
    return peak > 0 ? std::clamp(1 + 20 * std::log10(peak / kFullScale) / kQuietest, 0.0f, 1.0f) : 0.0f;
}

void DrawWave(Video& video, const Rect& area, const ScopeTap::Trace& trace, std::uint32_t colour) {
    std::array<std::pair<int, int>, ScopeTap::kPoints> line;
    const int count = std::clamp(area.width, 0, ScopeTap::kPoints), half = area.height / 2;
    for (int i = 0; i < count; ++i) {
        const float value = Shown(trace[static_cast<std::size_t>(i * ScopeTap::kPoints / count)]);
        line[static_cast<std::size_t>(i)] = {area.x + i * area.width / count,
                                             area.y + half - static_cast<int>(value * static_cast<float>(half))};
    }
    video.DrawPolyline(line.data(), count, colour);
}

}  // namespace vonta
