#include <array>

#include "app/config/KeyTable.h"

namespace vonta {
namespace {

// Keys 88 to 97 sign differently on each country's keyboard, so they are shown by number.
constexpr std::array<std::string_view, kKeyCodes> kKeyNames = {
    "A", "B", "C", "D", "E", "F", "G", "H", "I", "J", "K", "L", "M",
    "N", "O", "P", "Q", "R", "S", "T", "U", "V", "W", "X", "Y", "Z",
    "0", "1", "2", "3", "4", "5", "6", "7", "8", "9",
    ",", "Enter", "Numpad Supr", "Grave",
    "F1", "F2", "F3", "F4", "F5", "F6", "F7", "F8", "F9", "F10", "F11", "F12",
    "Home", "End", "Left Shift", "Right Shift", "Left Control", "Right Control", "Left Alt", "Right Alt",
    "Up", "Down", "Tab", "Right", "Left", "Space", "Alt Gr", "Alt",
    "Delete", "Caps", "Back", "Insert", "Page Up", "Page Down",
    "NumLock", "Numpad Divide", "Numpad Multiply", "Numpad Subtract",
    "Numpad 0", "Numpad 1", "Numpad 2", "Numpad 3", "Numpad 4",
    "Numpad 5", "Numpad 6", "Numpad 7", "Numpad 8", "Numpad 9",
    "88", "89", "90", "91", "92", "93", "94", "95", "96", "97",
    "Right Enter", "No Key",
};

constexpr std::array<std::string_view, kKeyGroups> kGroupNames = {
    "Miscellaneus", "Cursor Moves", "Cut/Copy/Paste", "Instrument Select", "Piano Down",
    "Piano Up",     "Pattern Data", "Menus",          "Transpose",         "Sample Editor",
};

template <std::size_t count>
std::string_view At(const std::array<std::string_view, count>& names, int index) {
    const auto at = static_cast<std::size_t>(index);
    return at < count ? names[at] : std::string_view();
}

}  // namespace

std::string_view KeyName(int key) { return At(kKeyNames, key); }
std::string_view KeyGroupName(int group) { return At(kGroupNames, group); }

}  // namespace vonta
