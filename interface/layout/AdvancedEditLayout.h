// Advanced edit: transpose and replace over a scope, fade a block, copy and exchange instruments and samples.
#pragma once

#include "interface/layout/Layout.h"

namespace vonta {

constexpr int kTransposeScopes = 4, kTransposeAmounts = 4, kTransposeColumns = 2;

enum AdvancedEditControl : int {
    kAdvTranspose,                               // by column, scope and amount: see TransposeId
    kAdvReplace = kAdvTranspose + kTransposeColumns * kTransposeScopes * kTransposeAmounts,   // by scope
    kAdvScaleFade = kAdvReplace + kTransposeScopes,
    kAdvCopyInstrument, kAdvExchangeInstruments, kAdvDeleteInstrument,
    kAdvCopySample, kAdvExchangeSamples, kAdvDeleteSample,
    kAdvExit,
    kAdvSourceInstrument, kAdvSelectedInstrument, kAdvSourceSample, kAdvSelectedSample,      // shown only
    kAdvReplaced, kAdvReplacement,
};

constexpr int TransposeId(int column, int scope, int amount) {
    return kAdvTranspose + (column * kTransposeScopes + scope) * kTransposeAmounts + amount;
}

// Column 0 takes the selected instrument's notes, column 1 all.
constexpr LayoutItem TransposeAt(int column, int scope, int amount) {
    constexpr int kX[] = {72, 95, 119, 160}, kUnits[] = {1, 2, 4, 4};
    constexpr std::string_view kCaptions[] = {"up", "dn", "12up", "12dn"};
    return ButtonAt(Look::SmallButton, TransposeId(column, scope, amount), 135 * column + kX[amount], 30 + 18 * scope,
                    kUnits[amount], kCaptions[amount]);
}

inline constexpr LayoutItem kAdvancedEditItems[] = {
    GroupAt(2, 8, 336, 98, "Transpose"),
    LabelAt(72, 13, "Instrument"),
    LabelAt(207, 13, "All"),
    LabelAt(8, 30, "Track"),
    LabelAt(8, 48, "Pattern"),
    LabelAt(8, 66, "Song"),
    LabelAt(8, 84, "Block"),
    TransposeAt(0, 0, 0), TransposeAt(0, 0, 1), TransposeAt(0, 0, 2), TransposeAt(0, 0, 3),
    TransposeAt(0, 1, 0), TransposeAt(0, 1, 1), TransposeAt(0, 1, 2), TransposeAt(0, 1, 3),
    TransposeAt(0, 2, 0), TransposeAt(0, 2, 1), TransposeAt(0, 2, 2), TransposeAt(0, 2, 3),
    TransposeAt(0, 3, 0), TransposeAt(0, 3, 1), TransposeAt(0, 3, 2), TransposeAt(0, 3, 3),
    TransposeAt(1, 0, 0), TransposeAt(1, 0, 1), TransposeAt(1, 0, 2), TransposeAt(1, 0, 3),
    TransposeAt(1, 1, 0), TransposeAt(1, 1, 1), TransposeAt(1, 1, 2), TransposeAt(1, 1, 3),
    TransposeAt(1, 2, 0), TransposeAt(1, 2, 1), TransposeAt(1, 2, 2), TransposeAt(1, 2, 3),
    TransposeAt(1, 3, 0), TransposeAt(1, 3, 1), TransposeAt(1, 3, 2), TransposeAt(1, 3, 3),

    GroupAt(2, 122, 144, 90, "Replace instr."),
    LabelAt(8, 130, "Source"),
    FieldAt(kAdvReplaced, 102, 130, 2),
    LabelAt(8, 148, "Selected"),
    FieldAt(kAdvReplacement, 102, 148, 2),
    ButtonAt(Look::Button, kAdvReplace + 0, 6, 165, 7, "Track"),
    ButtonAt(Look::Button, kAdvReplace + 1, 76, 165, 7, "Pattern"),
    ButtonAt(Look::Button, kAdvReplace + 2, 6, 187, 7, "Song"),
    ButtonAt(Look::Button, kAdvReplace + 3, 76, 187, 7, "Block"),

    GroupAt(156, 172, 88, 40, "Block"),
    ButtonAt(Look::Button, kAdvScaleFade, 163, 185, 8, "ScaleFade"),

    LabelAt(350, 6, "Source"),
    {Look::Field, kAdvSourceInstrument, 416, 7, 24, 13},
    LabelAt(447, 6, "smp."),
    {Look::Field, kAdvSourceSample, 476, 7, 24, 13},
    LabelAt(350, 20, "Selected"),
    {Look::Field, kAdvSelectedInstrument, 416, 21, 24, 13},
    LabelAt(447, 20, "smp."),
    {Look::Field, kAdvSelectedSample, 476, 21, 24, 13},
    ButtonAt(Look::Button, kAdvCopyInstrument, 350, 38, 7, "Copy ins."),
    ButtonAt(Look::Button, kAdvExchangeInstruments, 350, 60, 7, "Xchg. ins."),
    ButtonAt(Look::Button, kAdvDeleteInstrument, 350, 82, 7, "Del. ins."),
    ButtonAt(Look::Button, kAdvCopySample, 416, 38, 7, "Copy smp."),
    ButtonAt(Look::Button, kAdvExchangeSamples, 416, 60, 7, "Xchg. smp."),
    ButtonAt(Look::Button, kAdvDeleteSample, 416, 82, 7, "Del. smp."),
    ButtonAt(Look::Button, kAdvExit, 442, 223, 7, "Exit"),
};
inline constexpr ScreenLayout kAdvancedEditLayout = {"AdvEdit", 29, 30, 0, 0, 519, 248, kAdvancedEditItems};

}  // namespace vonta
