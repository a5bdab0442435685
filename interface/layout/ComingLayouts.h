// Screens whose controls are still to come: their pictures with a title.
#pragma once

#include "interface/layout/Layout.h"

namespace vonta {

inline constexpr LayoutItem kInstrumentEditorItems[] = {TitleAt(8, 256, "Instrument editor")};
inline constexpr ScreenLayout kInstrumentEditorLayout =
    {"InstrEd", 11, 12, 0, 248, 800, 352, kInstrumentEditorItems};

inline constexpr LayoutItem kInstrumentFilterItems[] = {TitleAt(8, 256, "Instrument filter")};
inline constexpr ScreenLayout kInstrumentFilterLayout =
    {"InstrFlt", 21, 22, 0, 248, 800, 352, kInstrumentFilterItems};

inline constexpr LayoutItem kMultiFxItems[] = {TitleAt(8, 256, "MultiFX")};
inline constexpr ScreenLayout kMultiFxLayout = {"MultiFX", 35, 36, 0, 248, 800, 352, kMultiFxItems};

inline constexpr LayoutItem kInstrumentExtendedItems[] = {TitleAt(8, 256, "Instrument editor, extended")};
inline constexpr ScreenLayout kInstrumentExtendedLayout =
    {"InsEExt", 37, 38, 0, 248, 800, 352, kInstrumentExtendedItems};

inline constexpr LayoutItem kMixerItems[] = {TitleAt(8, 256, "Mixer")};
inline constexpr ScreenLayout kMixerLayout = {"Mixer", 41, 42, 0, 248, 800, 352, kMixerItems};

inline constexpr LayoutItem kTrackEditorItems[] = {TitleAt(550, 256, "Track editor")};
inline constexpr ScreenLayout kTrackEditorLayout = {"ChanEd", 60, 61, 542, 248, 258, 352, kTrackEditorItems};

inline constexpr LayoutItem kConsoleItems[] = {TitleAt(8, 256, "Console")};
inline constexpr ScreenLayout kConsoleLayout = {"Console", 387, 388, 0, 248, 800, 352, kConsoleItems};

}  // namespace vonta
