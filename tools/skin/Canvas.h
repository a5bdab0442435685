// A picture to draw on: pixels set exactly where edges and text need it, Cairo where curves do.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <cairo.h>

#include "tools/skin/Glyphs.h"
#include "tools/skin/Palette.h"

namespace vonta::skin {

class Canvas {
public:
    Canvas(int width, int height);               // all pixels clear
    Canvas(int width, int height, Colour colour) : Canvas(width, height) { Fill(0, 0, width, height, colour); }

    int Width() const { return width_; }
    int Height() const { return height_; }

    // What lies outside the picture is left out.
    void Pixel(int x, int y, Colour colour) { Fill(x, y, 1, 1, colour); }
    void Fill(int x, int y, int width, int height, Colour colour);
    void Clear(int x, int y, int width, int height);         // to clear pixels
    void Gradient(int x, int y, int width, int height, Colour top, Colour bottom);
    void Frame(int x, int y, int width, int height, Colour topLeft, Colour bottomRight);   // one pixel wide
    void Text(const GlyphSet& font, int x, int y, std::string_view latin1, Colour colour, int advance = 0);   // 0: the font's
    void Draw(const Canvas& other, int x, int y);            // its pixels that are not clear
    Colour At(int x, int y) const;

    cairo_t* Pen();                              // for curves; lives as long as the canvas
    void Ink(Colour colour, double alpha = 1);   // of the pen

    std::vector<std::uint8_t> ToTga(bool alpha); // clear pixels are black, and no others
    bool WritePng(const std::string& path, int scale = 1);

private:
    struct DropSurface { void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); } };
    struct DropPen { void operator()(cairo_t* pen) const { cairo_destroy(pen); } };

    std::uint32_t* Row(int y) const;
    void Changed() { cairo_surface_mark_dirty(surface_.get()); }

    int width_, height_;
    std::unique_ptr<cairo_surface_t, DropSurface> surface_;
    std::unique_ptr<cairo_t, DropPen> pen_;
};

Colour Mix(Colour from, Colour to, double part);   // part 0 to 1 of the second

}  // namespace vonta::skin
