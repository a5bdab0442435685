// Pixels and lines, straight into the locked surface.
#include <algorithm>
#include <cstdlib>

#include "interface/video/Pixels.h"
#include "interface/video/Video.h"

namespace vonta {
namespace {

constexpr int kFarthest = 32767;                 // of a line's ends; far outside the picture

// Calls plot for each pixel of the line, both ends included.
template <class Plot>
void Bresenham(int x0, int y0, int x1, int y1, Plot plot) {
    const int dx = std::abs(x1 - x0), dy = -std::abs(y1 - y0);
    const int stepX = x0 < x1 ? 1 : -1, stepY = y0 < y1 ? 1 : -1;
    int error = dx + dy;
    for (;;) {
        plot(x0, y0);
        if (x0 == x1 && y0 == y1) return;
        const int twice = 2 * error;
        if (twice >= dy) { error += dy; x0 += stepX; }
        if (twice <= dx) { error += dx; y0 += stepY; }
    }
}

int Near(int value) { return std::clamp(value, -kFarthest, kFarthest); }

}  // namespace

void Video::SetTarget(std::uint8_t* address, int pitch) {
    target_ = address;
    targetPitch_ = pitch;
}

void Video::PutPixel(int x, int y, std::uint32_t colour) {
    if (!target_ || !back_ || x < 0 || y < 0 || x >= back_->Width() || y >= back_->Height()) return;
    WithPixelBytes(format_.bitsPerPixel, [&](auto bytes) {
        StorePixel<bytes()>(target_ + static_cast<std::ptrdiff_t>(y) * targetPitch_ + x * bytes(), colour);
    });
}

void Video::DrawLine(int x0, int y0, int x1, int y1, std::uint32_t colour) {
    const std::pair<int, int> ends[] = {{x0, y0}, {x1, y1}};
    DrawPolyline(ends, 2, colour);
}

// The whole shadow lies under the whole line, so that no stretch darkens another.
void Video::DrawPolyline(const std::pair<int, int>* points, int count, std::uint32_t colour) {
    if (!target_) return;
    for (const int shadow : {1, 0})
        for (int i = 0; i + 1 < count; ++i)
            Bresenham(Near(points[i].first), Near(points[i].second), Near(points[i + 1].first), Near(points[i + 1].second),
                      [&](int x, int y) { PutPixel(x + shadow, y + shadow, shadow ? 0 : colour); });
}

}  // namespace vonta
