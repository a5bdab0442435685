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

}  // namespace

void VisualScreen::PaintBackground() { PaintLayout(kVisualLayout); }

void VisualScreen::PaintControls() {
    if (!HasPainted()) return;
    const LayoutItem& picture = ItemOf(kVisualLayout, kVisualPicture);
    Text().m_fontStd.Print(picture.x + 16, picture.y + picture.height / 2 - 8, "No visual plug-in is loaded.");
    DeclareButtons(this, kVisualLayout, kRows);
}

void VisualScreen::OnLoad(ControlRecord&) { Ui().DiskOp().ShowKind(FileKind::Visual); }
void VisualScreen::OnExit(ControlRecord&) { Ui().ToggleScreen(kScreenVisual); }

}  // namespace vonta
