#include "edit/Samples.h"

#include <algorithm>
#include <utility>

#include "edit/Instruments.h"

namespace vonta {
namespace {

const Sample* Find(const Song& song, int slot, int sample) {
    const Instrument* instrument = song.GetInstrument(slot);
    return instrument ? instrument->GetSample(sample) : nullptr;
}

bool IsPlace(const Place& at) {
    return at.instrument >= 0 && at.instrument < kMaxInstruments && at.sample >= 0 && at.sample < kMaxSamples;
}

void Install(Editor& editor, const Place& at, std::unique_ptr<Sample> sample) {
    EnsureInstrument(editor, at, at.instrument);
    editor.SetSample(at.instrument, at.sample, std::move(sample));
}

}  // namespace

Sample& EnsureSample(Editor& editor, const Place& at, int instrument, int sample) {
    instrument = std::clamp(instrument, 0, kMaxInstruments - 1);
    sample = std::clamp(sample, 0, kMaxSamples - 1);
    const Editor::StepScope step(editor, kStepNewSample, at);
    const Instrument& owner = EnsureInstrument(editor, at, instrument);
    if (!owner.GetSample(sample)) {
        auto empty = std::make_unique<Sample>();
        empty->volume = kMaxVolume;
        editor.SetSample(instrument, sample, std::move(empty));
    }
    return *owner.GetSample(sample);
}

bool IsSampleSlotEmpty(const Song& song, int instrument, int sample) {
    const Sample* former = Find(song, instrument, sample);
    return !former || former->Count() == 0;
}

void LoadIntoSlot(Editor& editor, const Place& at, std::unique_ptr<Sample> sample, const std::string& instrumentName) {
    if (!IsPlace(at)) return;
    const Editor::StepScope step(editor, kStepLoadSample, at);
    sample->volume = kMaxVolume;
    if (!IsSampleSlotEmpty(editor.GetSong(), at.instrument, at.sample))
        sample->toneRel = Find(editor.GetSong(), at.instrument, at.sample)->toneRel;
    Install(editor, at, std::move(sample));
    if (at.sample == 0) editor.Set(InstrumentField(at.instrument, &Instrument::name), instrumentName);
}

void CopySample(Editor& editor, const Place& at, int sourceInstrument, int sourceSample) {
    const Sample* source = Find(editor.GetSong(), sourceInstrument, sourceSample);
    if (!IsPlace(at) || !source || source == Find(editor.GetSong(), at.instrument, at.sample)) return;
    const Editor::StepScope step(editor, kStepCopySample, at);
    Install(editor, at, source->Duplicate());
}

void ExchangeSamples(Editor& editor, const Place& at, int sourceInstrument, int sourceSample) {
    const Editor::StepScope step(editor, kStepSwapSamples, at);
    editor.ExchangeSamples(sourceInstrument, sourceSample, at.instrument, at.sample);
}

void DeleteSample(Editor& editor, const Place& at) {
    const Editor::StepScope step(editor, kStepDeleteSample, at);
    editor.SetSample(at.instrument, at.sample, nullptr);
}

}  // namespace vonta
