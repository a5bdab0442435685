#include "tools/skin/Canvas.h"

#include <algorithm>
#include <cmath>

namespace vonta::skin {
namespace {

constexpr std::uint32_t kOpaque = 0xFF000000;
constexpr std::uint8_t kTrueColour = 2;   // the TGA image type

double Part(Colour colour, int shift) { return static_cast<double>(colour >> shift & 255) / 255; }

void PutWord(std::vector<std::uint8_t>& out, int value) {
    out.push_back(static_cast<std::uint8_t>(value & 255));
    out.push_back(static_cast<std::uint8_t>(value >> 8 & 255));
}

// A visible pixel is never black: black is what lets the ground show through.
Colour Visible(Colour colour) { return (colour & 0xFFFFFF) == 0 ? 0x010101 : colour; }

// Cairo keeps colours multiplied by their cover.
Colour Unmultiplied(std::uint32_t pixel) {
    const std::uint32_t cover = pixel >> 24;
    if (cover == 0 || cover == 255) return pixel & 0xFFFFFF;
    const auto part = [&](int shift) { return std::min((pixel >> shift & 255) * 255 / cover, 255u) << shift; };
    return part(16) | part(8) | part(0);
}

}  // namespace

Colour Mix(Colour from, Colour to, double part) {
    Colour mixed = 0;
    for (const int shift : {16, 8, 0}) {
        const double a = from >> shift & 255, b = to >> shift & 255;
        mixed |= static_cast<Colour>(std::lround(a + (b - a) * part)) << shift;
    }
    return mixed;
}

Canvas::Canvas(int width, int height)
    : width_(width), height_(height), surface_(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, width, height)),
      pen_(cairo_create(surface_.get())) {}

std::uint32_t* Canvas::Row(int y) const {
    auto* bytes = cairo_image_surface_get_data(surface_.get()) + y * cairo_image_surface_get_stride(surface_.get());
    return reinterpret_cast<std::uint32_t*>(bytes);
}

void Canvas::Fill(int x, int y, int width, int height, Colour colour) {
    cairo_surface_flush(surface_.get());
    const int right = std::min(x + width, width_), bottom = std::min(y + height, height_);
    for (int row = std::max(y, 0); row < bottom; ++row)
        for (int column = std::max(x, 0); column < right; ++column) Row(row)[column] = kOpaque | colour;
    Changed();
}

void Canvas::Clear(int x, int y, int width, int height) {
    cairo_surface_flush(surface_.get());
    const int right = std::min(x + width, width_), bottom = std::min(y + height, height_);
    for (int row = std::max(y, 0); row < bottom; ++row)
        for (int column = std::max(x, 0); column < right; ++column) Row(row)[column] = 0;
    Changed();
}

void Canvas::Gradient(int x, int y, int width, int height, Colour top, Colour bottom) {
    for (int i = 0; i < height; ++i) Fill(x, y + i, width, 1, Mix(top, bottom, height > 1 ? double(i) / (height - 1) : 0));
}

void Canvas::Frame(int x, int y, int width, int height, Colour topLeft, Colour bottomRight) {
    Fill(x, y + height - 1, width, 1, bottomRight);
    Fill(x + width - 1, y, 1, height, bottomRight);
    Fill(x, y, width - 1, 1, topLeft);
    Fill(x, y, 1, height - 1, topLeft);
}

void Canvas::Text(const GlyphSet& font, int x, int y, std::string_view latin1, Colour colour, int advance) {
    for (const char c : latin1) {
        const Glyph& glyph = font.glyphs[static_cast<unsigned char>(c)];
        for (int row = 0; row < kGlyphRows; ++row)
            for (int column = 0; column < font.width; ++column)
                if (glyph.Pixel(column, row)) Pixel(x + column, y + row, colour);
        x += advance ? advance : font.advance;
    }
}

void Canvas::Draw(const Canvas& other, int x, int y) {
    cairo_set_source_surface(Pen(), other.surface_.get(), x, y);
    cairo_paint(Pen());
}

Colour Canvas::At(int x, int y) const {
    cairo_surface_flush(surface_.get());
    return Unmultiplied(Row(y)[x]);
}

cairo_t* Canvas::Pen() { return pen_.get(); }

void Canvas::Ink(Colour colour, double alpha) {
    cairo_set_source_rgba(Pen(), Part(colour, 16), Part(colour, 8), Part(colour, 0), alpha);
}

std::vector<std::uint8_t> Canvas::ToTga(bool alpha) {
    cairo_surface_flush(surface_.get());
    std::vector<std::uint8_t> out(12, 0);
    out[2] = kTrueColour;
    PutWord(out, width_);
    PutWord(out, height_);
    out.push_back(alpha ? 32 : 24);
    out.push_back(alpha ? 8 : 0);
    for (int y = height_ - 1; y >= 0; --y)
        for (int x = 0; x < width_; ++x) {
            const std::uint32_t pixel = Row(y)[x];
            const Colour colour = pixel >> 24 == 0 ? 0 : Visible(Unmultiplied(pixel));
            for (const int shift : {0, 8, 16}) out.push_back(static_cast<std::uint8_t>(colour >> shift & 255));
            if (alpha) out.push_back(static_cast<std::uint8_t>(pixel >> 24));
        }
    return out;
}

bool Canvas::WritePng(const std::string& path, int scale) {
    if (scale == 1) return cairo_surface_write_to_png(surface_.get(), path.c_str()) == CAIRO_STATUS_SUCCESS;
    Canvas large(width_ * scale, height_ * scale);
    cairo_scale(large.Pen(), scale, scale);
    cairo_set_source_surface(large.Pen(), surface_.get(), 0, 0);
    cairo_pattern_set_filter(cairo_get_source(large.Pen()), CAIRO_FILTER_NEAREST);
    cairo_paint(large.Pen());
    return large.WritePng(path);
}

}  // namespace vonta::skin
