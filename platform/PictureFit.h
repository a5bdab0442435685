// How the picture lies in what the window shows of it: as large as fits with its shape kept, in the middle, and which
// pixel of it the mouse points at.
#pragma once

namespace vonta {

struct PictureFit {
    // Of the shown picture within the window's pixels.
    int x = 0, y = 0, width = 1, height = 1;

    static PictureFit Of(int pictureWidth, int pictureHeight, int outputWidth, int outputHeight);

    // By which whole factor the picture is enlarged with hard edges before it is smoothed down to its shown size. At
    // least 1; IsSharp: the shown size is that factor itself.
    int Prescale(int pictureWidth) const;
    bool IsSharp(int pictureWidth, int pictureHeight) const;
};

// A window of so many units, which the mouse counts in, shown with so many pixels: both differ where the density is high.
struct OutputSize {
    int windowWidth = 1, windowHeight = 1, pixelWidth = 1, pixelHeight = 1;
};

struct PicturePoint {
    int x = 0, y = 0;
};

// The pixel of the picture under a point of the window; beside the picture it lies outside it as well.
PicturePoint PictureAt(const PictureFit& fit, const OutputSize& output, int pictureWidth, int pictureHeight, int windowX,
                       int windowY);

// The size to open with on a desktop that leaves so much room: the largest whole factor, or all the room if there is too
// little for one.
struct WindowSize {
    int width = 0, height = 0;
};
WindowSize OpeningSize(int pictureWidth, int pictureHeight, int roomWidth, int roomHeight);

}  // namespace vonta
