#include "interface/screens/GameScreen.h"

#include "interface/TrackerInterface.h"
#include "interface/layout/FunLayouts.h"
#include "interface/screens/DiskOpScreen.h"

namespace vonta {
namespace {

constexpr ControlRow<GameScreen> kRows[] = {
    {kGamePlay, Press<&GameScreen::OnNothing>},
    {kGameReset, Press<&GameScreen::OnNothing>},
    {kGameLoad, Press<&GameScreen::OnLoad>},
    {kGameExit, Press<&GameScreen::OnExit>},
};

constexpr const char* kNothingLoaded = "No game plug-in is loaded.";

}  // namespace

void GameScreen::PaintBackground() { PaintLayout(kGameLayout); }

void GameScreen::PaintControls() {
    if (!HasPainted()) return;
    PrintCentred(ItemOf(kGameLayout, kGamePicture), Text().m_fontStd, kNothingLoaded);
    DeclareButtons(this, kGameLayout, kRows);
    const LayoutItem& play = ItemOf(kGameLayout, kGamePlay);
    Text().m_fontSmall.Print(play.x + (play.width - 4 * Text().m_fontSmall.Advance()) / 2, play.y + 2, "Play");
}

void GameScreen::OnLoad(ControlRecord&) { Ui().DiskOp().ShowKind(FileKind::Game); }
void GameScreen::OnExit(ControlRecord&) { Ui().ToggleScreen(kScreenGame); }

}  // namespace vonta
