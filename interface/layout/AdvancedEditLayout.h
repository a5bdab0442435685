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

// The four scopes of a column and an amount. Column 0 takes the selected instrument's notes, column 1 all.
constexpr LayoutRow TransposeRow(int column, int amount) {
    constexpr int kX[] = {72, 95, 119, 160}, kUnits[] = {1, 2, 4, 4};
    constexpr std::string_view kCaptions[] = {"up", "dn", "12up", "12dn"};
    return {ButtonAt(Look::SmallButton, TransposeId(column, 0, amount), 135 * column + kX[amount], 30, kUnits[amount],
                     kCaptions[amount]),
            kTransposeScopes, 0, 18, kTransposeAmounts};
}

inline constexpr LayoutRow kAdvancedEditTable[] = {
    GroupAt(2, 8, 336, 98, "Transpose"),
    LabelAt(72, 13, "Instrument"),
    LabelAt(207, 13, "All"),
    Down(kTransposeScopes, 18, LabelAt(8, 30, "Track|Pattern|Song|Block")),
    TransposeRow(0, 0), TransposeRow(0, 1), TransposeRow(0, 2), TransposeRow(0, 3),
    TransposeRow(1, 0), TransposeRow(1, 1), TransposeRow(1, 2), TransposeRow(1, 3),

    GroupAt(2, 122, 144, 90, "Replace instr."),
    LabelAt(8, 130, "Source"),
    FieldAt(kAdvReplaced, 102, 130, 2),
    LabelAt(8, 148, "Selected"),
    FieldAt(kAdvReplacement, 102, 148, 2),
    Across(2, 70, ButtonAt(Look::Button, kAdvReplace, 6, 165, 7, "Track|Pattern")),
    Across(2, 70, ButtonAt(Look::Button, kAdvReplace + 2, 6, 187, 7, "Song|Block")),

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
inline constexpr auto kAdvancedEditItems = Expanded<kAdvancedEditTable>();
inline constexpr ScreenLayout kAdvancedEditLayout = {"AdvEdit", 29, 30, 0, 0, 519, 248, kAdvancedEditItems};

}  // namespace vonta
