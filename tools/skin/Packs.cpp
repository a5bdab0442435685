#include "tools/skin/Packs.h"

#include <fstream>
#include <iterator>
#include <optional>
#include <stdexcept>

#include "interface/layout/Layout.h"
#include "interface/skin/Skin.h"
#include "tools/skin/About.h"
#include "tools/skin/Painters.h"
#include "tools/skin/Pieces.h"
#include "tools/skin/Splash.h"

namespace vonta::skin {
namespace {

constexpr int kWindowIcon = 48;                  // pixels, wide and high

struct ColourRow {
    const char* name;
    Colour colour;
};
constexpr ColourRow kColours[] = {
    {"font1", kText}, {"font2", kHighlight}, {"font3", kDim},
    {"lines", kLines}, {"points", kPoints}, {"Selection", kSelection},
};

std::string SkinName(const std::string& folder, const std::string& name) {
    return "skin\\" + folder + "\\" + name + ".tga";
}

// Character c is the sixteen rows from 16 c on.
Canvas PaintFont(const GlyphSet& font) {
    Canvas canvas(font.width, 256 * kGlyphRows);
    for (int c = 0; c < 256; ++c)
        for (int y = 0; y < kGlyphRows; ++y)
            for (int x = 0; x < font.width; ++x)
                if (font.Printed(static_cast<unsigned char>(c)).Pixel(x, y)) canvas.Pixel(x, c * kGlyphRows + y, 0xFFFFFF);
    return canvas;
}

// Every picture by the number of its bitmap; of a strip there is one for all frames.
std::optional<Picture> PaintBitmap(const FontSet& fonts, int number) {
    for (const ScreenLayout* layout : AllLayouts()) {
        if (layout->bitmap == number) return Picture{PaintScreen(fonts, *layout, State::Normal)};
        if (layout->pressedBitmap == number) return Picture{PaintScreen(fonts, *layout, State::Pressed)};
    }
    constexpr std::pair<int, Colour> kKnobs[] = {
        {kBitmapRedKnob, kRed}, {kBitmapGreenKnob, kGreen}, {kBitmapBlueKnob, kCyan}};
    for (const auto& [first, colour] : kKnobs)
        if (number >= first && number < first + kKnobPositions) return PaintKnob(colour, number - first);
    return PaintPiece(fonts, number);
}

void AddBitmaps(const FontSet& fonts, std::vector<PackEntry>& entries) {
    for (int number = 1; number < kBitmaps; ++number) {
        const BitmapEntry entry = EntryOfBitmap(number);
        if (entry.name.empty() || entry.fromDataPack || entry.strip > 1) continue;
        auto picture = PaintBitmap(fonts, number);
        if (!picture) throw std::runtime_error("nothing draws bitmap " + std::to_string(number) + ", " + entry.name);
        entries.push_back({entry.name, picture->canvas.ToTga(picture->alpha)});
    }
}

std::vector<std::uint8_t> ReadText(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    if (!in) throw std::runtime_error(path + ": cannot be read");
    return {std::istreambuf_iterator<char>(in), {}};
}

}  // namespace

std::vector<PackEntry> SkinEntries(const FontSet& fonts) {
    std::vector<PackEntry> entries = {{"skin\\Version081", {}}};
    AddBitmaps(fonts, entries);
    for (const GlyphSet& font : fonts) entries.push_back({SkinName("Fonts", font.name), PaintFont(font).ToTga(false)});
    for (const ColourRow& row : kColours)
        entries.push_back({SkinName("Colors", row.name), Canvas(1, 1, row.colour).ToTga(false)});
    return entries;
}

std::vector<PackEntry> DataEntries(const FontSet& fonts, const std::string& textDirectory) {
    std::vector<PackEntry> entries = {
        {"data\\loading.tga", PaintSplash(fonts).ToTga(false)},
        {"data\\rect.tga", PaintProgressUnit().ToTga(false)},
        {"data\\mouse.tga", PaintMouse().ToTga(true)},
        {"data\\icon.tga", PaintIcon(kWindowIcon).ToTga(true)},
        {"data\\aboutgfx.tga", PaintAboutPicture(fonts).ToTga(true)},
        {"data\\abouttable.raw", AboutTable()},
        {"data\\abouttexture.raw", AboutTexture()},
    };
    for (const std::string name : {"effects.txt", "bugs.txt", "faqs.txt"})
        entries.push_back({"data\\" + name, ReadText(textDirectory + "/" + name)});
    return entries;
}

}  // namespace vonta::skin
