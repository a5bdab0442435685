// The modal questions. Positions count from the question's corner, but for the picture of loading and saving.
#pragma once

#include "interface/layout/Layout.h"

namespace vonta {

// The program prints the answers' captions, since a mere message has but one, in the middle.
enum DialogControl : int { kDialogYes, kDialogNo };

inline constexpr LayoutItem kDialogItems[] = {
    ButtonAt(Look::Button, kDialogYes, 48, 61, 7),
    ButtonAt(Look::Button, kDialogNo, 145, 61, 7),
};
constexpr int kDialogColumns = 29, kDialogLines = 3;   // of its text
inline constexpr ScreenLayout kDialogLayout = {"Dialog", 25, 26, 280, 200, 240, 96, kDialogItems, true};

enum ZapControl : int { kZapSong, kZapPatterns, kZapInstruments, kZapEffects, kZapCancel };

inline constexpr LayoutItem kZapItems[] = {
    TitleAt(12, 6, "Zap"),
    LabelAt(12, 26, "What shall be cleared for good?"),
    ButtonAt(Look::Button, kZapSong, 11, 50, 8, "Song"),
    ButtonAt(Look::Button, kZapPatterns, 94, 50, 8, "Patterns"),
    ButtonAt(Look::Button, kZapInstruments, 11, 73, 8, "Instr."),
    ButtonAt(Look::Button, kZapEffects, 94, 73, 8, "Effects"),
    ButtonAt(Look::Button, kZapCancel, 176, 62, 8, "Nothing"),
};
inline constexpr ScreenLayout kZapLayout = {"Zap", 48, 49, 280, 200, 268, 104, kZapItems, true};

enum SaveControl : int {
    kSaveName, kSaveSuffix, kSaveNative, kSaveWav, kSaveXm, kSaveMod, kSaveOther, kSaveLossless, kSaveVorbis,
    kSaveBits8, kSaveBits16, kSaveBits24, kSaveBits32, kSaveRateDown, kSaveRateUp, kSaveRate, kSaveByParts,
    kSaveGo, kSaveCancel,
};

inline constexpr LayoutItem kSaveItems[] = {
    LabelAt(9, 3, "Save song as"),
    FieldAt(kSaveName, 100, 3, 25, Look::TextField),       // one more than a name has: for the caret
    FieldAt(kSaveSuffix, 316, 3, 4),

    ButtonAt(Look::SmallButton, kSaveNative, 5, 20, 5, "VTM"),
    LabelAt(61, 20, "Vonta song"),
    ButtonAt(Look::SmallButton, kSaveLossless, 200, 20, 9, "Lossless"),
    ButtonAt(Look::SmallButton, kSaveVorbis, 430, 20, 9, "Vorbis"),
    LabelAt(61, 40, "everything is kept"),
    LabelAt(201, 40, "samples as they are"),
    LabelAt(383, 40, "samples compressed"),

    GroupAt(2, 66, 516, 88, "Mix down to sound files"),
    ButtonAt(Look::SmallButton, kSaveWav, 5, 97, 5, "WAV"),
    ButtonAt(Look::SmallButton, kSaveBits8, 57, 97, 3, "8"),
    ButtonAt(Look::SmallButton, kSaveBits16, 114, 97, 3, "16"),
    ButtonAt(Look::SmallButton, kSaveBits24, 171, 97, 3, "24"),
    ButtonAt(Look::SmallButton, kSaveBits32, 228, 97, 3, "32"),
    LabelAt(57, 78, "Bits of a value"),
    LabelAt(57, 120, "Frames a second"),
    FieldAt(kSaveRate, 180, 120, 6),
    ButtonAt(Look::SmallButton, kSaveRateDown, 237, 120, 1, "-"),
    ButtonAt(Look::SmallButton, kSaveRateUp, 255, 120, 1, "+"),
    ButtonAt(Look::SmallButton, kSaveByParts, 290, 100, 3),
    LabelAt(328, 100, "one file for each part"),

    TitleAt(9, 160, "For other trackers"),
    ButtonAt(Look::SmallButton, kSaveXm, 5, 180, 5, "XM"),
    LabelAt(61, 180, "up to 32 channels, instruments with envelopes"),
    ButtonAt(Look::SmallButton, kSaveMod, 5, 200, 5, "MOD"),
    LabelAt(61, 200, "up to 31 short samples"),
    ButtonAt(Look::SmallButton, kSaveOther, 5, 220, 5, "-"),
    LabelAt(61, 220, "not offered"),

    ButtonAt(Look::SmallButton, kSaveGo, 306, 227, 10, "Save"),
    ButtonAt(Look::SmallButton, kSaveCancel, 395, 227, 10, "Cancel"),
};
inline constexpr ScreenLayout kSaveLayout = {"Save", 64, 65, 150, 150, 520, 256, kSaveItems, true};

enum ReportControl : int { kReportHeading, kReportText, kReportUp, kReportScroll, kReportDown, kReportOk };

inline constexpr LayoutItem kReportItems[] = {
    TitleAt(12, 6, "Report"),
    FieldAt(kReportHeading, 12, 26, 62),
    {Look::List, kReportText, 8, 48, 480, 172},
    ButtonAt(Look::SmallButton, kReportUp, 495, 48, 1, "^"),
    {Look::VSlider, kReportScroll, 495, 66, 16, 136},
    ButtonAt(Look::SmallButton, kReportDown, 495, 204, 1, "v"),
    ButtonAt(Look::Button, kReportOk, 227, 228, 7, "OK"),
};
inline constexpr ScreenLayout kReportLayout = {"Report", 389, 390, 140, 150, 520, 256, kReportItems, true};

enum NoticeControl : int { kNoticeText };

inline constexpr LayoutItem kNoticeItems[] = {
    {Look::View, kNoticeText, 4, 6, 312, 20},
};
inline constexpr ScreenLayout kNoticeLayout = {"Notice", 391, 0, 240, 284, 320, 32, kNoticeItems, true};

enum LoadingControl : int { kLoadingText };

inline constexpr LayoutItem kLoadingItems[] = {
    TitleAt(286, 284, "Please wait"),
    {Look::View, kLoadingText, 284, 302, 232, 38},
};
inline constexpr ScreenLayout kLoadingLayout = {"Loading", 55, 0, 280, 280, 240, 64, kLoadingItems};

}  // namespace vonta
