// The packs that ship hold all that the program asks for, in the sizes that it must have.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <map>
#include <set>

#include <unistd.h>

#include "app/pack/ImageReader.h"
#include "interface/layout/Layout.h"
#include "interface/layout/PatternPictures.h"
#include "interface/skin/AboutEffect.h"
#include "interface/skin/Skin.h"
#include "tools/skin/Packs.h"

namespace vonta {
namespace {

std::string Sources() { return VONTA_SOURCES; }

// A pack built once, in a file that goes away with the program.
class BuiltPack {
public:
    BuiltPack(const std::string& name, const std::vector<PackEntry>& entries)
        : path_(std::filesystem::temp_directory_path() / (name + std::to_string(::getpid()))) {
        std::string error;
        EXPECT_TRUE(WritePack(path_, entries, error)) << error;
        pack = std::make_unique<PackFile>(path_);
    }
    ~BuiltPack() { std::filesystem::remove(path_); }
    const std::string& Path() const { return path_; }
    std::unique_ptr<PackFile> pack;

private:
    std::string path_;
};

BuiltPack& SkinPack() {
    static BuiltPack built("skin", skin::SkinEntries(skin::LoadFonts(Sources() + "/fonts")));
    return built;
}
BuiltPack& DataPack() {
    static BuiltPack built("data", skin::DataEntries(skin::LoadFonts(Sources() + "/fonts"), Sources() + "/help"));
    return built;
}

ImageRequest Load(PackFile* pack, const std::string& name) {
    ImageRequest request;
    request.pack = pack;
    request.name = name;
    EXPECT_EQ(LoadImage(request), kImageOk) << name;
    return request;
}

struct Size {
    int width, height;
};

// Sizes that code relies on, by number.
std::map<int, Size> Sizes() {
    std::map<int, Size> sizes = {{45, {20, 20}}, {47, {kAboutWidth, kAboutHeight}}, {53, {6, 6}}, {54, {6, 6}},
                                 {77, {10, 55}}, {78, {14, 88}}, {120, {800, 6}}};
    for (const PictureSize& picture : kPatternPictures) sizes[picture.bitmap] = {picture.width, picture.height};
    for (int knob = kBitmapRedKnob; knob < kBitmapBlueKnob + kKnobPositions; ++knob) sizes[knob] = {16, 16};
    return sizes;
}

TEST(Packs, HoldEveryBitmapThatTheTableNames) {
    const std::map<int, Size> sizes = Sizes();
    EXPECT_EQ(GetSkinVersion(SkinPack().Path()), kSkinVersion081);
    for (int number = 1; number < kBitmaps; ++number) {
        const BitmapEntry entry = EntryOfBitmap(number);
        if (entry.name.empty()) continue;
        const ImageRequest image = Load((entry.fromDataPack ? DataPack() : SkinPack()).pack.get(), entry.name);
        if (!sizes.contains(number)) continue;
        EXPECT_EQ(static_cast<int>(image.width), sizes.at(number).width) << entry.name;
        EXPECT_EQ(static_cast<int>(image.height), sizes.at(number).height) << entry.name;
    }
}

TEST(Packs, HoldFontsColoursAndDataInTheirSizes) {
    constexpr std::array<int, skin::kFontCount> kWidths = {8, 8, 7, 5, 12, 28};
    const skin::FontSet fonts = skin::LoadFonts(Sources() + "/fonts");
    for (std::size_t i = 0; i < fonts.size(); ++i) {
        const ImageRequest image = Load(SkinPack().pack.get(), "skin\\Fonts\\" + fonts[i].name + ".tga");
        ASSERT_EQ(static_cast<int>(image.width), kWidths[i]) << fonts[i].name;
        ASSERT_EQ(image.height, 4096u) << fonts[i].name;
        int wrong = 0;
        for (int y = 0; y < 4096; ++y)
            for (int x = 0; x < kWidths[i]; ++x) {
                const bool set = image.pixels[static_cast<std::size_t>(y * kWidths[i] + x) * 3] != 0;
                wrong += set != fonts[i].Printed(static_cast<unsigned char>(y / 16)).Pixel(x, y % 16);
            }
        EXPECT_EQ(wrong, 0) << fonts[i].name;
    }
    for (const std::string name : {"font1", "font2", "font3", "lines", "points", "Selection"})
        Load(SkinPack().pack.get(), "skin\\Colors\\" + name + ".tga");
    const std::map<std::string, Size> images = {{"loading", {800, 600}}, {"mouse", {11, 20}}};
    for (const auto& [name, size] : images) {
        const ImageRequest image = Load(DataPack().pack.get(), "data\\" + name + ".tga");
        EXPECT_EQ(static_cast<int>(image.width), size.width) << name;
        EXPECT_EQ(static_cast<int>(image.height), size.height) << name;
    }
    Load(DataPack().pack.get(), "data\\rect.tga");
    const std::map<std::string, std::uint32_t> raw = {{"abouttable", kAboutTableBytes},
                                                      {"abouttexture", kAboutTextureBytes}};
    for (const auto& [name, bytes] : raw) {
        ASSERT_TRUE(DataPack().pack->Find("data\\" + name + ".raw")) << name;
        EXPECT_EQ(DataPack().pack->Remaining(), bytes) << name;
    }
}

bool IsControl(const LayoutItem& item) { return item.look <= Look::VSlider || item.look == Look::List; }
bool Holds(const LayoutItem& item, int x, int y) {
    return x >= item.x && x < item.x + item.width && y >= item.y && y < item.y + item.height;
}

// A control that does not change when pressed tells its user nothing; what changes beside it would be smeared by it.
TEST(Packs, ThePressedPictureDiffersInTheControlsAndNowhereElse) {
    for (const ScreenLayout* layout : AllLayouts()) {
        if (!layout->pressedBitmap) continue;
        const ImageRequest normal = Load(SkinPack().pack.get(), EntryOfBitmap(layout->bitmap).name);
        const ImageRequest pressed = Load(SkinPack().pack.get(), EntryOfBitmap(layout->pressedBitmap).name);
        ASSERT_EQ(normal.pixels.size(), pressed.pixels.size()) << layout->name;
        EXPECT_EQ(normal.width, static_cast<std::uint32_t>(layout->width)) << layout->name;
        EXPECT_EQ(normal.height, static_cast<std::uint32_t>(layout->height)) << layout->name;
        std::set<const LayoutItem*> lit;
        int strays = 0;
        for (std::size_t i = 0; i < normal.pixels.size(); ++i) {
            if (normal.pixels[i] == pressed.pixels[i]) continue;
            const int x = layout->OriginX() + static_cast<int>(i / 3 % normal.width);
            const int y = layout->OriginY() + static_cast<int>(i / 3 / normal.width);
            const auto item = std::find_if(layout->items.begin(), layout->items.end(),
                                           [&](const LayoutItem& each) { return IsControl(each) && Holds(each, x, y); });
            if (item == layout->items.end()) ++strays;
            else lit.insert(&*item);
        }
        EXPECT_EQ(strays, 0) << layout->name;
        for (const LayoutItem& item : layout->items)
            EXPECT_EQ(lit.contains(&item), IsControl(item)) << layout->name << " " << item.id;
    }
}

TEST(Fonts, DrawEveryLetterOfWesternEuropeAndEverySignOfThePattern) {
    const skin::FontSet fonts = skin::LoadFonts(Sources() + "/fonts");
    const std::string kNotes = "ABCDEFG0123456789-#";
    const auto expectDrawn = [&](skin::FontName font, unsigned char code) {
        EXPECT_TRUE(fonts[font].Printed(code).drawn) << fonts[font].name << " lacks " << static_cast<int>(code);
    };
    for (const auto font : {skin::kStd, skin::kStdBig, skin::kSmall})
        for (int code = 32; code < 256; ++code)
            if (code < 127 || code > 160) expectDrawn(font, static_cast<unsigned char>(code));
    for (int font = 0; font < skin::kFontCount; ++font)
        for (const char sign : font == skin::kBigger ? kNotes : kNotes + "HIJKLMNOPQRSTUVWXYZ")
            expectDrawn(static_cast<skin::FontName>(font), static_cast<unsigned char>(sign));
    for (const auto font : {skin::kStdBig, skin::kSmall, skin::kMini, skin::kBig, skin::kBigger}) {
        EXPECT_EQ(fonts[font].glyphs['$'].rows == fonts[font].Printed('$').rows, false) << fonts[font].name;
        for (const char sign : {'*', '+', ','}) expectDrawn(font, static_cast<unsigned char>(sign));
    }
}

}  // namespace
}  // namespace vonta
