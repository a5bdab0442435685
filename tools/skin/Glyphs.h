// The pixel fonts as their sources in data/fonts draw them.
#pragma once

#include <array>
#include <bitset>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace vonta::skin {

constexpr int kGlyphRows = 16;

// One character: bit x of a row is the pixel at column x.
struct Glyph {
    std::array<std::uint32_t, kGlyphRows> rows{};
    bool drawn = false;

    bool Pixel(int x, int y) const { return (rows[static_cast<std::size_t>(y)] >> x & 1) != 0; }
};

// The signs of the pattern, which the program prints as "$" and "*+,".
enum PatternSign { kEmpty, kOffLeft, kOffMiddle, kOffRight, kSignCount };

struct GlyphSet {
    std::string name;                // of the font's entry: "StdBig"
    int width = 0, advance = 0;      // pixels; advance may be less than width
    std::array<Glyph, 256> glyphs;   // by Latin-1 code; captions are drawn from them
    std::array<Glyph, kSignCount> signs;   // not in a font for plain text

    const Glyph& Printed(unsigned char code) const;   // what the program's font shows

    int WidthOf(std::string_view latin1) const { return advance * static_cast<int>(latin1.size()); }
};

enum FontName { kStdBig, kStd, kSmall, kMini, kBig, kBigger, kFontCount };

using FontSet = std::array<GlyphSet, kFontCount>;

// All six from the directory of the sources. Throws std::runtime_error naming the file and line that is wrong.
FontSet LoadFonts(const std::string& directory);

}  // namespace vonta::skin
