// The screens that show text: help, song information, and what the processor is busy with.
#pragma once

#include "interface/layout/Layout.h"

namespace vonta {

constexpr int kTextRowHeight = 14;               // of the lists of text

enum HelpControl : int { kHelpEffects, kHelpLimits, kHelpQuestions, kHelpExit, kHelpText, kHelpUp, kHelpDown, kHelpScroll };

inline constexpr LayoutItem kHelpItems[] = {
    TitleAt(8, 7, "Help"),
    ButtonAt(Look::SmallButton, kHelpEffects, 5, 29, 10, "Effects"),
    ButtonAt(Look::SmallButton, kHelpLimits, 5, 49, 10, "Limits"),
    ButtonAt(Look::SmallButton, kHelpQuestions, 5, 69, 10, "Questions"),
    ButtonAt(Look::Button, kHelpExit, 5, 223, 8, "Exit"),
    {Look::List, kHelpText, 104, 4, 672, 240},
    ButtonAt(Look::SmallButton2, kHelpUp, 782, 4, 1, "^"),
    {Look::VSlider, kHelpScroll, 782, 19, 16, 208},
    ButtonAt(Look::SmallButton2, kHelpDown, 782, 230, 1, "v"),
};
inline constexpr ScreenLayout kHelpLayout = {"Help", 27, 28, 0, 0, 800, 248, kHelpItems};

enum SongInfoControl : int {
    kInfoExit, kInfoText, kInfoUp, kInfoDown, kInfoScroll,
    kInfoTitle, kInfoFile, kInfoChannels, kInfoPatterns, kInfoInstruments, kInfoEffects, kInfoSynths,
};

inline constexpr LayoutItem kSongInfoItems[] = {
    TitleAt(8, 7, "Song information"),
    LabelAt(8, 30, "Title"),
    FieldAt(kInfoTitle, 80, 30, 24),
    LabelAt(8, 50, "File"),
    FieldAt(kInfoFile, 80, 50, 24),
    GroupAt(4, 112, 276, 106, "The song has"),
    FieldAt(kInfoChannels, 80, 122, 3),
    LabelAt(120, 122, "channels"),
    FieldAt(kInfoPatterns, 80, 140, 3),
    LabelAt(120, 140, "patterns"),
    FieldAt(kInfoInstruments, 80, 158, 3),
    LabelAt(120, 158, "instruments"),
    FieldAt(kInfoEffects, 80, 177, 3),
    LabelAt(120, 177, "effects in use"),
    FieldAt(kInfoSynths, 80, 196, 3),
    LabelAt(120, 196, "synths in use"),
    ButtonAt(Look::Button, kInfoExit, 6, 223, 8, "Exit"),
    LabelAt(292, 3, "Comment"),
    {Look::List, kInfoText, 288, 19, 488, 225},
    ButtonAt(Look::SmallButton2, kInfoUp, 782, 19, 1, "^"),
    {Look::VSlider, kInfoScroll, 782, 35, 16, 192},
    ButtonAt(Look::SmallButton2, kInfoDown, 782, 230, 1, "v"),
};
inline constexpr ScreenLayout kSongInfoLayout = {"SongInfo", 31, 32, 0, 0, 800, 248, kSongInfoItems};

enum CpuScanControl : int { kCpuExit, kCpuPlayer, kCpuEffects };

inline constexpr LayoutItem kCpuScanItems[] = {
    TitleAt(8, 7, "CPU scan"),
    LabelAt(84, 7, "percent of one core"),
    {Look::List, kCpuPlayer, 8, 28, 196, 214},
    {Look::List, kCpuEffects, 212, 28, 212, 190},
    ButtonAt(Look::Button, kCpuExit, 355, 225, 8, "Exit"),
};
inline constexpr ScreenLayout kCpuScanLayout = {"CPUScan", 23, 24, 0, 0, 431, 248, kCpuScanItems};

}  // namespace vonta
