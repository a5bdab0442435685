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

inline constexpr LayoutRow kScopesTable[] = {
    {Look::List, kScopesList, 2, 3, 60, 72},
    ButtonAt(Look::SmallButton, kScopesPositionDown, 64, 4, 1, "-"),
    {Look::VSlider, kScopesPositionSlider, 64, 20, 16, 38},
    ButtonAt(Look::SmallButton, kScopesPositionUp, 64, 58, 1, "+"),
    ButtonAt(Look::SmallButton, kScopesInsert, 84, 7, 3, "Ins"),
    PlusMinusAt(kScopesPatternUp, 84, 30, 17),
    ButtonAt(Look::SmallButton, kScopesDelete, 84, 51, 3, "Del"),

    LabelAt(8, 77, "Length"),
    FieldAt(kScopesLength, 64, 77, 2),
    PlusMinusAt(kScopesLengthUp, 84, 74, 17),
    LabelAt(8, 93, "Restart"),
    FieldAt(kScopesRestart, 64, 93, 2),
    PlusMinusAt(kScopesRestartUp, 84, 91, 17),

    LabelAt(123, 4, "L0"),
    {Look::View, kScopesLeftLevel, 141, 5, 88, 14},
    {Look::View, kScopesLeftWave, 123, 22, 106, 24},
    LabelAt(126, 53, "BPM"),
    FieldAt(kScopesBpm, 158, 53, 3),
    PlusMinusAt(kScopesBpmUp, 194, 49, 17),
    LabelAt(126, 72, "Ticks"),
    FieldAt(kScopesTicks, 166, 72, 2),
    PlusMinusAt(kScopesTicksUp, 194, 70, 17),
    LabelAt(126, 92, "Add"),
    FieldAt(kScopesAdd, 166, 92, 2),
    PlusMinusAt(kScopesAddUp, 194, 90, 17),

    LabelAt(235, 4, "R0"),
    {Look::View, kScopesRightLevel, 253, 5, 88, 14},
    {Look::View, kScopesRightWave, 235, 22, 106, 24},
    LabelAt(238, 50, "Ptn"),
    FieldAt(kScopesShown, 278, 50, 2),
    PlusMinusAt(kScopesShownUp, 305, 49, 20),
    LabelAt(238, 70, "Rows"),
    FieldAt(kScopesRows, 270, 70, 3),
    PlusMinusAt(kScopesRowsUp, 305, 69, 20),
    ButtonAt(Look::SmallButton, kScopesExpand, 230, 87, 6, "Expd."),
    ButtonAt(Look::SmallButton, kScopesShrink, 286, 87, 6, "Srnk."),

    FieldAt(kScopesStoppedClock, 6, 113, 8),
    LabelAt(126, 113, "Now"),
    FieldAt(kScopesPresent, 158, 113, 6),
    LabelAt(236, 113, "Time"),
    FieldAt(kScopesClock, 273, 113, 8),
    {Look::View, kScopesChannels, 0, 133, 343, 115},
};
inline constexpr auto kScopesItems = Expanded<kScopesTable>();
inline constexpr ScreenLayout kScopesLayout = {"InfoChan", 1, 2, 0, 0, 343, 248, kScopesItems};

}  // namespace vonta
