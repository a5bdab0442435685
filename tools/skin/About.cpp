#include "tools/skin/About.h"

#include <algorithm>
#include <cmath>

#include "interface/skin/AboutEffect.h"
#include "tools/skin/Splash.h"

namespace vonta::skin {
namespace {

constexpr double kPi = 3.14159265358979;

std::uint8_t Byte(double value) { return static_cast<std::uint8_t>(static_cast<int>(value) & 255); }

// A tunnel whose end lies a little above the middle: u runs along it, v around it, light fades with the distance.
void PutTunnel(std::vector<std::uint8_t>& table, double x, double y) {
    constexpr double kDepth = 5200, kFade = 92;
    const double distance = std::max(std::sqrt(x * x + y * y), 1.0);
    const double angle = std::atan2(y, x) / (2 * kPi);
    table.push_back(Byte(kDepth / distance));
    table.push_back(Byte(angle * 2 * kAboutTextureSize));   // twice around, so that the lights stay nearly square
    table.push_back(static_cast<std::uint8_t>(std::clamp(distance / kFade, 0.0, 1.0) * 255));
}

// The colour of a light of the texture; it repeats without a seam.
Colour LightAt(int column, int row, int lights) {
    const double x = 2 * kPi * column / lights, y = 2 * kPi * row / lights;
    const double warm = std::pow(0.5 + 0.5 * std::sin(x + 1.5 * std::sin(y)), 6);
    const double cool = std::pow(0.5 + 0.5 * std::sin(2 * y - x + kPi), 8);
    return Mix(Mix(kPanel, kCyan, cool * 0.85), kAmber, warm);
}

}  // namespace

Canvas PaintAboutPicture(const FontSet& fonts) {
    constexpr double kName = 26, kGap = 12;
    Canvas canvas(kAboutWidth, kAboutHeight);
    cairo_t* pen = canvas.Pen();
    cairo_set_line_cap(pen, CAIRO_LINE_CAP_ROUND);
    cairo_set_line_join(pen, CAIRO_LINE_JOIN_ROUND);
    const double x = (kAboutWidth - WidthOfName(kName, kGap)) / 2, y = 78;
    // Pixels are clear or not: a dark rim keeps the edges of the strokes smooth.
    for (const auto& [width, ink] : {std::pair{12.0, Colour{0x101418}}, std::pair{4.6, kTitle}}) {
        TraceName(pen, x, y, kName, kGap);
        cairo_set_line_width(pen, width);
        canvas.Ink(ink);
        cairo_stroke(pen);
    }
    const std::string_view word = "T R A C K E R";
    const int left = (kAboutWidth - fonts[kSmall].WidthOf(word)) / 2, top = 114;
    for (const int dx : {-1, 0, 1})
        for (const int dy : {-1, 0, 1}) canvas.Text(fonts[kSmall], left + dx, top + dy, word, 0x101418);
    canvas.Text(fonts[kSmall], left, top, word, kAmberLight);
    return canvas;
}

std::vector<std::uint8_t> AboutTable() {
    std::vector<std::uint8_t> table;
    for (int y = 0; y < kAboutHeight; ++y)
        for (int x = 0; x < kAboutWidth; ++x) PutTunnel(table, x - kAboutWidth / 2.0 + 0.5, y - kAboutHeight / 2.0 + 12.5);
    return table;
}

std::vector<std::uint8_t> AboutTexture() {
    constexpr int kPitch = 16, kLights = kAboutTextureSize / kPitch;
    std::vector<std::uint8_t> texture;
    for (int y = 0; y < kAboutTextureSize; ++y)
        for (int x = 0; x < kAboutTextureSize; ++x) {
            const bool gap = x % kPitch < 2 || y % kPitch < 2;
            const Colour colour = gap ? kBackdrop : LightAt(x / kPitch, y / kPitch, kLights);
            for (const int shift : {0, 8, 16}) texture.push_back(static_cast<std::uint8_t>(colour >> shift & 255));
        }
    return texture;
}

}  // namespace vonta::skin
