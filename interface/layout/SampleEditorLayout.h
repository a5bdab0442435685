// The sample editor: the wave over the whole width, and below it the loop, the edits, and the tools with their numbers.
#pragma once

#include "interface/layout/Layout.h"

namespace vonta {

constexpr int kLoopTypes = 3, kWaveToolButtons = 7;
constexpr int kWaveTop = 248, kWaveBottom = 510;     // y of the wave, both inclusive; it has every column
constexpr int kLoopStartPicture = 45, kLoopEndPicture = 46;

enum SampleEditorControl : int {
    kSmpWave, kSmpLength,                        // shown only
    kSmpLoopType,                                // by LoopType
    kSmpLoopStartDown = kSmpLoopType + kLoopTypes, kSmpLoopStartUp, kSmpLoopEndDown, kSmpLoopEndUp,
    kSmpSelectAll, kSmpSelectNone, kSmpDelete, kSmpCrop, kSmpCut, kSmpCopy, kSmpPaste,
    kSmpSign, kSmpSignOfWave, kSmpClone, kSmpExit,
    kSmpScroll, kSmpShowRange, kSmpZoomOut,
    kSmpPlay, kSmpPlayRange, kSmpPlayAtMouse, kSmpStop,
    kSmpTool,                                    // by WaveTool
    kSmpToMono = kSmpTool + kWaveToolButtons, kSmpVolume, kSmpCrossfade, kSmpFindLoop, kSmpResample,
    kSmpNumber,                                  // by SampleNumberField
};

// What can be typed.
enum SampleNumberField : int {
    kNumberLoopStart, kNumberLoopEnd, kNumberCrossfade, kNumberVolume, kNumberRate, kSampleNumberFields,
};

constexpr int NumberId(int field) { return kSmpNumber + field; }

inline constexpr LayoutRow kSampleEditorRows[] = {
    {Look::View, kSmpWave, 0, kWaveTop, 800, kWaveBottom + 1 - kWaveTop},

    Across(kLoopTypes, 30, ButtonAt(Look::SmallButton, kSmpLoopType, 2, 515, 2, "Off|Fwd|P-P")),
    LabelAt(96, 515, "Loop"),
    LabelAt(4, 536, "Start"),
    {Look::TextField, NumberId(kNumberLoopStart), 42, 536, 60, kTextHeight},
    ButtonAt(Look::SmallButton, kSmpLoopStartDown, 103, 535, 1, "<"),
    ButtonAt(Look::SmallButton, kSmpLoopStartUp, 121, 535, 1, ">"),
    LabelAt(4, 556, "End"),
    {Look::TextField, NumberId(kNumberLoopEnd), 42, 556, 60, kTextHeight},
    ButtonAt(Look::SmallButton, kSmpLoopEndDown, 103, 555, 1, "<"),
    ButtonAt(Look::SmallButton, kSmpLoopEndUp, 121, 555, 1, ">"),
    ButtonAt(Look::SmallButton, kSmpClone, 20, 573, 8, "Do Clone"),
    Down(4, 20, ButtonAt(Look::SmallButton, kSmpSelectAll, 142, 515, 8, "SelAll|DeSel|Delete|Crop")),
    Down(3, 20, ButtonAt(Look::SmallButton, kSmpCut, 216, 515, 5, "Cut|Copy|Paste")),

    {Look::Slider, kSmpScroll, 270, 515, 262, kTextHeight},
    ButtonAt(Look::SmallButton, kSmpShowRange, 534, 515, 7, "Range"),
    ButtonAt(Look::SmallButton, kSmpZoomOut, 600, 515, 7, "Zoom out"),
    FieldAt(kSmpLength, 670, 515, 9),

    Across(4, 66, ButtonAt(Look::SmallButton, kSmpPlay, 270, 535, 7, "Play|Play sel.|At mouse|Stop")),
    Across(4, 66, ButtonAt(Look::SmallButton, kSmpTool, 270, 555, 7, "Normalise|Fade in|Fade out|Reverse")),
    Across(4, 66, ButtonAt(Look::SmallButton, kSmpTool + 4, 270, 575, 7, "Silence|Remove DC|Swap sides|To mono")),
    ButtonAt(Look::SmallButton, kSmpCrossfade, 534, 535, 7, "Crossfade"),
    ButtonAt(Look::SmallButton, kSmpVolume, 534, 555, 7, "Volume"),
    ButtonAt(Look::SmallButton, kSmpResample, 534, 575, 7, "Resample"),
    Down(3, 20, FieldAt(NumberId(kNumberCrossfade), 604, 535, 7, Look::TextField)),
    ButtonAt(Look::SmallButton, kSmpFindLoop, 666, 535, 7, "Find end"),
    LabelAt(668, 555, "%"),
    LabelAt(668, 575, "Hz"),

    ButtonAt(Look::SmallButton, kSmpSign, 750, 515, 5, "Conv."),
    ButtonAt(Look::SmallButton, kSmpSignOfWave, 750, 535, 5, "ConvW"),
    ButtonAt(Look::SmallButton, kSmpExit, 725, 576, 8, "Exit"),
};
static_assert(kSmpTool + kWaveToolButtons == kSmpToMono, "the last row of tools ends with it");
inline constexpr auto kSampleEditorItems = Expanded<kSampleEditorRows>();
inline constexpr ScreenLayout kSampleEditorLayout = {"SampleEd", 17, 18, 0, 248, 800, 352, kSampleEditorItems};

}  // namespace vonta
