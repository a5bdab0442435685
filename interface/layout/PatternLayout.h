// The pattern view, whose rows the program draws, and the scrollbar that comes below it when the song has more
// channels than are shown.
#pragma once

#include "interface/layout/Layout.h"

namespace vonta {

enum PatternScrollControl : int { kPatternLeft, kPatternRight, kPatternScroll };

inline constexpr LayoutItem kPatternItems[] = {
    {Look::View, kNoControl, 0, 248, 800, 352},
};
inline constexpr ScreenLayout kPatternLayout = {"Pattern", 13, 14, 0, 248, 800, 352, kPatternItems};

inline constexpr LayoutItem kPatternScrollItems[] = {
    ButtonAt(Look::SmallButton, kPatternLeft, 0, 584, 1, "<"),
    {Look::Slider, kPatternScroll, 16, 584, 764, 16},
    ButtonAt(Look::SmallButton, kPatternRight, 780, 584, 1, ">"),
};
inline constexpr ScreenLayout kPatternScrollLayout = {"PatScroll", 62, 63, 0, 584, 800, 16, kPatternScrollItems};

}  // namespace vonta
