// The Disk Op: kinds of file at the left, the buttons, the list at the right.
#pragma once

#include "interface/layout/Layout.h"

namespace vonta {

constexpr int kDiskRows = 17, kDiskRowHeight = 14;
constexpr int kDiskKinds = 8;                    // of files

enum DiskOpControl : int {
    kDiskKind,                                   // by kind
    kDiskSave = kDiskKind + kDiskKinds, kDiskDelete, kDiskMakeDir, kDiskLoad, kDiskExit,
    kDiskUp, kDiskAll, kDiskRoot, kDiskHome,
    kDiskList, kDiskScrollUp, kDiskScroll, kDiskScrollDown, kDiskPath, kDiskName,
};

inline constexpr LayoutRow kDiskOpTable[] = {
    TitleAt(8, 3, "Disk Op"),
    Down(kDiskKinds, 18, ButtonAt(Look::SmallButton, kDiskKind, 4, 21, 9,
                                  "Song|Instrument|Sample|Synth|Effect|Visual|Game|Skin")),
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
inline constexpr auto kDiskOpItems = Expanded<kDiskOpTable>();
inline constexpr ScreenLayout kDiskOpLayout = {"DiskOp", 9, 10, 0, 0, 519, 248, kDiskOpItems};

}  // namespace vonta
