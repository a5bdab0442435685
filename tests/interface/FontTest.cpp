#include "interface/video/Font.h"

#include <gtest/gtest.h>


#include "tests/support/VideoRig.h"

namespace vonta {
namespace {

constexpr std::uint32_t kInk = 0xFF0000, kPaper = 0x00FF00;

// A font of noise: what any glyph looks like is known from its number.
bool IsSet(int glyph, int x, int y) { return (glyph * 131 + x * 17 + y * 7919) % 5 < 2; }

struct FontRig : VideoRig {
    static constexpr int kWidth = 7, kAdvance = 8;
    Font font;
    std::unique_ptr<PackFile> pack;

    explicit FontRig(int bits) : VideoRig(bits) {
        std::vector<std::uint32_t> pixels;
        for (int y = 0; y < 256 * Font::kHeight; ++y)
            for (int x = 0; x < kWidth; ++x) pixels.push_back(IsSet(y / Font::kHeight, x, y % Font::kHeight) ? 0xFFFFFF : 0);
        pack = Pack(test::PackBuilder().Add("font", test::Tga(kWidth, 256 * Font::kHeight, 24, pixels)));
        EXPECT_TRUE(font.Load(pack.get(), "font", video.Format(), kWidth, kAdvance));
        int pitch = 0;
        std::uint8_t* back = video.LockBack(pitch);
        font.SetTarget(back, pitch);
        font.SetColour(video.PackRgb(kInk));
        video.Clear(video.PackRgb(kPaper));
    }
    // Draws glyphs pixel by pixel into a second surface's worth of colours.
    static bool Covers(const std::vector<int>& glyphs, int x, int y, int px, int py) {
        const int index = px < x ? -1 : (px - x) / kAdvance, column = (px - x) - index * kAdvance;
        return index >= 0 && index < static_cast<int>(glyphs.size()) && column < kWidth && py >= y &&
               py < y + Font::kHeight && IsSet(glyphs[static_cast<std::size_t>(index)], column, py - y);
    }
};

TEST(Font, DrawsEverySetPixelOverItsShadowAndNothingBesideTheTarget) {
    const std::vector<int> glyphs = {'A', 0xE9, 0xFF, '?', 'z'};
    const struct { int x, y; } places[] = {{100, 100}, {-13, -5}, {785, 590}, {-200, 50}, {500, 700}, {799, 0}};
    for (const int bits : {16, 24, 32})
        for (const auto& place : places) {
            FontRig rig(bits);
            rig.font.Print(place.x, place.y, "A\xC3\xA9\xFF\xE2\x82\xACz");   // e acute, a stray byte, the euro sign
            rig.video.Present();
            for (int y = 0; y < 600; ++y)
                for (int x = 0; x < 800; ++x) {
                    const bool ink = FontRig::Covers(glyphs, place.x, place.y, x, y);
                    const bool shadow = FontRig::Covers(glyphs, place.x + 2, place.y + 1, x, y);
                    if (y > place.y + 20 || y < place.y) continue;
                    ASSERT_EQ(rig.display.PixelAt(x, y), ink ? kInk : shadow ? 0 : kPaper) << bits << ' ' << x << ',' << y;
                }
        }
}

TEST(Font, BlackTextHasNoShadowAMutedFontNothing) {
    FontRig rig(32);
    rig.font.Mute(true);
    rig.font.Print(0, 0, "A");
    rig.font.Mute(false);
    rig.font.PrintColoured(100, 100, 0, "A");
    rig.font.PrintClipped(100, 200, 1, "\xC3\xA9\xC3\xA9");
    rig.video.Present();
    for (int y = 0; y < Font::kHeight; ++y)
        for (int x = 0; x < 8; ++x) {
            EXPECT_EQ(rig.display.PixelAt(x, y), kPaper);
            EXPECT_EQ(rig.display.PixelAt(100 + x, 100 + y), FontRig::Covers({'A'}, 0, 0, x, y) ? 0 : kPaper);
            EXPECT_NE(rig.display.PixelAt(110 + x, 200 + y), kInk);
        }
    EXPECT_EQ(rig.font.WidthOf("\xC3\xA9z"), 16);
}

TEST(Font, ALongTextWandersToItsEndAndBackAStepEvery32Calls) {
    FontRig rig(32);
    std::uint32_t state = 0;
    std::vector<int> starts;
    for (int call = 0; call < 32 * 8; ++call) {
        rig.font.PrintScrolling(0, 0, state, 3, "abcdef");
        if (call % 32 == 31) starts.push_back(static_cast<int>(state >> 5 & 0x3FFFFFF));
    }
    EXPECT_EQ(starts, (std::vector{1, 2, 3, 2, 1, 0, 1, 2}));
    rig.font.PrintScrolling(0, 0, state, 3, "abcd");             // another text, and the end is nearer
    EXPECT_EQ(state >> 5 & 0x3FFFFFF, 1u);
    std::uint32_t still = 0;
    for (int call = 0; call < 100; ++call) rig.font.PrintScrolling(0, 0, still, 3, "abc");
    EXPECT_EQ(still, 0u);
}

}  // namespace
}  // namespace vonta
