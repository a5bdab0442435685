// Where everything on a screen stands. A screen declares its controls from its table, and the skin's picture of the
// same screen is drawn from the same table, so that no caption or frame can stand beside its region.
//
// Positions are pixels of the 800 by 600 picture; those of the questions count from the question's corner.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace vonta {

constexpr int kPictureWidth = 800, kPictureHeight = 600;

enum class Look : std::uint8_t {
    Button,          // 8 u + 9 by 20 pixels, u units wide
    SmallButton,     // 8 u + 8 by 16
    SmallButton1,    // 8 u + 8 by 8
    SmallButton2,    // 8 u + 8 by 12
    SmallButton3,    // 8 u + 3 by 9
    Slider,          // groove, the knob is drawn by the program
    VSlider,
    Field,           // recess in which the program prints a value; the caption stands left of it
    TextField,       // recess in which the user types
    List,            // recess with rows of text
    View,            // recess that the program fills with pixels or bitmaps
    Label,           // a caption alone; x, y is the top left of the text
    Title,           // a caption that heads a screen or a group
    Group,           // a thin edge around what belongs together, with its caption in the upper edge if it has one
};

struct LayoutItem {
    Look look;
    int id;                          // the screen's own number of the control; -1: nothing to press
    int x, y, width, height;
    std::string_view caption = {};   // Latin-1
};

struct ScreenLayout {
    std::string_view name;           // of the bitmap entry, without directory and suffix: "OpLeft"
    int bitmap, pressedBitmap;       // by number of the skin table
    int x, y, width, height;         // of the whole bitmap on the screen
    std::span<const LayoutItem> items;
};

// Sizes of the buttons: the look and a width in units of eight pixels.
constexpr int ButtonWidth(Look look, int units) {
    return 8 * units + (look == Look::Button ? 9 : look == Look::SmallButton3 ? 3 : 8);
}
constexpr int ButtonHeight(Look look) {
    switch (look) {
    case Look::Button: return 20;
    case Look::SmallButton1: return 8;
    case Look::SmallButton2: return 12;
    case Look::SmallButton3: return 9;
    default: return 16;
    }
}
constexpr LayoutItem ButtonAt(Look look, int id, int x, int y, int units, std::string_view caption = {}) {
    return {look, id, x, y, ButtonWidth(look, units), ButtonHeight(look), caption};
}

// Every screen's table, in the order of the bitmap numbers.
std::span<const ScreenLayout* const> AllLayouts();

}  // namespace vonta
