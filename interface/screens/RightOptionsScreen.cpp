#include "interface/screens/RightOptionsScreen.h"

#include "interface/TrackerInterface.h"
#include "interface/layout/OptionsLayouts.h"
#include "interface/screens/DiskOpScreen.h"

namespace vonta {
namespace {

using Self = RightOptionsScreen;

constexpr std::int32_t kPlaySong = 0;

constexpr ControlRow<Self> kRows[] = {
    {kRightPlaySong, Press<&Self::OnPlay>, kPlaySong},
    {kRightPlayPattern, Press<&Self::OnPlay>, kPlayPattern},
    {kRightStop, Press<&Self::OnStop>},
    {kRightRecordSong, Press<&Self::OnRecord>, kPlaySong},
    {kRightRecordPattern, Press<&Self::OnRecord>, kPlayPattern},
    {kRightDiskOp, Press<&Self::OnDiskOp>, kScreenDiskOp, kOnRelease, &Self::IsShown},
    {kRightInstrumentEditor, Press<&Self::OnScreen>, kScreenInstrumentEditor, kOnRelease, &Self::IsShown},
    {kRightSampleEditor, Press<&Self::OnScreen>, kScreenSampleEditor, kOnRelease, &Self::IsShown},
    {kRightSynth, Press<&Self::OnScreen>, kScreenSynth, kOnRelease, &Self::IsShown},
    {kRightConfig, Press<&Self::OnScreen>, kScreenConfig, kOnRelease, &Self::IsShown},
    {kRightHelp, Press<&Self::OnScreen>, kScreenHelp, kOnRelease, &Self::IsShown},
    {kRightCpuScan, Press<&Self::OnScreen>, kScreenCpuScan, kOnRelease, &Self::IsShown},
    {kRightExit, Press<&Self::OnExit>},
};

}  // namespace

void RightOptionsScreen::PaintBackground() { PaintLayout(kRightOptionsLayout); }

void RightOptionsScreen::PaintControls() {
    if (HasPainted()) DeclareButtons(this, kRightOptionsLayout, kRows);
}

void RightOptionsScreen::OnPlay(ControlRecord& record) { Player().Play(static_cast<std::uint8_t>(record.param)); }
void RightOptionsScreen::OnRecord(ControlRecord& record) { State().Play(static_cast<std::uint8_t>(record.param), true); }
void RightOptionsScreen::OnStop(ControlRecord&) { State().StopSong(); }
void RightOptionsScreen::OnScreen(ControlRecord& record) { Ui().ToggleScreen(record.param); }
void RightOptionsScreen::OnDiskOp(ControlRecord&) { Ui().ToggleScreen(kScreenDiskOp); }
void RightOptionsScreen::OnExit(ControlRecord&) { Ui().AskToQuit(); }
bool RightOptionsScreen::IsShown(std::int32_t slot) const { return Ui().IsVisible(slot); }

}  // namespace vonta
