#include "interface/Wave.h"

#include <algorithm>
#include <utility>

namespace vonta {

void DrawWave(Video& video, const Rect& area, const ScopeTap::Trace& trace, std::uint32_t colour) {
    constexpr float kFullScale = 32768.0f;
    std::array<std::pair<int, int>, ScopeTap::kPoints> line;
    const int count = std::clamp(area.width, 0, ScopeTap::kPoints), half = area.height / 2;
    for (int i = 0; i < count; ++i) {
        const float value = trace[static_cast<std::size_t>(i * ScopeTap::kPoints / count)];
        const float bounded = std::clamp(value / kFullScale, -1.0f, 1.0f);
        line[static_cast<std::size_t>(i)] = {area.x + i * area.width / count,
                                             area.y + half - static_cast<int>(bounded * static_cast<float>(half))};
    }
    video.DrawPolyline(line.data(), count, colour);
}

}  // namespace vonta
