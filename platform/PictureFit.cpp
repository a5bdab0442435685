#include "platform/PictureFit.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace vonta {
namespace {

// Of title bars and borders, in window units; how large they are is known only when the window stands.
constexpr int kFrameWidth = 12, kFrameHeight = 48;

// The middle of a unit of the window, in pixels of the picture.
int Along(int at, int windowSize, int pixels, int start, int shown, int picture) {
    const double pixel = (at + 0.5) * pixels / std::max(windowSize, 1);
    return static_cast<int>(std::floor((pixel - start) * picture / shown));
}

}  // namespace

PictureFit PictureFit::Of(int pictureWidth, int pictureHeight, int outputWidth, int outputHeight) {
    const std::int64_t across = std::int64_t{outputWidth} * pictureHeight, down = std::int64_t{outputHeight} * pictureWidth;
    PictureFit fit;
    fit.width = std::max(1, across <= down ? outputWidth : static_cast<int>(down / pictureHeight));
    fit.height = std::max(1, across <= down ? static_cast<int>(across / pictureWidth) : outputHeight);
    fit.x = (outputWidth - fit.width) / 2;
    fit.y = (outputHeight - fit.height) / 2;
    return fit;
}

int PictureFit::Prescale(int pictureWidth) const { return std::max(1, (width + pictureWidth - 1) / pictureWidth); }

bool PictureFit::IsSharp(int pictureWidth, int pictureHeight) const {
    return width % pictureWidth == 0 && height == width / pictureWidth * pictureHeight;
}

PicturePoint PictureAt(const PictureFit& fit, const OutputSize& output, int pictureWidth, int pictureHeight, int windowX,
                       int windowY) {
    return {Along(windowX, output.windowWidth, output.pixelWidth, fit.x, fit.width, pictureWidth),
            Along(windowY, output.windowHeight, output.pixelHeight, fit.y, fit.height, pictureHeight)};
}

WindowSize OpeningSize(int pictureWidth, int pictureHeight, int roomWidth, int roomHeight) {
    if (roomWidth < pictureWidth || roomHeight < pictureHeight) {
        const PictureFit fit = PictureFit::Of(pictureWidth, pictureHeight, roomWidth, roomHeight);
        return {fit.width, fit.height};
    }
    const int factor = std::max(1, std::min((roomWidth - kFrameWidth) / pictureWidth,
                                            (roomHeight - kFrameHeight) / pictureHeight));
    return {factor * pictureWidth, factor * pictureHeight};
}

}  // namespace vonta
