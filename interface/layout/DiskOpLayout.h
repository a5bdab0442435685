// The Disk Op: kinds of file at the left, the buttons, the list at the right.
#pragma once

#include "interface/layout/Layout.h"

namespace vonta {

constexpr int kDiskRows = 17, kDiskRowHeight = 14;

enum DiskOpControl : int {
    kDiskKind,                                   // and seven more, by kind
    kDiskSave = kDiskKind + 8, kDiskDelete, kDiskMakeDir, kDiskLoad, kDiskExit,
    kDiskUp, kDiskAll, kDiskRoot, kDiskHome,
    kDiskList, kDiskScrollUp, kDiskScroll, kDiskScrollDown, kDiskPath, kDiskName,
};

inline constexpr LayoutItem kDiskOpItems[] = {
    TitleAt(8, 3, "Disk Op"),
    ButtonAt(Look::SmallButton, kDiskKind + 0, 4, 21, 9, "Song"),
    ButtonAt(Look::SmallButton, kDiskKind + 1, 4, 39, 9, "Instrument"),
    ButtonAt(Look::SmallButton, kDiskKind + 2, 4, 57, 9, "Sample"),
    ButtonAt(Look::SmallButton, kDiskKind + 3, 4, 75, 9, "Synth"),
    ButtonAt(Look::SmallButton, kDiskKind + 4, 4, 93, 9, "Effect"),
    ButtonAt(Look::SmallButton, kDiskKind + 5, 4, 111, 9, "Visual"),
    ButtonAt(Look::SmallButton, kDiskKind + 6, 4, 129, 9, "Game"),
    ButtonAt(Look::SmallButton, kDiskKind + 7, 4, 147, 9, "Skin"),
    ButtonAt(Look::Button, kDiskSave, 85, 4, 8, "Save"),
    ButtonAt(Look::Button, kDiskDelete, 85, 27, 8, "Delete"),
    ButtonAt(Look::Button, kDiskMakeDir, 85, 50, 8, "Make Dir"),
    ButtonAt(Look::Button, kDiskLoad, 85, 73, 8, "Load"),
    ButtonAt(Look::Button, kDiskExit, 85, 96, 8, "Exit"),
    ButtonAt(Look::Button, kDiskUp, 166, 6, 3, "..\\"),
    ButtonAt(Look::Button, kDiskAll, 166, 29, 3, "*.*"),
    ButtonAt(Look::Button, kDiskRoot, 166, 52, 3, "/"),
    ButtonAt(Look::Button, kDiskHome, 166, 75, 3, "Home"),
    LabelAt(8, 167, "Directory"),
    FieldAt(kDiskPath, 8, 183, 24),
    LabelAt(8, 203, "File name"),
    FieldAt(kDiskName, 8, 219, 24, Look::TextField),
    {Look::List, kDiskList, 206, 1, 290, 243},
    ButtonAt(Look::SmallButton, kDiskScrollUp, 499, 3, 1, "^"),
    {Look::VSlider, kDiskScroll, 500, 19, 16, 206},
    ButtonAt(Look::SmallButton, kDiskScrollDown, 499, 225, 1, "v"),
};
inline constexpr ScreenLayout kDiskOpLayout = {"DiskOp", 9, 10, 0, 0, 519, 248, kDiskOpItems};

}  // namespace vonta
