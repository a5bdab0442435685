#include "interface/screens/LeftOptionsScreen.h"

#include "interface/TrackerInterface.h"
#include "interface/layout/OptionsLayouts.h"

namespace vonta {
namespace {

using Self = LeftOptionsScreen;

constexpr ControlRow<Self> kRows[] = {
    {kLeftAdd, Press<&Self::OnChannels>, 2},
    {kLeftSub, Press<&Self::OnChannels>, -2},
    {kLeftAbout, Press<&Self::OnScreen>, kScreenAbout, kOnRelease, &Self::IsShown},
    {kLeftGame, Press<&Self::OnScreen>, kScreenGame, kOnRelease, &Self::IsShown},
    {kLeftVisual, Press<&Self::OnScreen>, kScreenVisual, kOnRelease, &Self::IsShown},
    {kLeftSongInfo, Press<&Self::OnScreen>, kScreenSongInfo, kOnRelease, &Self::IsShown},
    {kLeftZap, Press<&Self::OnZap>},
    {kLeftMultiFx, Press<&Self::OnScreen>, kScreenMultiFx, kOnRelease, &Self::IsShown},
    {kLeftExtended, Press<&Self::OnScreen>, kScreenInstrumentExtended, kOnRelease, &Self::IsShown},
    {kLeftFilter, Press<&Self::OnScreen>, kScreenInstrumentFilter, kOnRelease, &Self::IsShown},
    {kLeftAdvancedEdit, Press<&Self::OnScreen>, kScreenAdvancedEdit, kOnRelease, &Self::IsShown},
    {kLeftMixer, Press<&Self::OnScreen>, kScreenMixer, kOnRelease, &Self::IsShown},
    {kLeftTrackEditor, Press<&Self::OnScreen>, kScreenTrackEditor, kOnRelease, &Self::IsShown},
    {kLeftUndo, Press<&Self::OnUndo>},
    {kLeftRedo, Press<&Self::OnRedo>},
};

}  // namespace

void LeftOptionsScreen::PaintBackground() { PaintLayout(kLeftOptionsLayout); }

void LeftOptionsScreen::PaintControls() {
    if (HasPainted()) DeclareButtons(this, kLeftOptionsLayout, kRows);
}

void LeftOptionsScreen::OnChannels(ControlRecord& record) { State().ChangeChannels(record.param); }
void LeftOptionsScreen::OnScreen(ControlRecord& record) { Ui().ToggleScreen(record.param); }
void LeftOptionsScreen::OnUndo(ControlRecord&) { Ui().Undo(); }
void LeftOptionsScreen::OnRedo(ControlRecord&) { Ui().Redo(); }
void LeftOptionsScreen::OnZap(ControlRecord&) { Ui().AskForZap(); }
bool LeftOptionsScreen::IsShown(std::int32_t slot) const { return Ui().IsVisible(slot); }

}  // namespace vonta
