#include "interface/view/PatternView.h"

#include <algorithm>

namespace vonta {
namespace {

constexpr auto kStdBig = &Fonts::m_fontStdBig, kSmall = &Fonts::m_fontSmall, kMini = &Fonts::m_fontMini,
               kBig = &Fonts::m_fontBig, kBigger = &Fonts::m_fontBigger;

constexpr std::array<PatternView, 5> kViews{{
    {4, 186, 192, 44, 186, 32, kBig, {kBigger, 0}, {kBig, 90}, {kStdBig, 119}, {kBig, 139},
     28, {0, 90, 102, 120, 127, 140, 152, 164}, 84, 12, 8, 12},
    {8, 95, 95, 40, 93, 20, kStdBig, {kBig, 0}, {kStdBig, 37}, {kMini, 55}, {kStdBig, 66},
     16, {0, 38, 46, 55, 59, 67, 74, 82}, 39, 8, 6, 8},
    {16, 48, 48, 31, 48, 18, kSmall, {kSmall, 0}, {kMini, 22}, {}, {kMini, 31},
     15, {0, 22, 26, 0, 0, 31, 35, 39}, 21, 5, 0, 5},
    {24, 32, 32, 20, 32, 17, kSmall, {kSmall, 0}, {kMini, 21}, {}, {},
     14, {0, 21, 25, 0, 0, 31, 35, 39}, 21, 5, 0, 5},
    {32, 24, 24, 20, 24, 17, kSmall, {kSmall, 0}, {}, {}, {},
     14, {0, 22, 26, 0, 0, 31, 35, 39}, 21, 5, 0, 5},
}};

}  // namespace

int PatternView::CursorWidth(int column) const {
    if (column <= kColumnNote) return noteWidth;
    if (column <= kColumnInstrumentLow) return instrumentWidth;
    return column <= kColumnVolumeLow ? volumeWidth : effectWidth;
}

const PatternView& ViewOf(int visibleChannels) {
    const auto fits = [&](const PatternView& view) { return view.channels >= visibleChannels; };
    const auto found = std::ranges::find_if(kViews, fits);
    return found == kViews.end() ? kViews.back() : *found;
}

int ChannelsThatFit(int songChannels) { return ViewOf(songChannels).channels; }

int ViewRows(const EditValues& values, int songChannels) {
    return values.m_nVisibleChannels < songChannels ? kViewRows - 1 : kViewRows;
}

}  // namespace vonta
