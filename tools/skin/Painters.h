// How the things of the layout tables look.
#pragma once

#include "interface/layout/Layout.h"
#include "tools/skin/Canvas.h"

namespace vonta::skin {

enum class State { Normal, Pressed };

// A raised plate, and a recess in one.
void PaintPanel(Canvas& canvas, int x, int y, int width, int height);
void PaintWell(Canvas& canvas, int x, int y, int width, int height, Colour ground = kWell);
// What a button is made of, without its caption.
void PaintPlate(Canvas& canvas, int x, int y, int width, int height, State state);
// A caption in the middle; "+", "-", "<", ">", "^" and "v" are signs drawn for the purpose.
void PaintCaption(Canvas& canvas, const FontSet& fonts, const LayoutItem& item, State state);

// One item of a table on a picture whose corner stands at (originX, originY).
void PaintItem(Canvas& canvas, const FontSet& fonts, const LayoutItem& item, State state, int originX, int originY);
// A screen's whole picture.
Canvas PaintScreen(const FontSet& fonts, const ScreenLayout& layout, State state);

}  // namespace vonta::skin
