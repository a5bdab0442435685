// The scopes panel: levels, the pattern list and the numbers of the song; below them the cells of the channels.
#pragma once

#include "interface/layout/Layout.h"

namespace vonta {

enum ScopesControl : int {
    kScopesPositionUp, kScopesPositionDown, kScopesPositionSlider, kScopesInsert, kScopesDelete,
    kScopesPatternUp, kScopesPatternDown,        // of the list's entry
    kScopesLengthUp, kScopesLengthDown, kScopesRestartUp, kScopesRestartDown,
    kScopesBpmUp, kScopesBpmDown, kScopesTicksUp, kScopesTicksDown, kScopesAddUp, kScopesAddDown,
    kScopesShownUp, kScopesShownDown, kScopesRowsUp, kScopesRowsDown,
    kScopesExpand, kScopesShrink,
    kScopesList, kScopesLength, kScopesRestart, kScopesBpm, kScopesTicks, kScopesAdd, kScopesShown, kScopesRows,   // shown only
    kScopesClock, kScopesStoppedClock, kScopesPresent,
    kScopesLeftLevel, kScopesRightLevel, kScopesLeftWave, kScopesRightWave, kScopesChannels,
};

inline constexpr LayoutItem kScopesItems[] = {
    {Look::List, kScopesList, 2, 3, 60, 72},
    ButtonAt(Look::SmallButton, kScopesPositionDown, 64, 4, 1, "-"),
    {Look::VSlider, kScopesPositionSlider, 64, 20, 16, 38},
    ButtonAt(Look::SmallButton, kScopesPositionUp, 64, 58, 1, "+"),
    ButtonAt(Look::SmallButton, kScopesInsert, 84, 7, 3, "Ins"),
    ButtonAt(Look::SmallButton, kScopesPatternUp, 84, 30, 1, "+"),
    ButtonAt(Look::SmallButton, kScopesPatternDown, 101, 30, 1, "-"),
    ButtonAt(Look::SmallButton, kScopesDelete, 84, 51, 3, "Del"),

    LabelAt(8, 77, "Length"),
    FieldAt(kScopesLength, 64, 77, 2),
    ButtonAt(Look::SmallButton, kScopesLengthUp, 84, 74, 1, "+"),
    ButtonAt(Look::SmallButton, kScopesLengthDown, 101, 74, 1, "-"),
    LabelAt(8, 93, "Restart"),
    FieldAt(kScopesRestart, 64, 93, 2),
    ButtonAt(Look::SmallButton, kScopesRestartUp, 84, 91, 1, "+"),
    ButtonAt(Look::SmallButton, kScopesRestartDown, 101, 91, 1, "-"),

    LabelAt(123, 4, "L0"),
    {Look::View, kScopesLeftLevel, 141, 5, 88, 14},
    {Look::View, kScopesLeftWave, 123, 22, 106, 24},
    LabelAt(126, 53, "BPM"),
    FieldAt(kScopesBpm, 158, 53, 3),
    ButtonAt(Look::SmallButton, kScopesBpmUp, 194, 49, 1, "+"),
    ButtonAt(Look::SmallButton, kScopesBpmDown, 211, 49, 1, "-"),
    LabelAt(126, 72, "Ticks"),
    FieldAt(kScopesTicks, 166, 72, 2),
    ButtonAt(Look::SmallButton, kScopesTicksUp, 194, 70, 1, "+"),
    ButtonAt(Look::SmallButton, kScopesTicksDown, 211, 70, 1, "-"),
    LabelAt(126, 92, "Add"),
    FieldAt(kScopesAdd, 166, 92, 2),
    ButtonAt(Look::SmallButton, kScopesAddUp, 194, 90, 1, "+"),
    ButtonAt(Look::SmallButton, kScopesAddDown, 211, 90, 1, "-"),

    LabelAt(235, 4, "R0"),
    {Look::View, kScopesRightLevel, 253, 5, 88, 14},
    {Look::View, kScopesRightWave, 235, 22, 106, 24},
    LabelAt(238, 50, "Ptn"),
    FieldAt(kScopesShown, 278, 50, 2),
    ButtonAt(Look::SmallButton, kScopesShownUp, 305, 49, 1, "+"),
    ButtonAt(Look::SmallButton, kScopesShownDown, 325, 49, 1, "-"),
    LabelAt(238, 70, "Rows"),
    FieldAt(kScopesRows, 270, 70, 3),
    ButtonAt(Look::SmallButton, kScopesRowsUp, 305, 69, 1, "+"),
    ButtonAt(Look::SmallButton, kScopesRowsDown, 325, 69, 1, "-"),
    ButtonAt(Look::SmallButton, kScopesExpand, 230, 87, 6, "Expd."),
    ButtonAt(Look::SmallButton, kScopesShrink, 286, 87, 6, "Srnk."),

    FieldAt(kScopesStoppedClock, 6, 113, 8),
    LabelAt(126, 113, "Now"),
    FieldAt(kScopesPresent, 158, 113, 6),
    LabelAt(236, 113, "Time"),
    FieldAt(kScopesClock, 273, 113, 8),
    {Look::View, kScopesChannels, 0, 133, 343, 115},
};
inline constexpr ScreenLayout kScopesLayout = {"InfoChan", 1, 2, 0, 0, 343, 248, kScopesItems};

}  // namespace vonta
