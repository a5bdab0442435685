#include "interface/screens/PatternScreen.h"

#include <algorithm>
#include <cmath>

#include "interface/layout/PatternLayout.h"
#include "interface/layout/PatternPictures.h"
#include "interface/TrackerInterface.h"
#include "interface/view/CellText.h"
#include "interface/widgets/Formatted.h"
#include "platform/Shared.h"

namespace vonta {
namespace {

constexpr int kBeat = 4, kBar = 8;               // rows
constexpr int kHeaderY = 249;
constexpr int kTextAboveRow = 1;                 // pixels that a row's text begins above it, so that its ink is centred
constexpr int kCursorInside = 5;                 // pixels from a track's line to its cursor block
constexpr int kCursorHeight = 255;               // as much of it as there is
constexpr int kScrollKnob = 400;                 // pixels
constexpr int kRowNumberDigits = 2;
// Sixteenths of a colour's light: of what stands for nothing, and of the selection's ground.
constexpr int kEmptyLight = 8, kRowLight = 3, kBeatLight = 4, kCursorLight = 6;
constexpr int kFullLight = 16, kInstrumentLight = 11;   // of a field: the note stands before its instrument

int RowY(int viewRow) { return kViewTop + viewRow * kRowHeight; }

struct CellField {
    ViewField PatternView::* field;
    int length;                                  // characters
    int column;                                  // of the cursor, at the first of them
    int light = kFullLight;
};
// In the order of CellText.
constexpr CellField kFields[] = {{&PatternView::note, kNoteLength, kColumnNote},
                                 {&PatternView::instrument, kInstrumentLength, kColumnInstrumentHigh, kInstrumentLight},
                                 {&PatternView::volume, kVolumeLength, kColumnVolumeHigh},
                                 {&PatternView::effect, kEffectLength, kColumnEffect}};

// The characters of a field that the cursor lies on: a digit, or the whole note. They stand out of its block in black.
struct Marked {
    std::size_t from = 0, length = 0;
};
Marked UnderCursor(const CellField& part, int column) {
    if (part.column == kColumnNote) return {0, column == kColumnNote ? static_cast<std::size_t>(part.length) : 0};
    if (column < part.column || column >= part.column + part.length) return {};
    return {static_cast<std::size_t>(column - part.column), 1};
}

void PrintField(const Font& font, int x, int y, std::uint32_t colour, std::string_view text, Marked marked) {
    const auto xOf = [&](std::size_t character) { return x + static_cast<int>(character) * font.Advance(); };
    const std::size_t end = marked.from + marked.length;
    font.PrintColoured(x, y, colour, text.substr(0, marked.from));
    font.PrintColoured(xOf(marked.from), y, 0, text.substr(marked.from, marked.length));
    font.PrintColoured(xOf(end), y, colour, text.substr(end));
}

// Nothing is written there: dots, or the effect that does nothing. It stays in the background.
bool IsEmpty(std::string_view field) { return field.starts_with('$') || field == "000"; }

const LayoutItem& Item(int id) { return ItemOf(kPatternScrollLayout, id); }

}  // namespace

const EditValues& PatternScreen::Values() const { return State().frame; }
const PatternView& PatternScreen::View() const { return ViewOf(Values().m_nVisibleChannels); }
bool PatternScreen::HasScrollbar() const { return Values().m_nVisibleChannels < State().SongChannels(); }
int PatternScreen::Rows() const { return ViewRows(Values(), State().SongChannels()); }
bool PatternScreen::IsRow(int row) const { return row >= 0 && row < State().m_pPattern->Rows(); }

int PatternScreen::ShownTracks() const {
    return std::min(View().channels, State().SongChannels() - Values().m_nFirstChannel);
}

void PatternScreen::PaintBackground() {
    PaintLayout(kPatternLayout);
    PaintRowGrounds();
    PaintSelection();
    PaintTrackLines();
    PaintCursor();
    if (HasScrollbar())
        Surfaces().BlitToBack(kPatternScrollLayout.x, kPatternScrollLayout.y,
                              Pictures().LoadSkinBitmap(kPatternScrollLayout.bitmap));
}

void PatternScreen::PaintRowGrounds() {
    for (int i = 1; i < Rows(); ++i) {
        const int row = State().m_nCursorRow - kRowsAboveCursor + i;
        if (!IsRow(row) || row % kBeat != 0) continue;
        const int picture = (row + kBeat) % kBar == 0 ? kPictureBarRow : kPictureBeatRow;
        Surfaces().BlitToBack(0, RowY(i), Pictures().LoadSkinBitmap(picture));
    }
    Surfaces().BlitToBack(0, RowY(kRowsAboveCursor), Pictures().LoadSkinBitmap(kPictureCursorRow));
}

// A ground and an edge, which can be seen whatever the colours of the cells are.
void PatternScreen::PaintSelection() {
    const Selection& block = Values().selection;
    if (!block.m_bSelection) return;
    const int first = Values().m_nFirstChannel, top = State().m_nCursorRow - kRowsAboveCursor;
    const int left = std::max(block.Left() - first, 0);
    const int right = std::min(block.Left() + block.Width() - first, ShownTracks());
    const int upper = std::max(block.Top() - top, 1), lower = std::min(block.Top() + block.Height() - top, Rows());
    if (left >= right || upper >= lower) return;
    const int x = View().TrackX(left) + 2, width = View().TrackX(right) - x, y = RowY(upper);
    const std::uint32_t colour = Pictures().Colours().m_colSelection;
    for (int i = upper; i < lower; ++i) {
        const int light = i == kRowsAboveCursor ? kCursorLight : (top + i) % kBeat == 0 ? kBeatLight : kRowLight;
        Surfaces().FillBack({x, RowY(i), width, kRowHeight}, Surfaces().Dimmed(colour, light));
    }
    const int height = RowY(lower) - y;
    for (const Rect& edge : {Rect{x, y, width, 1}, Rect{x, y + height - 1, width, 1}, Rect{x, y, 1, height},
                             Rect{x + width - 1, y, 1, height}})
        Surfaces().FillBack(edge, colour);
}

void PatternScreen::PaintTrackLines() {
    const int line = Pictures().LoadSkinBitmap(kPictureTrackLine);
    for (int i = 0; i <= ShownTracks(); ++i) Surfaces().BlitToBack(View().TrackX(i), kViewTop, line);
}

void PatternScreen::PaintCursor() {
    const int column = Values().m_nCursorColumn, track = Values().m_nCursorChannel - Values().m_nFirstChannel;
    const int x = View().TrackX(track) + View().cursorX[static_cast<std::size_t>(column)] + kCursorInside;
    Surfaces().BlitPart(x, RowY(kRowsAboveCursor), View().CursorWidth(column), kCursorHeight,
                        Pictures().LoadSkinBitmap(kPictureCursor), true);
}

void PatternScreen::PaintControls() {
    DeclareScrollbar();
    if (Regions().IsBlitMode()) return;
    ControlRecord record;
    record.events = kOnLeftHeld | kOnRightHeld;
    record.useTicks = false;                     // the selection follows the mouse from the press on
    Regions().AddRegion(0, kViewTop, kPictureWidth - 1, (HasScrollbar() ? kScrollbarY : kPictureHeight) - 1,
                        Bind<&PatternScreen::OnSelect>(this), Bind<&PatternScreen::OnSelectOutside>(this), record);
    TakeInstrumentColours();
    PaintHeader();
    for (int i = 1; i < Rows(); ++i)
        if (const int row = State().m_nCursorRow - kRowsAboveCursor + i; IsRow(row)) PaintRow(row, RowY(i));
}

void PatternScreen::PaintHeader() {
    for (int i = 0; i < ShownTracks(); ++i)
        Text().m_fontStd.PrintColoured(View().headerX + i * View().headerPitch, kHeaderY, Pictures().Colours().m_colHighlight,
                                       Formatted("%i", Values().m_nFirstChannel + i + 1));
}

void PatternScreen::PaintRow(int row, int y) {
    const SkinColours& colours = Pictures().Colours();
    const std::uint32_t plain = row == State().m_nCursorRow ? colours.m_colHighlight : colours.m_colDim;
    const Font& font = Text().*View().rowFont;
    const std::string number = RowText(row, Values().m_bHexMode);
    const std::uint32_t numberColour = row % kBeat == 0 ? colours.m_colHighlight : plain;
    const int margin = (View().cursorOrigin - kRowNumberDigits * font.Advance()) / 2;
    font.PrintColoured(std::max(margin, 0), y - kTextAboveRow, numberColour, number);
    font.PrintColoured(View().TrackX(ShownTracks()) + 2, y - kTextAboveRow, numberColour, number);
    for (int track = 0; track < ShownTracks(); ++track) PaintCell(row, track, y, plain);
}

void PatternScreen::PaintCell(int row, int track, int y, std::uint32_t plain) {
    const int channel = Values().m_nFirstChannel + track;
    const Cell cell = State().m_pPattern->Read(row, channel);
    const std::uint32_t colour = CellColour(cell, row, channel, plain);
    const bool atCursor = row == State().m_nCursorRow && channel == Values().m_nCursorChannel;
    const std::string text = CellText(cell, View());
    std::string_view left = text;
    for (const CellField& part : kFields) {
        const ViewField& field = View().*part.field;
        if (!field.font) continue;
        const auto length = static_cast<std::size_t>(part.length);
        const std::string_view written = left.substr(0, length);
        PrintField(Text().*field.font, View().firstCell + track * View().width + field.x, y - kTextAboveRow,
                   Surfaces().Dimmed(colour, IsEmpty(written) ? kEmptyLight : part.light), written,
                   atCursor ? UnderCursor(part, Values().m_nCursorColumn) : Marked{});
        left.remove_prefix(length);
    }
}

std::uint32_t PatternScreen::CellColour(const Cell& cell, int row, int channel, std::uint32_t plain) const {
    if (cell.instrument > 0 && cell.instrument <= kMaxInstruments)
        if (const std::uint32_t own = colours_[cell.instrument - 1u]) return own;
    return Values().selection.Holds(channel, row) ? Pictures().Colours().m_colSelection : plain;
}

void PatternScreen::TakeInstrumentColours() {
    const bool shown = Settings().Has(kShowInstrColors);
    for (int i = 0; i < kMaxInstruments; ++i) {
        const Instrument* instrument = shown ? CurrentSong().GetInstrument(i) : nullptr;
        colours_[static_cast<std::size_t>(i)] = instrument ? Surfaces().PackRgb(Load(instrument->color)) : 0;
    }
}

void PatternScreen::DeclareScrollbar() {
    if (!HasScrollbar() || !HasPainted()) return;
    const PressedLook look{kPatternScrollLayout.x, kPatternScrollLayout.y,
                           static_cast<std::uint32_t>(Pictures().LoadSkinBitmap(kPatternScrollLayout.pressedBitmap))};
    ControlRecord repeating;
    repeating.events = kRepeating;
    Regions().Button(Item(kPatternLeft), Bind<&PatternScreen::OnLeft>(this), look, repeating);
    Regions().Button(Item(kPatternRight), Bind<&PatternScreen::OnRight>(this), look, repeating);
    const LayoutItem& groove = Item(kPatternScroll);
    const int steps = std::max(State().SongChannels() - Values().m_nVisibleChannels + 1, 1);
    const MouseRegions::SliderShape shape{groove.x, groove.y, groove.x + groove.width, groove.y + groove.height,
                                          steps, kScrollKnob, Values().m_nFirstChannel, true};
    const auto scroll = Bind<&PatternScreen::OnScroll>(this);
    Regions().Slider(shape, scroll, scroll, look);
}

void PatternScreen::OnSelect(ControlRecord& record) {
    if (record.rightNow) {
        State().SelectionOff();
    } else if (record.first || !State().pending.selection.m_bSelection) {
        State().SelectionStart(record.x, record.y);
    } else {
        State().SelectionExtend(record.x, record.y, record.ticksPassed);
    }
}

void PatternScreen::OnSelectOutside(ControlRecord& record) {
    if (!record.rightNow) OnSelect(record);
}

void PatternScreen::ScrollTo(int firstChannel) {
    const int last = std::max(State().SongChannels() - State().pending.m_nVisibleChannels, 0);
    State().pending.m_nFirstChannel = std::clamp(firstChannel, 0, last);
}

void PatternScreen::OnLeft(ControlRecord&) { ScrollTo(State().pending.m_nFirstChannel - 1); }
void PatternScreen::OnRight(ControlRecord&) { ScrollTo(State().pending.m_nFirstChannel + 1); }

void PatternScreen::OnScroll(ControlRecord& record) {
    const int hidden = State().SongChannels() - State().pending.m_nVisibleChannels;
    ScrollTo(static_cast<int>(std::lround(record.relX * static_cast<float>(hidden))));
}

}  // namespace vonta
