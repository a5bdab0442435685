#include "tools/skin/Splash.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace vonta::skin {
namespace {

constexpr double kPi = 3.14159265358979;
constexpr int kWidth = 800, kHeight = 600;

// --- The name ---------------------------------------------------------------------------------------------------

constexpr double kLetterWidth = 0.86;            // of the height

void LetterV(cairo_t* pen, double x, double y, double w, double h) {
    cairo_move_to(pen, x, y);
    cairo_line_to(pen, x + w / 2, y + h);
    cairo_line_to(pen, x + w, y);
}
void LetterO(cairo_t* pen, double x, double y, double w, double h) {
    cairo_new_sub_path(pen);
    cairo_arc(pen, x + w / 2, y + h / 2, h / 2, -kPi / 2, 1.5 * kPi);
    cairo_close_path(pen);
}
void LetterN(cairo_t* pen, double x, double y, double w, double h) {
    cairo_move_to(pen, x, y + h);
    cairo_line_to(pen, x, y);
    cairo_line_to(pen, x + w, y + h);
    cairo_line_to(pen, x + w, y);
}
void LetterT(cairo_t* pen, double x, double y, double w, double h) {
    cairo_move_to(pen, x, y);
    cairo_line_to(pen, x + w, y);
    cairo_move_to(pen, x + w / 2, y);
    cairo_line_to(pen, x + w / 2, y + h);
}
void LetterA(cairo_t* pen, double x, double y, double w, double h) {
    cairo_move_to(pen, x, y + h);
    cairo_line_to(pen, x + w / 2, y);
    cairo_line_to(pen, x + w, y + h);
}

using Letter = void (*)(cairo_t*, double, double, double, double);
constexpr Letter kName[] = {LetterV, LetterO, LetterN, LetterT, LetterA};

// --- The field of lights ------------------------------------------------------------------------------------------

// How bright a light of the field glows: where two slow waves pass.
struct Glow {
    double warm, cool;
};
double Peak(double distance, double width) { return std::exp(-distance * distance / (width * width)); }

Glow GlowAt(double x, double y) {
    const double warmLine = 0.50 + 0.15 * std::sin(x * 5.2 - 0.9) + 0.05 * std::sin(x * 13 + 1.0);
    const double coolLine = 0.53 - 0.17 * std::sin(x * 4.1 - 0.3) + 0.04 * std::sin(x * 11);
    const double fade = std::pow(std::sin(kPi * std::clamp(x, 0.0, 1.0)), 0.6);
    return {fade * Peak(y - warmLine, 0.030 + 0.045 * std::sin(kPi * x)),
            fade * Peak(y - coolLine, 0.026 + 0.035 * std::sin(kPi * x))};
}

void PaintLights(Canvas& canvas, int top, int rows) {
    constexpr int kPitchX = 8, kPitchY = 8;
    for (int row = 0; row < rows; ++row)
        for (int column = 0; column < kWidth / kPitchX; ++column) {
            const Glow glow = GlowAt((column + 0.5) * kPitchX / kWidth, (row + 0.5) / rows);
            Colour colour = Mix(canvas.At(column * kPitchX + 1, top + row * kPitchY + 1), kPanelLight, 0.16);
            colour = Mix(colour, kCyan, std::min(glow.cool * 0.9, 1.0));
            colour = Mix(colour, kAmber, std::min(glow.warm * 1.05, 1.0));
            if (glow.warm > 0.8) colour = Mix(colour, kAmberLight, (glow.warm - 0.8) * 4);
            canvas.Fill(column * kPitchX + 1, top + row * kPitchY + 1, kPitchX - 2, kPitchY - 2, colour);
        }
}

void WriteSpaced(Canvas& canvas, const GlyphSet& font, int y, std::string_view text, int gap, Colour colour) {
    int x = (kWidth - static_cast<int>(text.size()) * (font.advance + gap) + gap) / 2;
    for (const char& c : text) {
        canvas.Text(font, x, y, {&c, 1}, colour);
        x += font.advance + gap;
    }
}

constexpr std::array<const char*, 20> kArrow = {
    "#..........", "##.........", "#o#........", "#oo#.......", "#ooo#......", "#oooo#.....", "#ooooo#....",
    "#oooooo#...", "#ooooooo#..", "#oooooooo#.", "#ooooooooo#", "#oooooo####", "#ooo#oo#...", "#oo##oo#...",
    "#o#..#oo#..", "##...#oo#..", "#.....#oo#.", "......#oo#.", ".......##..", "...........",
};

}  // namespace

double WidthOfName(double height, double gap) {
    return std::size(kName) * height * kLetterWidth + (std::size(kName) - 1) * gap;
}

void TraceName(cairo_t* pen, double x, double y, double height, double gap) {
    for (const Letter letter : kName) {
        letter(pen, x, y, height * kLetterWidth, height);
        x += height * kLetterWidth + gap;
    }
}

Canvas PaintSplash(const FontSet& fonts) {
    Canvas canvas(kWidth, kHeight);
    canvas.Gradient(0, 0, kWidth, kHeight, 0x1B2129, 0x0F1216);
    PaintLights(canvas, 232, 36);
    constexpr double kNameHeight = 76, kGap = 34;
    cairo_t* pen = canvas.Pen();
    cairo_set_line_cap(pen, CAIRO_LINE_CAP_ROUND);
    cairo_set_line_join(pen, CAIRO_LINE_JOIN_ROUND);
    const double x = (kWidth - WidthOfName(kNameHeight, kGap)) / 2;
    cairo_set_line_width(pen, 11);
    TraceName(pen, x + 2, 92 + 3, kNameHeight, kGap);
    canvas.Ink(0x080A0C);
    cairo_stroke(pen);
    TraceName(pen, x, 92, kNameHeight, kGap);
    canvas.Ink(kTitle);
    cairo_stroke(pen);
    WriteSpaced(canvas, fonts[kStd], 196, "TRACKER", 14, kAmber);
    WriteSpaced(canvas, fonts[kSmall], 548, "writing music, row by row", 1, kLabel);
    return canvas;
}

Canvas PaintProgressUnit() {
    Canvas unit(8, 8, kAmberDark);
    unit.Fill(0, 0, 8, 7, kAmber);
    unit.Fill(0, 0, 8, 1, kAmberLight);
    return unit;
}

Canvas PaintMouse() {
    Canvas mouse(11, 20);
    for (int y = 0; y < 20; ++y)
        for (int x = 0; x < 11; ++x) {
            const char c = kArrow[static_cast<std::size_t>(y)][x];
            if (c != '.') mouse.Pixel(x, y, c == '#' ? 0x101418 : kTitle);
        }
    return mouse;
}

// A plate of slate with the first letter, and beside it the bars of a playing pattern.
Canvas PaintIcon(int size) {
    Canvas icon(size, size);
    cairo_t* pen = icon.Pen();
    const double unit = size / 48.0, round = 9 * unit, edge = 2 * unit, far = size - edge;
    cairo_new_sub_path(pen);
    cairo_arc(pen, far - round, edge + round, round, -kPi / 2, 0);
    cairo_arc(pen, far - round, far - round, round, 0, kPi / 2);
    cairo_arc(pen, edge + round, far - round, round, kPi / 2, kPi);
    cairo_arc(pen, edge + round, edge + round, round, kPi, 1.5 * kPi);
    cairo_close_path(pen);
    icon.Ink(0x262C34);
    cairo_fill_preserve(pen);
    icon.Ink(0x5A6877);
    cairo_set_line_width(pen, unit);
    cairo_stroke(pen);
    constexpr std::array<double, 7> kBars = {7, 14, 9, 18, 11, 15, 6};
    for (std::size_t i = 0; i < kBars.size(); ++i) {
        icon.Ink(i == 3 ? kAmberLight : kCyanDark);
        const double left = 8 + 4.75 * static_cast<double>(i);
        cairo_rectangle(pen, left * unit, (41 - kBars[i]) * unit, 3.25 * unit, kBars[i] * unit);
        cairo_fill(pen);
    }
    cairo_set_line_cap(pen, CAIRO_LINE_CAP_ROUND);
    cairo_set_line_join(pen, CAIRO_LINE_JOIN_ROUND);
    cairo_set_line_width(pen, 5 * unit);
    LetterV(pen, 12 * unit, 9 * unit, 24 * unit, 22 * unit);
    icon.Ink(0x262C34);
    cairo_set_line_width(pen, 8 * unit);
    cairo_stroke_preserve(pen);
    icon.Ink(kAmber);
    cairo_set_line_width(pen, 4.5 * unit);
    cairo_stroke(pen);
    return icon;
}

}  // namespace vonta::skin
