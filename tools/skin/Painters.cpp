#include "tools/skin/Painters.h"

#include <algorithm>
#include <array>
#include <string>

namespace vonta::skin {
namespace {

constexpr int kInkTop = 3, kInkBottom = 12;   // the rows of a cell in which capitals of Std stand
constexpr int kSmallTop = 4, kMiniTop = 6;    // where those of the narrower faces begin
constexpr int kSmallInk = 5;                  // the width of most letters of the small one

// The corners of what is raised or sunk are left out, so that it looks rounded.
void RoundCorners(Canvas& canvas, int x, int y, int width, int height, Colour around) {
    for (const int column : {x, x + width - 1})
        for (const int row : {y, y + height - 1}) canvas.Pixel(column, row, around);
}

// A small picture of seven by seven for what a sign says better than a letter.
struct Sign {
    char name;
    std::array<const char*, 7> rows;
};
constexpr Sign kSigns[] = {
    {'+', {"...#...", "...#...", "...#...", "#######", "...#...", "...#...", "...#..."}},
    {'-', {".......", ".......", ".......", "#######", ".......", ".......", "......."}},
    {'<', {".....#.", "...###.", ".#####.", "######.", ".#####.", "...###.", ".....#."}},
    {'>', {".#.....", ".###...", ".#####.", ".######", ".#####.", ".###...", ".#....."}},
    {'^', {".......", "...#...", "..###..", ".#####.", "#######", ".......", "......."}},
    {'v', {".......", "#######", ".#####.", "..###..", "...#...", ".......", "......."}},
};

const Sign* SignOf(std::string_view caption) {
    if (caption.size() != 1) return nullptr;
    const auto sign = std::find_if(std::begin(kSigns), std::end(kSigns),
                                   [&](const Sign& each) { return each.name == caption[0]; });
    return sign == std::end(kSigns) ? nullptr : sign;
}

void PaintSign(Canvas& canvas, const Sign& sign, const LayoutItem& item, Colour colour) {
    const int left = item.x + (item.width - 7) / 2, top = item.y + (item.height - 7) / 2;
    for (int y = 0; y < 7; ++y)
        for (int x = 0; x < 7; ++x)
            if (sign.rows[static_cast<std::size_t>(y)][x] == '#') canvas.Pixel(left + x, top + y, colour);
}


void PaintButton(Canvas& canvas, const FontSet& fonts, const LayoutItem& item, State state) {
    PaintPlate(canvas, item.x, item.y, item.width, item.height, state);
    PaintCaption(canvas, fonts, item, state);
}

// The groove that a slider runs in. Pressed it is what the program cuts the filled part and the thumbs of scroll bars
// from: the same across its whole length.
void PaintGroove(Canvas& canvas, const FontSet&, const LayoutItem& item, State state) {
    PaintWell(canvas, item.x, item.y, item.width, item.height, state == State::Pressed ? kCyanDeep : kWell);
    const bool upright = item.look == Look::VSlider;
    const int across = upright ? item.width : item.height;
    const auto strip = [&](int at, int thickness, Colour colour) {
        if (upright) canvas.Fill(item.x + at, item.y + 2, thickness, item.height - 4, colour);
        else canvas.Fill(item.x + 2, item.y + at, item.width - 4, thickness, colour);
    };
    if (state == State::Pressed) {
        strip(2, across - 4, kCyanDark);
        strip(2, 1, kCyan);
        strip(across - 3, 1, kCyanDeep);
    } else {
        strip(across / 2 - 1, 1, kWellShade);
        strip(across / 2, 1, kPanelLight);
    }
}

void PaintRecess(Canvas& canvas, const FontSet&, const LayoutItem& item, State) {
    PaintWell(canvas, item.x, item.y, item.width, item.height);
}

// Pressed it is what the program cuts a selected stretch from: the same in every column.
void PaintView(Canvas& canvas, const FontSet& fonts, const LayoutItem& item, State state) {
    if (state == State::Normal) return PaintRecess(canvas, fonts, item, state);
    canvas.Gradient(item.x, item.y, item.width, item.height, Mix(kCyanDeep, kWell, 0.25), kCyanDeep);
    canvas.Fill(item.x, item.y, item.width, 1, kCyanDark);
}

// Pressed it is what the program cuts the bar of a chosen row from.
void PaintList(Canvas& canvas, const FontSet&, const LayoutItem& item, State state) {
    PaintWell(canvas, item.x, item.y, item.width, item.height, state == State::Pressed ? kCyanDeep : kWell);
    if (state == State::Pressed) canvas.Fill(item.x + 1, item.y + 1, 2, item.height - 2, kCyan);
}

// Where the user types: a line to write on.
void PaintTextField(Canvas& canvas, const FontSet&, const LayoutItem& item, State) {
    PaintWell(canvas, item.x, item.y, item.width, item.height);
    canvas.Fill(item.x + 2, item.y + item.height - 2, item.width - 4, 1, kCyanDark);
}

void PaintLabel(Canvas& canvas, const FontSet& fonts, const LayoutItem& item, State) {
    canvas.Text(fonts[kSmall], item.x, item.y + 1, item.caption, kPanelDark);
    canvas.Text(fonts[kSmall], item.x, item.y, item.caption, kCaption);
}

void PaintTitle(Canvas& canvas, const FontSet& fonts, const LayoutItem& item, State) {
    canvas.Text(fonts[kStdBig], item.x + 1, item.y + 1, item.caption, kPanelDark);
    canvas.Text(fonts[kStdBig], item.x, item.y, item.caption, kTitle);
}

void PaintGroup(Canvas& canvas, const FontSet& fonts, const LayoutItem& item, State) {
    canvas.Frame(item.x + 1, item.y + 1, item.width - 1, item.height - 1, kPanelDark, kPanelDark);
    canvas.Frame(item.x, item.y, item.width - 1, item.height - 1, kGroupEdge, kGroupEdge);
    if (item.caption.empty()) return;
    const int width = fonts[kSmall].WidthOf(item.caption) + 7;
    canvas.Fill(item.x + 8, item.y, width, 2, kPanel);
    canvas.Text(fonts[kSmall], item.x + 12, item.y - kInkTop - 4, item.caption, kCaption);
}

// A question stands out from the screens that it covers.
void PaintQuestionEdge(Canvas& canvas) {
    const int width = canvas.Width(), height = canvas.Height();
    canvas.Frame(0, 0, width, height, kWellShade, kWellShade);
    canvas.Frame(1, 1, width - 2, height - 2, kFaceLight, kFaceDark);
    canvas.Fill(1, 1, width - 2, 2, kAmber);
}

using ItemPainter = void (*)(Canvas&, const FontSet&, const LayoutItem&, State);

struct LookRow {
    Look look;
    ItemPainter paint;
};
constexpr LookRow kLooks[] = {
    {Look::Button, PaintButton},       {Look::SmallButton, PaintButton},  {Look::SmallButton1, PaintButton},
    {Look::SmallButton2, PaintButton}, {Look::SmallButton3, PaintButton}, {Look::Slider, PaintGroove},
    {Look::VSlider, PaintGroove},      {Look::Field, PaintRecess},        {Look::TextField, PaintTextField},
    {Look::List, PaintList},           {Look::View, PaintView},           {Look::Label, PaintLabel},
    {Look::Title, PaintTitle},         {Look::Group, PaintGroup},
};

}  // namespace

void PaintPanel(Canvas& canvas, int x, int y, int width, int height) {
    canvas.Fill(x, y, width, height, kPanel);
    canvas.Frame(x, y, width, height, kPanelLight, kPanelDark);
}

void PaintWell(Canvas& canvas, int x, int y, int width, int height, Colour ground) {
    const Colour around = canvas.At(x, y);
    canvas.Fill(x, y, width, height, ground);
    canvas.Frame(x, y, width, height, kWellShade, kWellLight);
    RoundCorners(canvas, x, y, width, height, around);
}

void PaintPlate(Canvas& canvas, int x, int y, int width, int height, State state) {
    const Colour around = canvas.At(x, y);
    if (state == State::Pressed) {
        canvas.Gradient(x + 1, y + 1, width - 2, height - 2, Mix(kAmber, kAmberDark, 0.25), kAmber);
        canvas.Frame(x, y, width, height, kAmberDeep, kAmberLight);
        canvas.Fill(x + 1, y + height - 1, width - 2, 1, kAmberDark);
        canvas.Fill(x + width - 1, y + 1, 1, height - 2, kAmberDark);
    } else {
        canvas.Gradient(x + 1, y + 1, width - 2, height - 2, kFaceTop, kFaceBottom);
        canvas.Frame(x, y, width, height, kFaceDark, kFaceDark);
        canvas.Fill(x + 1, y + 1, width - 2, 1, kFaceLight);
    }
    RoundCorners(canvas, x, y, width, height, around);
}

void PaintCaption(Canvas& canvas, const FontSet& fonts, const LayoutItem& item, State state) {
    const Colour colour = state == State::Pressed ? kOnAmber : kCaption;
    if (const Sign* sign = SignOf(item.caption); sign && item.height >= 9) return PaintSign(canvas, *sign, item, colour);
    const int advance = item.height < ButtonHeight(Look::SmallButton2) ? kTinyAdvance : AdvanceIn(item);
    const bool tiny = advance == kTinyAdvance;
    const GlyphSet& font = fonts[tiny ? kMini : kSmall];
    const int inkTop = tiny ? kMiniTop : kSmallTop, inkHeight = kInkBottom - inkTop;
    // The ink of a glyph begins a pixel inside its cell; the last cell's blank does not count.
    const int width = CaptionWidth(item.caption, advance) - 1, blank = tiny ? 1 : (font.width - kSmallInk) / 2;
    const int x = item.x + (item.width - width) / 2 - blank;
    const int y = item.y + (item.height - inkHeight + 1) / 2 - inkTop;
    if (state == State::Normal && item.height >= kTextHeight)
        canvas.Text(font, x, y + 1, item.caption, kFaceDark, advance);
    canvas.Text(font, x, y, item.caption, colour, advance);
}

void PaintItem(Canvas& canvas, const FontSet& fonts, const LayoutItem& item, State state, int originX, int originY) {
    LayoutItem placed = item;
    placed.x -= originX;
    placed.y -= originY;
    const auto row = std::find_if(std::begin(kLooks), std::end(kLooks),
                                  [&](const LookRow& each) { return each.look == item.look; });
    if (row != std::end(kLooks)) row->paint(canvas, fonts, placed, state);
}

Canvas PaintScreen(const FontSet& fonts, const ScreenLayout& layout, State state) {
    Canvas canvas(layout.width, layout.height);
    PaintPanel(canvas, 0, 0, layout.width, layout.height);
    if (layout.movable) PaintQuestionEdge(canvas);
    for (const bool edges : {true, false})   // the edges of groups first, so that they cut nothing
        for (const LayoutItem& item : layout.items)
            if ((item.look == Look::Group) == edges)
                PaintItem(canvas, fonts, item, state, layout.OriginX(), layout.OriginY());
    return canvas;
}

}  // namespace vonta::skin
