// The configuration: sound and pattern at the left, keyboard and mouse, flags; MIDI below, and what the program runs
// with at the foot.
#pragma once

#include "interface/layout/Layout.h"

namespace vonta {

enum ConfigControl : int {
    // Pairs of buttons, the value's field behind them.
    kConfigAmplificationUp, kConfigAmplificationDown, kConfigAmplification,
    kConfigLatencyUp, kConfigLatencyDown, kConfigLatency,
    kConfigInterpolationUp, kConfigInterpolationDown, kConfigInterpolation,
    kConfigMidiInUp, kConfigMidiInDown, kConfigMidiIn,
    kConfigMidiOutUp, kConfigMidiOutDown, kConfigMidiOut,
    kConfigMidiDelayUp, kConfigMidiDelayDown, kConfigMidiDelay,
    kConfigChannelsUp, kConfigChannelsDown, kConfigChannels,
    kConfigKeyRateUp, kConfigKeyRateDown, kConfigKeyRate,
    kConfigKeyDelayUp, kConfigKeyDelayDown, kConfigKeyDelay,
    kConfigMouseRateUp, kConfigMouseRateDown, kConfigMouseRate,
    kConfigMouseDelayUp, kConfigMouseDelayDown, kConfigMouseDelay,
    kConfigDecimal, kConfigHexadecimal,
    kConfigMultiRecord, kConfigMultiEdit, kConfigVelocity, kConfigAutoTune,
    kConfigFormerFiles,
    kConfigMidiInLight, kConfigMidiOutLight,
    kConfigDevice, kConfigRate, kConfigSkin, kConfigDirectory,
    kConfigSave, kConfigExit,
};

// A row of a value: its field and the two buttons behind it.
#define VONTA_CONFIG_ROW(id, fieldX, characters, buttonX, y) \
    FieldAt(id, fieldX, y, characters), PlusMinusAt(id##Up, buttonX, y, 18)

inline constexpr LayoutRow kConfigTable[] = {
    GroupAt(4, 0, 268, 82),
    TitleAt(12, 3, "Sound"),
    LabelAt(12, 21, "Amplification"),
    VONTA_CONFIG_ROW(kConfigAmplification, 144, 9, 229, 21),
    LabelAt(12, 41, "Latency"),
    VONTA_CONFIG_ROW(kConfigLatency, 144, 9, 229, 41),
    LabelAt(12, 61, "Interpolation"),
    VONTA_CONFIG_ROW(kConfigInterpolation, 144, 9, 229, 61),

    GroupAt(280, 0, 176, 82),
    TitleAt(288, 3, "Pattern"),
    LabelAt(288, 21, "Channels"),
    VONTA_CONFIG_ROW(kConfigChannels, 364, 4, 408, 21),
    LabelAt(288, 41, "Numbers"),
    ButtonAt(Look::SmallButton, kConfigDecimal, 381, 41, 3, "DEC"),
    ButtonAt(Look::SmallButton, kConfigHexadecimal, 415, 41, 3, "HEX"),

    GroupAt(464, 0, 180, 84),
    LabelAt(472, 2, "Keyboard rate"),
    VONTA_CONFIG_ROW(kConfigKeyRate, 576, 3, 608, 2),
    LabelAt(472, 22, "Keyboard delay"),
    VONTA_CONFIG_ROW(kConfigKeyDelay, 576, 3, 608, 22),
    LabelAt(472, 45, "Mouse rate"),
    VONTA_CONFIG_ROW(kConfigMouseRate, 576, 3, 608, 45),
    LabelAt(472, 65, "Mouse delay"),
    VONTA_CONFIG_ROW(kConfigMouseDelay, 576, 3, 608, 65),

    GroupAt(648, 0, 148, 64),
    ButtonAt(Look::SmallButton, kConfigMultiRecord, 652, 4, 1),
    LabelAt(674, 4, "Multichan. rec."),
    ButtonAt(Look::SmallButton, kConfigMultiEdit, 652, 24, 1),
    LabelAt(674, 24, "Multichan. edit"),
    ButtonAt(Look::SmallButton, kConfigVelocity, 652, 44, 1),
    LabelAt(674, 44, "Record velocity"),
    GroupAt(648, 84, 148, 40),
    TitleAt(656, 86, "Samples"),
    ButtonAt(Look::SmallButton, kConfigAutoTune, 652, 104, 1),
    LabelAt(674, 104, "Tune to C-4"),
    GroupAt(648, 128, 148, 40),
    TitleAt(656, 130, "Saving"),
    ButtonAt(Look::SmallButton, kConfigFormerFiles, 652, 148, 1),
    LabelAt(674, 148, "Keep last five"),

    GroupAt(4, 86, 640, 66),
    LabelAt(12, 88, "MIDI input"),
    {Look::View, kConfigMidiInLight, 94, 90, 11, 12},
    VONTA_CONFIG_ROW(kConfigMidiIn, 112, 26, 332, 88),
    LabelAt(376, 88, "notes are recorded from here"),
    LabelAt(12, 109, "MIDI output"),
    {Look::View, kConfigMidiOutLight, 94, 111, 11, 12},
    VONTA_CONFIG_ROW(kConfigMidiOut, 112, 26, 332, 109),
    LabelAt(376, 109, "whose delay is set below"),
    LabelAt(12, 131, "Output delay"),
    VONTA_CONFIG_ROW(kConfigMidiDelay, 112, 13, 229, 131),
    LabelAt(376, 131, "until its notes meet the sound"),

    GroupAt(4, 156, 640, 88),
    LabelAt(12, 162, "Sound device"),
    FieldAt(kConfigDevice, 112, 162, 65),
    LabelAt(12, 182, "Sample rate"),
    FieldAt(kConfigRate, 112, 182, 13),
    LabelAt(12, 202, "Skin"),
    FieldAt(kConfigSkin, 112, 202, 26),
    LabelAt(12, 222, "Works in"),
    FieldAt(kConfigDirectory, 112, 222, 65),

    ButtonAt(Look::Button, kConfigSave, 718, 198, 8, "Save"),
    ButtonAt(Look::Button, kConfigExit, 718, 223, 8, "Exit"),
};
#undef VONTA_CONFIG_ROW
inline constexpr auto kConfigItems = Expanded<kConfigTable>();
inline constexpr ScreenLayout kConfigLayout = {"Config", 15, 16, 0, 0, 800, 248, kConfigItems};

}  // namespace vonta
