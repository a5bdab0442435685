// Pictures that move: visual and game plug-ins, and what is told about the program.
#pragma once

#include "interface/layout/Layout.h"

namespace vonta {

enum VisualControl : int { kVisualLoad, kVisualExit, kVisualPicture };

inline constexpr LayoutItem kVisualItems[] = {
    {Look::View, kVisualPicture, 14, 4, 320, 240},
    TitleAt(343, 5, "Visual"),
    ButtonAt(Look::Button, kVisualLoad, 343, 25, 9, "Load"),
    ButtonAt(Look::Button, kVisualExit, 356, 225, 8, "Exit"),
};
inline constexpr ScreenLayout kVisualLayout = {"FunVis", 33, 34, 0, 0, 431, 248, kVisualItems};

enum GameControl : int { kGamePlay, kGameReset, kGameLoad, kGameAbout, kGameHelp, kGameExit, kGamePicture };

inline constexpr LayoutItem kGameItems[] = {
    TitleAt(16, 7, "Game"),
    {Look::View, kGamePicture, 203, 2, 506, 242},
    ButtonAt(Look::Button, kGamePlay, 15, 198, 8),          // the program prints "Play" or "Pause"
    ButtonAt(Look::Button, kGameReset, 15, 223, 8, "Reset"),
    ButtonAt(Look::Button, kGameLoad, 718, 157, 8, "Load"),
    ButtonAt(Look::Button, kGameAbout, 718, 179, 8, "About"),
    ButtonAt(Look::Button, kGameHelp, 718, 201, 8, "Help"),
    ButtonAt(Look::Button, kGameExit, 718, 223, 8, "Exit"),
};
inline constexpr ScreenLayout kGameLayout = {"FunGame", 39, 40, 0, 0, 800, 248, kGameItems};

// The picture of the effect is as large as its view: see AboutScreen.h for the files behind it.
enum AboutControl : int { kAboutExit, kAboutPicture, kAboutCredits, kAboutScroller };

inline constexpr LayoutItem kAboutItems[] = {
    {Look::View, kAboutPicture, 8, 8, 240, 208},
    {Look::List, kAboutCredits, 256, 8, 168, 208},
    {Look::Field, kAboutScroller, 8, 226, 352, 16},
    ButtonAt(Look::Button, kAboutExit, 368, 224, 6, "Exit"),
};
inline constexpr ScreenLayout kAboutLayout = {"About", 19, 20, 0, 0, 431, 248, kAboutItems};

}  // namespace vonta
