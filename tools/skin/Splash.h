// The pictures that belong to the program rather than to the skin.
#pragma once

#include "tools/skin/Canvas.h"

namespace vonta::skin {

Canvas PaintSplash(const FontSet& fonts);        // what is seen while the program loads, 800 by 600
Canvas PaintProgressUnit();                      // units stand 10 pixels apart at the foot of it
Canvas PaintMouse();                             // 11 by 20, with clear pixels
Canvas PaintIcon(int size);                      // of the desktop
// The program's name as round strokes; height of the letters in pixels. Moves the pen's path only.
void TraceName(cairo_t* pen, double x, double y, double height, double gap);
double WidthOfName(double height, double gap);

}  // namespace vonta::skin
