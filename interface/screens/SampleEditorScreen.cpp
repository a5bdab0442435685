#include "interface/screens/SampleEditorScreen.h"

#include "interface/TrackerInterface.h"
#include "interface/widgets/Formatted.h"
#include "platform/Shared.h"

namespace vonta {
namespace {

using Self = SampleEditorScreen;

constexpr int kWorkMs = 25;                      // of a frame, while a wave is resampled
constexpr float kPercent = 100.0f;

constexpr ControlRow<Self> kRows[] = {
    {kSmpLoopType, Press<&Self::OnLoopType>, 0, kOnRelease, &Self::IsLoopType, kLoopTypes},
    {kSmpLoopStartDown, Press<&Self::OnLoopStart>, -1, kRepeating},
    {kSmpLoopStartUp, Press<&Self::OnLoopStart>, 1, kRepeating},
    {kSmpLoopEndDown, Press<&Self::OnLoopEnd>, -1, kRepeating},
    {kSmpLoopEndUp, Press<&Self::OnLoopEnd>, 1, kRepeating},
    {kSmpSelectAll, Press<&Self::OnOperation<&Self::SelectAll>>},
    {kSmpSelectNone, Press<&Self::OnOperation<&Self::SelectNone>>},
    {kSmpDelete, Press<&Self::OnOperation<&Self::Delete>>},
    {kSmpCrop, Press<&Self::OnOperation<&Self::Crop>>},
    {kSmpCut, Press<&Self::OnOperation<&Self::Cut>>},
    {kSmpCopy, Press<&Self::OnOperation<&Self::Copy>>},
    {kSmpPaste, Press<&Self::OnOperation<&Self::Paste>>},
    {kSmpSign, Press<&Self::OnOperation<&Self::ToggleSignOf>>},
    {kSmpSignOfWave, Press<&Self::OnSignOfWave>},
    {kSmpClone, Press<&Self::OnOperation<&Self::Clone>>},
    {kSmpExit, Press<&Self::OnOperation<&Self::Leave>>},
    {kSmpShowRange, Press<&Self::OnOperation<&Self::ShowSelection>>},
    {kSmpZoomOut, Press<&Self::OnOperation<&Self::ZoomOut>>, 0, kRepeating},
    {kSmpPlay, Press<&Self::OnOperation<&Self::Play>>},
    {kSmpPlayRange, Press<&Self::OnOperation<&Self::PlaySelection>>},
    {kSmpPlayAtMouse, Press<&Self::OnPlayAtMouse>, 0, kOnRelease, &Self::PlaysAtMouse},
    {kSmpStop, Press<&Self::OnOperation<&Self::Stop>>},
    {kSmpTool, Press<&Self::OnTool>, 0, kOnRelease, nullptr, kWaveTools},
    {kSmpToMono, Press<&Self::OnOperation<&Self::MixDownToMono>>},
    {kSmpVolume, Press<&Self::OnOperation<&Self::ChangeVolume>>},
    {kSmpCrossfade, Press<&Self::OnOperation<&Self::Crossfade>>},
    {kSmpFindLoop, Press<&Self::OnOperation<&Self::FindLoop>>},
    {kSmpResample, Press<&Self::OnOperation<&Self::Resample>>},
};
static_assert(kWaveTools == kWaveToolButtons);

// By action, from the first on.
constexpr int kFirstAction = 183;
constexpr void (Self::*kActions[])() = {&Self::SelectAll, &Self::ShowSelection, &Self::ZoomOut, &Self::Cut,
                                        &Self::Copy,      &Self::Paste,         &Self::Crop};

}  // namespace

Place SampleEditorScreen::At() const {
    Place at;
    at.instrument = State().pending.m_nSelected[kListInstruments] - 1;
    at.sample = State().pending.m_nSample;
    return at;
}

Editor& SampleEditorScreen::Edits() const { return State().Edits(); }

const Sample* SampleEditorScreen::OnView() const { return CurrentSong().Find({At().instrument, At().sample}); }

void SampleEditorScreen::PaintBackground() {
    WorkOn();
    if (!Ui().IsEditingText()) CommitNumber();
    if (!Regions().IsHolding()) Edits().Steps().SetGesture(0);
    const Sample* sample = OnView();
    view_.Follow(sample ? sample->data.get() : nullptr, sample ? sample->Count() : 0, sample ? sample->Channels() : 1);
    PaintLayout(kSampleEditorLayout);
    if (!sample) return;
    PaintSelection(*sample);
    PaintMarkers(*sample);
    PaintProgress();
}

void SampleEditorScreen::PaintControls() {
    if (!HasPainted()) return;
    const Sample* sample = OnView();
    if (sample) DeclareMarkers(*sample);         // before the wave, which lies beneath them
    if (sample) DeclareWave();
    DeclareScroll();
    DeclareButtons(this, kSampleEditorLayout, kRows);
    DeclareNumbers(sample);
    PrintFacts(sample);
}

bool SampleEditorScreen::OnAction(int action) {
    const int index = action - kFirstAction;
    if (index < 0 || index >= static_cast<int>(std::size(kActions))) return false;
    (this->*kActions[index])();
    return true;
}

bool SampleEditorScreen::IsLoopType(std::int32_t type) const {
    const Sample* sample = OnView();
    return sample && sample->data->loopType == type;
}

void SampleEditorScreen::OnLoopType(ControlRecord& record) {
    SetLoopType(Edits(), At(), static_cast<LoopType>(record.param));
}

void SampleEditorScreen::OnLoopStart(ControlRecord& record) { StepLoopStart(Edits(), At(), record.param); }
void SampleEditorScreen::OnLoopEnd(ControlRecord& record) { StepLoopEnd(Edits(), At(), record.param); }
void SampleEditorScreen::OnTool(ControlRecord& record) {
    UseWaveTool(Edits(), At(), static_cast<WaveTool>(record.param));
}

void SampleEditorScreen::OnPlayAtMouse(ControlRecord&) { playsAtMouse_ = !playsAtMouse_; }

void SampleEditorScreen::SelectAll() {
    if (const Sample* sample = OnView()) SelectRange(Edits(), At(), 0, sample->Count());
}

void SampleEditorScreen::SelectNone() { SelectNothing(Edits(), At()); }
void SampleEditorScreen::Delete() { DeleteRange(Edits(), At()); }
void SampleEditorScreen::Crop() { CropToRange(Edits(), At()); }
void SampleEditorScreen::Cut() { CutRange(Edits(), At(), clipboard_); }
void SampleEditorScreen::Copy() { CopyRange(CurrentSong(), At(), clipboard_); }
void SampleEditorScreen::Paste() { PasteRange(Edits(), At(), clipboard_); }
void SampleEditorScreen::ToggleSignOf() { ToggleSign(Edits(), At()); }
void SampleEditorScreen::MixDownToMono() { ToMono(Edits(), At()); }
void SampleEditorScreen::Leave() { Ui().ShowScreen(kScreenPattern); }

// A wave of the sample's own would be gone from the song: that is asked first.
void SampleEditorScreen::Clone() {
    const Sample* sample = OnView();
    if (!sample) return;
    ControlRecord none;
    if (sample->data->isClone || sample->Count() == 0) return OnCloneAnswer(none);
    Ui().Ask("  Put a clone over this wave?", Bind<&SampleEditorScreen::OnCloneAnswer>(this));
}

void SampleEditorScreen::OnCloneAnswer(ControlRecord&) {
    const SampleNumber source{State().pending.m_nSourceInstrument - 1, State().pending.m_nSourceSample};
    if (!CloneSample(Edits(), At(), source)) Ui().Tell("Choose another source sample first.");
}

void SampleEditorScreen::ShowSelection() {
    const Sample* sample = OnView();
    if (!sample || !sample->selActive || sample->selEnd <= sample->selStart) return;
    const int channels = sample->Channels();
    view_.Show(sample->selStart / channels, (sample->selEnd - sample->selStart) / channels);
}

void SampleEditorScreen::ZoomOut() { view_.Show(view_.First() - view_.Frames() / 2, 2 * view_.Frames()); }

void SampleEditorScreen::PlayFrom(std::int64_t from, std::int64_t to) {
    Stop();
    played_ = Player().QueueStretch(At().instrument, At().sample, static_cast<std::uint32_t>(from),
                                    static_cast<std::uint32_t>(to));
}

void SampleEditorScreen::Play() {
    if (const Sample* sample = OnView()) PlayFrom(0, sample->Count());
}

void SampleEditorScreen::PlaySelection() {
    const Sample* sample = OnView();
    if (sample && sample->selActive && sample->selEnd > sample->selStart) PlayFrom(sample->selStart, sample->selEnd);
}

// Unless another instrument has the channel by now.
void SampleEditorScreen::Stop() {
    if (played_ < 0) return;
    const ScopeTap& scope = Player().GetMixer().scope;
    if (scope.IsActive(played_) && scope.InstrumentOf(played_) == At().instrument) Player().KillChannel(played_);
    played_ = -1;
}

void SampleEditorScreen::ChangeVolume() {
    ScaleWave(Edits(), At(), static_cast<float>(numbers_[kNumberVolume]) / kPercent);
}

void SampleEditorScreen::Crossfade() { TellOf(CrossfadeLoop(Edits(), At(), numbers_[kNumberCrossfade])); }
void SampleEditorScreen::FindLoop() { TellOf(FindLoopEnd(Edits(), At())); }

void SampleEditorScreen::TellOf(LoopWork result) {
    switch (result) {
    case LoopWork::Done: break;
    case LoopWork::NoLoop: Ui().Tell("Set a forward loop first."); break;
    case LoopWork::NothingBefore: Ui().Tell("There is nothing before the loop."); break;
    case LoopWork::NothingFound: Ui().Tell("No end was found that fits."); break;
    }
}

void SampleEditorScreen::Resample() {
    if (!OnView() || !OnView()->Count()) return;
    work_ = ResampleWork::Begin(CurrentSong(), At(), numbers_[kNumberRate]);
    if (!work_) Ui().Tell("It has this rate, or would be too long.");
}

void SampleEditorScreen::WorkOn() {
    if (!work_) return;
    const ResampleWork::State state = work_->Work(Edits(), kWorkMs);
    if (state == ResampleWork::State::Failed) Ui().Tell("The wave was not resampled.");
    if (state != ResampleWork::State::Working) work_.reset();
}

bool SampleEditorScreen::OnEscape() { return std::exchange(work_, nullptr) != nullptr; }

}  // namespace vonta
