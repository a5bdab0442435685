#include "platform/PictureFit.h"

#include <gtest/gtest.h>

namespace vonta {
namespace {

constexpr int kWidth = 800, kHeight = 600;

TEST(PictureFit, KeepsTheShapeFillsOneSideAndLiesInTheMiddle) {
    for (const int width : {1, 400, 799, 800, 1000, 1920, 3840, 7680})
        for (const int height : {1, 300, 600, 601, 1080, 2160}) {
            const PictureFit fit = PictureFit::Of(kWidth, kHeight, width, height);
            EXPECT_TRUE(fit.width == width || fit.height == height);
            EXPECT_LE(fit.width, width);
            EXPECT_LE(fit.height, height);
            EXPECT_NEAR(fit.width * kHeight, fit.height * kWidth, kWidth);
            EXPECT_LE(fit.x, width - fit.width - fit.x);
            EXPECT_GE(fit.Prescale(kWidth) * kWidth, fit.width);
        }
    EXPECT_TRUE(PictureFit::Of(kWidth, kHeight, 1700, 1200).IsSharp(kWidth, kHeight));
    EXPECT_FALSE(PictureFit::Of(kWidth, kHeight, 1200, 900).IsSharp(kWidth, kHeight));
    EXPECT_FALSE(PictureFit::Of(kWidth, kHeight, 400, 300).IsSharp(kWidth, kHeight));
}

// A window of units that are one, one and a half, two or three pixels each.
TEST(PictureFit, TheMouseHitsThePixelThatIsShownThereAtEveryDensity) {
    for (const double density : {1.0, 1.5, 2.0, 3.0})
        for (const auto& [width, height] : {std::pair{800, 600}, {1000, 700}, {1366, 768}, {1920, 1080}}) {
            const OutputSize output{width, height, static_cast<int>(width * density), static_cast<int>(height * density)};
            const PictureFit fit = PictureFit::Of(kWidth, kHeight, output.pixelWidth, output.pixelHeight);
            for (int x = 0; x < kWidth; x += 7) {
                const double shownMiddle = fit.x + (x + 0.5) * fit.width / kWidth;
                const PicturePoint at = PictureAt(fit, output, kWidth, kHeight, static_cast<int>(shownMiddle / density), height / 2);
                EXPECT_NEAR(at.x, x, density * kWidth / fit.width) << density << ' ' << width;   // a unit is no finer
                EXPECT_EQ(at.y, kHeight / 2);
            }
            EXPECT_LE(PictureAt(fit, output, kWidth, kHeight, -1, 0).x, -1);
            EXPECT_GE(PictureAt(fit, output, kWidth, kHeight, width, 0).x, kWidth);
        }
}

}  // namespace
}  // namespace vonta
