// Where everything on a screen stands. A screen declares its controls from its table, and the skin's picture of the
// same screen is drawn from the same table, so that no caption or frame can stand beside its region.
//
// Positions are pixels of the 800 by 600 picture; those of the questions count from the question's corner.
#pragma once

#include <array>
#include <cstddef>
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
    Label,           // a caption alone; x, y is the top left of its first character's cell, 16 rows like the program's text
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
    bool movable = false;            // a question: its items count from its corner, wherever it is put

    constexpr int OriginX() const { return movable ? 0 : x; }   // what the items' positions count from
    constexpr int OriginY() const { return movable ? 0 : y; }
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

// Pixels from character to character. A caption is centred in its button, in the small glyphs; where these do not fit,
// they stand closer, and where that does not help the tiny ones are taken. Labels are drawn in the small ones, titles in
// the large ones.
constexpr int kTitleAdvance = 8, kCaptionAdvance = 7, kTightAdvance = 6, kTinyAdvance = 4;
constexpr int kTextHeight = 16;

constexpr int CaptionWidth(std::string_view caption, int advance) { return static_cast<int>(caption.size()) * advance; }
constexpr int AdvanceIn(const LayoutItem& item) {
    if (CaptionWidth(item.caption, kCaptionAdvance) <= item.width - 4) return kCaptionAdvance;
    return CaptionWidth(item.caption, kTightAdvance) <= item.width - 2 ? kTightAdvance : kTinyAdvance;   // one is blank
}

constexpr int kNoControl = -1;                   // the id of what cannot be pressed
constexpr LayoutItem LabelAt(int x, int y, std::string_view caption) {
    return {Look::Label, kNoControl, x, y, CaptionWidth(caption, kCaptionAdvance), kTextHeight, caption};
}
constexpr LayoutItem TitleAt(int x, int y, std::string_view caption) {
    return {Look::Title, kNoControl, x, y, CaptionWidth(caption, kTitleAdvance), kTextHeight, caption};
}
constexpr LayoutItem GroupAt(int x, int y, int width, int height, std::string_view caption = {}) {
    return {Look::Group, kNoControl, x, y, width, height, caption};
}
// A recess for text that the program prints from (x, y) on, of so many characters of the standard font.
constexpr LayoutItem FieldAt(int id, int x, int y, int characters, Look look = Look::Field) {
    return {look, id, x - 4, y, 8 * characters + 8, kTextHeight, {}};
}

// A row of a table that stands for several items, each (stepX, stepY) pixels behind the one before, its id stepId higher.
// Where their captions differ, '|' stands between them: "m" is on all, "1|2|3" has one for each. Rows of one item convert.
struct LayoutRow {
    LayoutItem first;
    int count = 1, stepX = 0, stepY = 0, stepId = 1;

    constexpr LayoutRow(const LayoutItem& item) : first(item) {}
    constexpr LayoutRow(Look look, int id, int x, int y, int width, int height) : first{look, id, x, y, width, height} {}
    constexpr LayoutRow(const LayoutItem& item, int times, int x, int y, int id = 1)
        : first(item), count(times), stepX(x), stepY(y), stepId(id) {}
};
constexpr LayoutRow Across(int count, int stepX, const LayoutItem& item) { return {item, count, stepX, 0}; }
constexpr LayoutRow Down(int count, int stepY, const LayoutItem& item) { return {item, count, 0, stepY}; }
// "+" and behind it "-", whose id is the next.
constexpr LayoutRow PlusMinusAt(int plusId, int x, int y, int stepX) {
    return Across(2, stepX, ButtonAt(Look::SmallButton, plusId, x, y, 1, "+|-"));
}

constexpr std::string_view CaptionOf(std::string_view captions, int number) {
    if (captions.find('|') == captions.npos) return captions;
    for (; number > 0; --number) captions.remove_prefix(captions.find('|') + 1);
    return captions.substr(0, captions.find('|'));
}
constexpr LayoutItem ItemOfRow(const LayoutRow& row, int number) {
    LayoutItem item = row.first;
    if (item.id != kNoControl) item.id += number * row.stepId;
    item.x += number * row.stepX;
    item.y += number * row.stepY;
    item.caption = CaptionOf(row.first.caption, number);
    if (item.look == Look::Label) item.width = CaptionWidth(item.caption, kCaptionAdvance);
    if (item.look == Look::Title) item.width = CaptionWidth(item.caption, kTitleAdvance);
    return item;
}
template <std::size_t rows>
constexpr std::size_t ItemsOf(const LayoutRow (&table)[rows]) {
    std::size_t items = 0;
    for (const LayoutRow& row : table) items += static_cast<std::size_t>(row.count);
    return items;
}
// The items that a table of rows stands for: what a ScreenLayout holds.
template <auto& table>
constexpr auto Expanded() {
    std::array<LayoutItem, ItemsOf(table)> items{};
    std::size_t next = 0;
    for (const LayoutRow& row : table)
        for (int number = 0; number < row.count; ++number) items[next++] = ItemOfRow(row, number);
    return items;
}

// The item of a table with this id; the table has one.
constexpr const LayoutItem& ItemOf(const ScreenLayout& layout, int id) {
    for (const LayoutItem& item : layout.items)
        if (item.id == id) return item;
    return layout.items.front();
}

constexpr LayoutItem MovedBy(LayoutItem item, int x, int y) {
    item.x += x;
    item.y += y;
    return item;
}

// Every screen's table, in the order of the bitmap numbers.
std::span<const ScreenLayout* const> AllLayouts();

}  // namespace vonta
