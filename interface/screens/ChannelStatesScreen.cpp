#include "interface/screens/ChannelStatesScreen.h"

#include <algorithm>

#include "interface/layout/PatternPictures.h"
#include "interface/layout/ScopesLayout.h"
#include "interface/TrackerInterface.h"
#include "interface/video/Wave.h"
#include "interface/widgets/Formatted.h"

namespace vonta {
namespace {

constexpr int kTop = 133, kCellHeight = 58, kCellRows = 2, kWidth = 341;     // pixels; of all cells of a row
constexpr int kPictureTop = 4, kLampTop = 49, kNumberTop = 1, kInset = 2;    // in the cell
constexpr int kWaveTop = 14, kWaveHeight = 30;
constexpr int kWideNumber = 18;                  // width of a cell that holds a number in the larger font
// A mark shrinks with the cell, and moves above the lamp when there is no room beside it.
constexpr int kWholeMarks = 22, kMarksBeside = 43;                           // channels
constexpr int kMarkX = 10, kMarkTop = 50, kSmallMarkWidth = 6, kSmallMarkHeight = 5;
constexpr int kNarrowMarkX = 3, kNarrowMarkTop = 44;
constexpr std::uint32_t kEvents = kOnLeftPress | kOnRightPress | kOnBothPress | kOnBothHeld;

}  // namespace

// An odd channel has its cell too.
int ChannelStatesScreen::CellsOfRow() const { return (State().SongChannels() + kCellRows - 1) / kCellRows; }

// The edges of the cells in 16.16 fixed point, so that they fill the row whatever their number.
Rect ChannelStatesScreen::CellOf(int channel) const {
    const int cells = CellsOfRow(), step = (kWidth << 16) / cells, column = channel % cells;
    const int x = column * step >> 16, end = (column + 1) * step >> 16;
    return {x, kTop + channel / cells * kCellHeight, end - x, kCellHeight};
}

template <class Paint>
void ChannelStatesScreen::ForEachCell(Paint paint) const {
    for (int channel = 0; channel < State().SongChannels(); ++channel) paint(channel, CellOf(channel));
}

void ChannelStatesScreen::PaintBackground() {
    ForEachCell([this](int channel, const Rect& cell) { PaintCell(channel, cell); });
}

void ChannelStatesScreen::PaintCell(int channel, const Rect& cell) {
    if (channel % CellsOfRow() != 0)
        Surfaces().BlitToBack(cell.x, cell.y + 1, Pictures().LoadSkinBitmap(kPictureCellLine));
    if (Player().IsChannelMuted(channel)) {
        Surfaces().BlitPart(cell.x + kInset, cell.y + kPictureTop, cell.width - kInset - 1, cell.height - kPictureTop,
                            Pictures().LoadSkinBitmap(kBitmapMutedWhole - 1 + CellsOfRow()), true);
        return;
    }
    const bool sounds = Player().GetMixer().scope.IsActive(channel);
    Surfaces().BlitToBack(cell.x + kInset, cell.y + kLampTop,
                          Pictures().LoadSkinBitmap(sounds ? kPictureActive : kPictureIdle));
    if (State().m_marks[static_cast<std::size_t>(channel)]) PaintMark(channel, cell);
}

void ChannelStatesScreen::PaintMark(int channel, const Rect& cell) {
    const int channels = State().SongChannels();
    const int picture = Pictures().LoadSkinBitmap(channel == State().m_nNextMarked ? kPictureNextMark : kPictureMark);
    const bool whole = channels < kWholeMarks, beside = channels <= kMarksBeside;
    Surfaces().BlitPart(cell.x + (beside ? kMarkX : kNarrowMarkX), cell.y + (beside ? kMarkTop : kNarrowMarkTop),
                        whole ? Surfaces().WidthOf(picture) : kSmallMarkWidth,
                        whole ? Surfaces().HeightOf(picture) : kSmallMarkHeight, picture, true);
}

void ChannelStatesScreen::PaintControls() {
    if (Regions().IsBlitMode()) return;
    ForEachCell([this](int channel, const Rect& cell) {
        ControlRecord record;
        record.param = channel;
        record.events = kEvents;
        Regions().AddRegion(cell.x, cell.y, cell.x + cell.width - 1, cell.y + cell.height - 1,
                            Bind<&ChannelStatesScreen::OnChannel>(this), {}, record);
        const Font& font = cell.width < kWideNumber ? Text().m_fontMini : Text().m_fontSmall;
        const SkinColours& colours = Pictures().Colours();
        font.PrintColoured(cell.x + kInset + 1, cell.y + kNumberTop,
                           Player().IsChannelMuted(channel) ? colours.m_colDim : colours.m_colText,
                           Formatted("%i", channel + 1));
    });
}

void ChannelStatesScreen::PaintPixels() {
    const ScopeTap& scope = Player().GetMixer().scope;
    ForEachCell([&](int channel, const Rect& cell) {
        if (!Player().IsChannelMuted(channel))
            DrawWave(Surfaces(), {cell.x + kInset, cell.y + kWaveTop, cell.width - 2 * kInset, kWaveHeight},
                     scope.OfTrack(channel), Pictures().Colours().m_colLines);
    });
}

// The buttons seldom go down in one frame. What the first one of a pair did is undone by the second.
void ChannelStatesScreen::OnChannel(ControlRecord& record) {
    const int channel = record.param;
    const auto toggleMark = [&] { State().MarkChannel(channel, !State().m_marks[static_cast<std::size_t>(channel)]); };
    if (!record.leftPressed && !record.rightPressed) return;   // only held
    if (record.leftNow && record.rightNow) {
        if (!record.rightPressed) toggleMark();
        State().ToggleSoloOf(channel);
    } else if (record.rightPressed) {
        toggleMark();
    } else {
        State().ToggleMute(channel);
    }
}

}  // namespace vonta
