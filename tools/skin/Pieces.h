// The small pictures of the skin: lines, marks, keys, knobs, lamps.
#pragma once

#include <optional>

#include "tools/skin/Canvas.h"

namespace vonta::skin {

struct Picture {
    Canvas canvas;
    bool alpha = false;              // clear pixels let the ground show through
};

// The picture of a bitmap number; nothing for the screens' and for numbers that the table of bitmaps does not list.
std::optional<Picture> PaintPiece(const FontSet& fonts, int number);

// A rotary knob of 16 by 16 at position 0 to 63.
Picture PaintKnob(Colour colour, int position);

}  // namespace vonta::skin
