#include "interface/screens/VisualScreen.h"

#include "interface/TrackerInterface.h"
#include "interface/layout/FunLayouts.h"
#include "interface/screens/DiskOpScreen.h"

namespace vonta {
namespace {

constexpr ControlRow<VisualScreen> kRows[] = {
    {kVisualLoad, Press<&VisualScreen::OnLoad>},
    {kVisualExit, Press<&VisualScreen::OnExit>},
};

constexpr const char* kNothingLoaded = "No visual plug-in is loaded.";

}  // namespace

void VisualScreen::PaintBackground() { PaintLayout(kVisualLayout); }

void VisualScreen::PaintControls() {
    if (!HasPainted()) return;
    PrintCentred(ItemOf(kVisualLayout, kVisualPicture), Text().m_fontStd, kNothingLoaded);
    DeclareButtons(this, kVisualLayout, kRows);
}

void VisualScreen::OnLoad(ControlRecord&) { Ui().DiskOp().ShowKind(FileKind::Visual); }
void VisualScreen::OnExit(ControlRecord&) { Ui().ToggleScreen(kScreenVisual); }

}  // namespace vonta
