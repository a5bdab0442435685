#include "interface/video/Video.h"

#include <gtest/gtest.h>

#include "tests/support/VideoRig.h"

namespace vonta {
namespace {

using test::PackBuilder;
using test::Tga;

constexpr std::uint32_t kRed = 0xFF0000, kGreen = 0x00FF00, kBlue = 0x0000FF, kWhite = 0xFFFFFF;

class VideoAt : public testing::TestWithParam<int> {
protected:
    VideoRig rig{GetParam()};
    Video& video = rig.video;
};
INSTANTIATE_TEST_SUITE_P(Depths, VideoAt, testing::Values(16, 24, 32));

TEST_P(VideoAt, OnlyTheBlackOfAPictureWithAlphaIsTransparent) {
    const std::vector<std::uint32_t> pixels = {0x00FFFFFF, 0xFF000000, 0xFFFF0000};   // clear, black, red
    const auto pack = rig.Pack(PackBuilder().Add("alpha", Tga(3, 1, 32, pixels)).Add("plain", Tga(3, 1, 24, {0, 0x010101, kRed})));
    video.Clear(video.PackRgb(kGreen));
    video.BlitToBack(0, 0, video.LoadBitmap(pack.get(), "alpha"));
    video.BlitToBack(0, 1, video.LoadBitmap(pack.get(), "plain"));
    video.BlitToBack(0, 2, video.LoadBitmap(pack.get(), "plain", true));
    EXPECT_EQ(rig.Shown(0, 0), kGreen);
    EXPECT_EQ(rig.Shown(0, 1), 0u);
    EXPECT_EQ(rig.Shown(0, 2), kGreen);
    for (int y = 0; y < 3; ++y) {
        EXPECT_LT(rig.Shown(1, y) & 0xF0F0F0, 0x101010u) << y;   // near-black at any depth
        EXPECT_EQ(rig.Shown(2, y), kRed) << y;
    }
}

TEST_P(VideoAt, TakesThePartThatIsAskedForAndCutsWhatLiesOutside) {
    const auto pack = rig.Pack(PackBuilder().Add("four", Tga(2, 2, 24, {kRed, kGreen, kBlue, kWhite})));
    const int id = video.LoadBitmap(pack.get(), "four");
    video.BlitRect(101, 51, 100, 50, 1, 1, id, false);           // as if it stood at (100, 50)
    video.BlitRect(100, 50, 100, 50, 0, 1, id, false);
    video.BlitPart(200, 0, 100, 1, id, false);
    video.BlitColumns(300, 0, 1, 1, id);
    video.BlitScaled(400, 0, 4, 4, id);
    for (const int x : {-1, 799})
        for (const int y : {-1, 599}) video.BlitToBack(x, y, id);
    const struct { int x, y; std::uint32_t colour; } expected[] = {
        {101, 51, kWhite}, {100, 50, 0}, {200, 0, kRed},  {201, 0, kGreen},  {200, 1, 0},       {300, 0, kGreen},
        {300, 1, kWhite},  {301, 0, 0},  {401, 1, kRed},  {402, 2, kWhite},  {0, 0, kWhite},    {799, 599, kRed}};
    for (const auto& e : expected) EXPECT_EQ(rig.Shown(e.x, e.y), e.colour) << e.x << ',' << e.y;
}

TEST_P(VideoAt, LinesCoverBothEndsAndThrowAShadowThatDarkensNoLine) {
    video.Clear(video.PackRgb(kGreen));
    video.DrawLine(-2000000000, -2000000000, 2000000000, 2000000000, video.PackRgb(kBlue));
    const std::pair<int, int> corner[] = {{12, 12}, {10, 10}, {10, 20}};
    video.DrawPolyline(corner, 3, video.PackRgb(kRed));
    video.DrawLine(-50, 599, 50, 599, video.PackRgb(kRed));
    video.PutPixel(800, 0, 0);
    for (const auto& [x, y] : {std::pair{12, 12}, {11, 11}, {10, 10}, {10, 20}, {0, 599}, {50, 599}}) EXPECT_EQ(rig.Shown(x, y), kRed);
    EXPECT_EQ(rig.Shown(11, 21), 0u);
    EXPECT_EQ(rig.Shown(13, 12), kGreen);
    EXPECT_EQ(rig.Shown(300, 300), kBlue);
    video.SetTarget(nullptr, 0);
    video.DrawLine(0, 0, 10, 0, video.PackRgb(kWhite));
    EXPECT_NE(rig.Shown(0, 0), kWhite);
}

TEST_P(VideoAt, AStripOfNTakesEveryNthColumn) {
    const auto pack = rig.Pack(PackBuilder().Add("strip", Tga(5, 1, 24, {kRed, kGreen, kBlue, kWhite, kRed})));
    const int id = video.LoadStrip(pack.get(), "strip", 2);
    EXPECT_EQ(video.WidthOf(id), 2);
    ASSERT_TRUE(video.Reload(id));
    video.BlitToBack(0, 0, id);
    EXPECT_EQ(rig.Shown(0, 0), kRed);
    EXPECT_EQ(rig.Shown(1, 0), kBlue);
}

TEST_P(VideoAt, TakesPixelsInBothOrders) {
    const int id = video.CreateEmpty(2, 1);
    const std::uint32_t pixels[] = {kRed, kGreen, kBlue, kWhite};
    for (const int order : {1, 2}) {
        video.LoadPixels(id, pixels, 4, 1, order);               // more than fit
        video.BlitToBack(0, 0, id);
        EXPECT_EQ(rig.Shown(0, 0), order == 1 ? kRed : kBlue);
        EXPECT_EQ(rig.Shown(1, 0), kGreen);
    }
}

TEST(Video, WhatIsNotThereIsSkipped) {
    VideoRig rig(32);
    Video& video = rig.video;
    const auto pack = rig.Pack(PackBuilder().Picture("huge", 1, 1, 0));
    const int missing = video.LoadBitmap(pack.get(), "missing");
    LockInfo info;
    for (const int id : {-1, missing, missing + 1, 1 << 30}) {
        video.BlitToBack(0, 0, id);
        video.Blit(0, 0, id, id);
        video.BlitScaled(0, 0, 10, 10, id);
        video.FillSurface(id, {0, 0, 1, 1}, 1);
        video.LoadPixels(id, nullptr, 1, 1);
        video.ReleaseSurface(id);
        EXPECT_FALSE(video.Lock(id, info));
        EXPECT_FALSE(video.Reload(id));
        EXPECT_EQ(video.WidthOf(id), 0);
    }
    EXPECT_FALSE(video.CreateSurface(Video::kSlots, 1, 1));
    video.ShutdownSurfaces();
    EXPECT_TRUE(video.IsLost());
    video.BlitToBack(0, 0, 0);
    video.Present();
    rig.display.refuse = true;
    EXPECT_EQ(video.SetMode(32, false, false, 800, 600), 1);
}

// Each change of the skin loads its bitmaps anew.
TEST(Video, AReleasedSlotServesAgainAndAFullTableGivesNone) {
    VideoRig rig(16);
    for (int i = 0; i < 3 * Video::kSlots; ++i) rig.video.ReleaseSurface(rig.video.CreateEmpty(1, 1));
    EXPECT_EQ(rig.video.CreateEmpty(1, 1), 0);
    for (int i = 1; i < Video::kSlots; ++i) rig.video.CreateEmpty(1, 1);
    EXPECT_EQ(rig.video.CreateEmpty(1, 1), Video::kNoSlot);
}

}  // namespace
}  // namespace vonta
