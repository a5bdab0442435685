// The main panel: the list of instruments, synths or effects, the samples of the instrument, transport.
#pragma once

#include "interface/layout/Layout.h"

namespace vonta {

constexpr int kListRowHeight = 15;
constexpr int kNameMargin = 4;                   // of the lists of names: what the mouse and the text leave at the left
constexpr int kItemRows = 8, kSampleRows = 5;
constexpr int kListBlocks = 8;                   // of a bank

enum MainControl : int {
    kMainPlay, kMainRecord, kMainSolo, kMainSoloChannel, kMainPanic, kMainColours, kMainWindowMode,
    kMainItems, kMainSources, kMainSamples, kMainSampleSources,
    kMainSampleUp, kMainSampleDown, kMainSampleScroll, kMainTitle, kMainBank,
    kMainListName, kMainOctave,                  // shown only
    kMainMute,                                   // by row
    kMainBlock = kMainMute + kItemRows,          // by block
};

inline constexpr LayoutRow kMainPanelTable[] = {
    {Look::List, kMainSources, 519, 4, 27, 119},
    {Look::List, kMainItems, 546, 4, 175, 119},
    {Look::List, kMainSampleSources, 519, 130, 27, 74},
    {Look::List, kMainSamples, 546, 130, 170, 74},
    Down(kItemRows, kListRowHeight, ButtonAt(Look::SmallButton2, kMainMute, 731, 5, 1, "m")),
    ButtonAt(Look::SmallButton2, kMainPlay, 751, 2, 5, "Play"),
    ButtonAt(Look::SmallButton2, kMainRecord, 751, 17, 5, "Rec"),
    ButtonAt(Look::SmallButton2, kMainSolo, 751, 32, 5, "Solo"),
    ButtonAt(Look::SmallButton2, kMainSoloChannel, 751, 47, 5, "Solo ch"),
    ButtonAt(Look::SmallButton2, kMainPanic, 751, 65, 5, "Panic"),
    ButtonAt(Look::SmallButton2, kMainColours, 751, 78, 5, "Colors"),
    ButtonAt(Look::SmallButton2, kMainWindowMode, 751, 90, 5, "Window"),
    LabelAt(755, 112, "List"),
    FieldAt(kMainListName, 756, 128, 5),
    LabelAt(755, 152, "Octave"),
    FieldAt(kMainOctave, 756, 168, 5),
    ButtonAt(Look::SmallButton2, kMainSampleUp, 732, 131, 1, "^"),
    {Look::VSlider, kMainSampleScroll, 732, 145, 17, 45},
    ButtonAt(Look::SmallButton2, kMainSampleDown, 732, 190, 1, "v"),
    ButtonAt(Look::SmallButton, kMainBank, 524, 210, 6, "Bank"),
    Across(kListBlocks, 26, ButtonAt(Look::SmallButton, kMainBlock, 588, 210, 2, "1|2|3|4|5|6|7|8")),
    {Look::TextField, kMainTitle, 523, 228, 226, 19},
    LabelAt(756, 229, "Title"),
};
inline constexpr auto kMainPanelItems = Expanded<kMainPanelTable>();
inline constexpr ScreenLayout kMainLayout = {"InsList", 7, 8, 519, 0, 281, 248, kMainPanelItems};

}  // namespace vonta
