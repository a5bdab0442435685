#include "interface/screens/AdvancedEditScreen.h"

#include "interface/layout/AdvancedEditLayout.h"
#include "interface/TrackerInterface.h"
#include "interface/widgets/Formatted.h"

namespace vonta {
namespace {

using Self = AdvancedEditScreen;

constexpr int kAmounts[kTransposeAmounts] = {1, -1, 12, -12};   // semitones

constexpr ControlRow<Self> kRows[] = {
    {kAdvTranspose, Press<&Self::OnTranspose>, 0, kOnRelease, nullptr, kAdvReplace - kAdvTranspose},
    {kAdvReplace, Press<&Self::OnReplace>, 0, kOnRelease, nullptr, kTransposeScopes},
    {kAdvScaleFade, Press<&Self::OnOperation<&TrackerState::ScaleFade>>},
    {kAdvCopyInstrument, Press<&Self::OnOperation<&TrackerState::CopyInstrument>>},
    {kAdvExchangeInstruments, Press<&Self::OnOperation<&TrackerState::ExchangeInstruments>>},
    {kAdvDeleteInstrument, Press<&Self::OnOperation<&TrackerState::DeleteInstrument>>},
    {kAdvCopySample, Press<&Self::OnOperation<&TrackerState::CopySample>>},
    {kAdvExchangeSamples, Press<&Self::OnOperation<&TrackerState::ExchangeSamples>>},
    {kAdvDeleteSample, Press<&Self::OnOperation<&TrackerState::DeleteSample>>},
    {kAdvExit, Press<&Self::OnExit>},
};

// Where the numbers are printed.
struct NumberPlace {
    int x, y;
    const char* format;
};
constexpr NumberPlace kSourceInstrument{420, 6, "%02X"}, kSelectedInstrument{420, 20, "%02X"},
    kSourceSample{480, 6, "%02X"}, kSelectedSample{480, 20, "%02X"}, kReplaced{6, 130, "            %02X"},
    kReplacement{6, 148, "            %02X"};

}  // namespace

void AdvancedEditScreen::PaintBackground() { PaintLayout(kAdvancedEditLayout); }

void AdvancedEditScreen::PaintControls() {
    if (!HasPainted()) return;
    DeclareButtons(this, kAdvancedEditLayout, kRows);
    PrintNumbers();
}

void AdvancedEditScreen::PrintNumbers() {
    const auto print = [this](const NumberPlace& place, int value) {
        const std::string text = Formatted(place.format, static_cast<unsigned>(value));
        Text().m_fontStd.PrintColoured(place.x, place.y, Pictures().Colours().m_colText, text);
    };
    const EditValues& values = State().frame;
    print(kSourceInstrument, values.m_nSourceInstrument);
    print(kSelectedInstrument, values.m_nSelected[kListInstruments]);
    print(kSourceSample, values.m_nSourceSample);
    print(kSelectedSample, values.m_nSample);
    print(kReplaced, values.m_nSourceInstrument);
    print(kReplacement, values.m_nSelected[kListInstruments]);
}

void AdvancedEditScreen::OnTranspose(ControlRecord& record) {
    const int scope = record.param / kTransposeAmounts % kTransposeScopes;
    const bool selectedOnly = record.param < kTransposeScopes * kTransposeAmounts;
    State().Transpose(static_cast<Scope>(scope), selectedOnly, kAmounts[record.param % kTransposeAmounts]);
}

void AdvancedEditScreen::OnReplace(ControlRecord& record) { State().ReplaceInstrument(static_cast<Scope>(record.param)); }

void AdvancedEditScreen::OnExit(ControlRecord&) { Ui().ToggleScreen(kScreenAdvancedEdit); }

}  // namespace vonta
