// The two columns of buttons that open screens, play and stop.
#pragma once

#include "interface/layout/Layout.h"

namespace vonta {

enum LeftOptionsControl : int {
    kLeftAdd, kLeftSub, kLeftAbout, kLeftGame, kLeftVisual, kLeftSongInfo, kLeftZap, kLeftMultiFx, kLeftExtended,
    kLeftFilter, kLeftAdvancedEdit, kLeftMixer, kLeftTrackEditor, kLeftUndo, kLeftRedo,
};

inline constexpr LayoutItem kLeftOptionsItems[] = {
    ButtonAt(Look::SmallButton, kLeftAdd, 343, 4, 4, "Add"),
    ButtonAt(Look::SmallButton, kLeftSub, 387, 4, 4, "Sub"),
    ButtonAt(Look::SmallButton, kLeftAbout, 343, 22, 10, "About"),
    ButtonAt(Look::SmallButton, kLeftGame, 343, 39, 10, "FunGame"),
    ButtonAt(Look::SmallButton, kLeftVisual, 343, 56, 10, "FunVisual"),
    ButtonAt(Look::SmallButton, kLeftSongInfo, 343, 73, 10, "Song Info"),
    ButtonAt(Look::SmallButton, kLeftZap, 343, 90, 10, "Zap"),
    ButtonAt(Look::SmallButton, kLeftMultiFx, 343, 107, 10, "MultiFX"),
    ButtonAt(Look::SmallButton, kLeftExtended, 343, 124, 10, "I.E. Ext."),
    ButtonAt(Look::SmallButton, kLeftFilter, 343, 141, 10, "Instr.Flt"),
    ButtonAt(Look::SmallButton, kLeftAdvancedEdit, 343, 158, 10, "Adv. Edit"),
    ButtonAt(Look::SmallButton, kLeftMixer, 343, 175, 10, "Mixer"),
    ButtonAt(Look::SmallButton, kLeftTrackEditor, 343, 192, 10, "Track Ed."),
    ButtonAt(Look::SmallButton, kLeftUndo, 343, 209, 4, "Undo"),
    ButtonAt(Look::SmallButton, kLeftRedo, 387, 209, 4, "Redo"),
};
inline constexpr ScreenLayout kLeftOptionsLayout = {"OpLeft", 3, 4, 343, 0, 88, 248, kLeftOptionsItems};

enum RightOptionsControl : int {
    kRightPlaySong, kRightPlayPattern, kRightStop, kRightRecordSong, kRightRecordPattern, kRightDiskOp,
    kRightInstrumentEditor, kRightSampleEditor, kRightSynth, kRightConfig, kRightHelp, kRightCpuScan, kRightExit,
};

inline constexpr LayoutItem kRightOptionsItems[] = {
    TitleAt(451, 4, "Vonta"),
    ButtonAt(Look::SmallButton, kRightPlaySong, 431, 22, 10, "Play song"),
    ButtonAt(Look::SmallButton, kRightPlayPattern, 431, 39, 10, "Play ptn."),
    ButtonAt(Look::SmallButton, kRightStop, 431, 56, 10, "Stop"),
    ButtonAt(Look::SmallButton, kRightRecordSong, 431, 73, 10, "Rec song"),
    ButtonAt(Look::SmallButton, kRightRecordPattern, 431, 90, 10, "Rec ptn"),
    ButtonAt(Look::SmallButton, kRightDiskOp, 431, 107, 10, "Disc op"),
    ButtonAt(Look::SmallButton, kRightInstrumentEditor, 431, 124, 10, "Instr. Ed"),
    ButtonAt(Look::SmallButton, kRightSampleEditor, 431, 141, 10, "Sample Ed"),
    ButtonAt(Look::SmallButton, kRightSynth, 431, 158, 10, "Synth"),
    ButtonAt(Look::SmallButton, kRightConfig, 431, 175, 10, "Config"),
    ButtonAt(Look::SmallButton, kRightHelp, 431, 192, 10, "Help"),
    ButtonAt(Look::SmallButton, kRightCpuScan, 431, 209, 10, "CPU Scan"),
    ButtonAt(Look::SmallButton, kRightExit, 431, 226, 10, "Exit"),
};
inline constexpr ScreenLayout kRightOptionsLayout = {"OpRight", 5, 6, 431, 0, 88, 248, kRightOptionsItems};

}  // namespace vonta
