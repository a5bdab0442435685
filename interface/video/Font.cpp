#include "interface/video/Font.h"

#include <algorithm>

#include "app/pack/ImageReader.h"
#include "interface/layout/Layout.h"
#include "interface/video/Latin1.h"
#include "interface/video/Pixels.h"

namespace vonta {
namespace {

constexpr std::uint32_t kNoShadow = 0;           // the colour that has none, and the shadow's own
constexpr int kShadowX = 2, kShadowY = 1;

// The word of a scrolling text: direction, start index, calls.
constexpr std::uint32_t kBackwards = 1u << 31, kCallMask = 31;
constexpr int kIndexShift = 5;
constexpr std::uint32_t kIndexMask = (1u << 26) - 1;

// C strings in fixed fields end at their zero.
std::string_view UpToZero(std::string_view text) { return text.substr(0, text.find('\0')); }

}  // namespace

bool Font::Load(PackFile* pack, const std::string& name, const PixelFormat& format, int width, int advance) {
    glyphs_ = {};
    advance_ = advance;
    bitsPerPixel_ = format.bitsPerPixel;
    ImageRequest image;
    image.pack = pack;
    image.name = name;
    if (LoadImage(image) != kImageOk) return false;
    const int columns = std::min(width, static_cast<int>(image.width));
    const int rows = std::min(kGlyphs * kHeight, static_cast<int>(image.height));
    for (int y = 0; y < rows; ++y)
        AddRuns(glyphs_[static_cast<std::size_t>(y / kHeight)], y % kHeight,
                image.pixels.data() + static_cast<std::size_t>(y) * image.width * 3, columns);
    return true;
}

// A pixel is set if its first byte is.
void Font::AddRuns(std::vector<Run>& runs, int row, const std::uint8_t* pixels, int columns) {
    for (int x = 0; x < columns; ++x) {
        const int start = x;
        while (x < columns && pixels[3 * x] != 0) ++x;
        if (x > start)
            runs.push_back({static_cast<std::uint8_t>(row), static_cast<std::uint8_t>(start), static_cast<std::uint8_t>(x - start)});
    }
}

int Font::WidthOf(std::string_view text) const { return advance_ * CountCharacters(UpToZero(text)); }

void Font::PrintColoured(int x, int y, std::uint32_t colour, std::string_view text) const {
    if (muted_ || !address_) return;
    text = UpToZero(text);
    if (colour != kNoShadow) Draw(x + kShadowX, y + kShadowY, 0, text);
    Draw(x, y, colour, text);
}

void Font::Draw(int x, int y, std::uint32_t colour, std::string_view text) const {
    WithPixelBytes(bitsPerPixel_, [&](auto bytes) {
        for (std::size_t at = 0; at < text.size() && x < kPictureWidth; x += advance_)
            DrawGlyph<bytes()>(glyphs_[NextGlyph(text, at)], x, y, colour);
    });
}

template <int bytes>
void Font::DrawGlyph(const std::vector<Run>& runs, int x, int y, std::uint32_t colour) const {
    for (const Run& run : runs) {
        const int row = y + run.row, start = std::max(x + run.column, 0);
        const int end = std::min(x + run.column + run.length, kPictureWidth);
        if (row < 0 || row >= kPictureHeight || start >= end) continue;
        StorePixels<bytes>(address_ + static_cast<std::ptrdiff_t>(row) * pitch_ + start * bytes, end - start, colour);
    }
}

void Font::PrintClipped(int x, int y, int maxChars, std::string_view text, std::uint32_t colour) const {
    text = UpToZero(text);
    PrintColoured(x, y, colour != 0 ? colour : colour_, text.substr(0, BytesOf(text, maxChars)));
}

void Font::PrintScrolling(int x, int y, std::uint32_t& state, int maxChars, std::string_view text) const {
    if (muted_) return;
    text = UpToZero(text);
    const int last = CountCharacters(text) - maxChars;
    if (last <= 0) return Print(x, y, text);
    auto index = std::min(static_cast<int>(state >> kIndexShift & kIndexMask), last);
    std::uint32_t backwards = state & kBackwards;
    const std::uint32_t calls = (state + 1) & kCallMask;
    if (calls == 0) {
        if (index == last) backwards = kBackwards;
        else if (index == 0) backwards = 0;
        index += backwards ? -1 : 1;
    }
    state = backwards | static_cast<std::uint32_t>(index) << kIndexShift | calls;
    PrintClipped(x, y, maxChars, text.substr(BytesOf(text, index)));
}

bool Fonts::Load(PackFile* defaultSkin, const PixelFormat& format) {
    struct Row { Font* font; const char* name; int width, advance; };
    const Row rows[] = {
        {&m_fontStdBig, "skin\\Fonts\\StdBig.tga", 8, 8}, {&m_fontStd, "skin\\Fonts\\Std.tga", 8, 8},
        {&m_fontSmall, "skin\\Fonts\\Small.tga", 7, 7},   {&m_fontMini, "skin\\Fonts\\Mini.tga", 5, 4},
        {&m_fontBig, "skin\\Fonts\\Big.tga", 12, 12},     {&m_fontBigger, "skin\\Fonts\\Bigger.tga", 28, 28},
    };
    bool all = true;
    for (const Row& row : rows) all &= row.font->Load(defaultSkin, row.name, format, row.width, row.advance);
    return all;
}

void Fonts::SetTarget(std::uint8_t* address, int pitch) {
    for (Font* font : All()) font->SetTarget(address, pitch);
}

void Fonts::Mute(bool on) {
    for (Font* font : All()) font->Mute(on);
}

}  // namespace vonta
