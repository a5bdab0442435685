#include "edit/Instruments.h"

#include <algorithm>
#include <utility>

namespace vonta {
namespace {

std::unique_ptr<Instrument> NewInstrument() {
    auto instrument = std::make_unique<Instrument>();
    auto sample = std::make_unique<Sample>();
    sample->volume = kMaxVolume;
    instrument->AddSample(std::move(sample));
    instrument->MapAllKeys();
    return instrument;
}

// Sounds and looks as the original does. A plug-in that the original holds for itself is not copied.
std::unique_ptr<Instrument> CloneOf(const Instrument& source) {
    auto clone = source.Duplicate();
    for (int i = 0; i < kUsedSamples; ++i)
        if (const Sample* sample = source.GetSample(i)) clone->GetSample(i)->volume = sample->volume;
    clone->keyZones = source.keyZones;
    clone->busMask = source.busMask;
    clone->eq = source.eq;
    clone->pan = source.pan;
    clone->transpose = source.transpose;
    clone->fineTune = source.fineTune;
    clone->useSynth = source.useSynth;
    clone->groupOn = source.groupOn;
    clone->groupOutput = source.groupOutput;
    clone->color = source.color;
    return clone;
}

// What belongs to the place in the song rather than to the sound that is loaded into it.
void KeepOfSlot(const Instrument& former, Instrument& next) {
    next.muted = former.muted;
    if (next.color == Instrument{}.color) next.color = former.color;
}

}  // namespace

Instrument& EnsureInstrument(Editor& editor, const Place& at, int slot) {
    slot = std::clamp(slot, 0, kMaxInstruments - 1);
    if (!editor.GetSong().GetInstrument(slot)) {
        const Editor::StepScope step(editor, kStepNewInstrument, at);
        editor.SetInstrument(slot, NewInstrument());
    }
    return *editor.GetSong().GetInstrument(slot);
}

void LoadIntoSlot(Editor& editor, const Place& at, std::unique_ptr<Instrument> instrument) {
    const Editor::StepScope step(editor, kStepLoadInstrument, at);
    if (const Instrument* former = editor.GetSong().GetInstrument(at.instrument)) KeepOfSlot(*former, *instrument);
    editor.SetInstrument(at.instrument, std::move(instrument));
}

void CopyInstrument(Editor& editor, const Place& at, int source) {
    const Instrument* from = editor.GetSong().GetInstrument(source);
    if (!from || source == at.instrument) return;
    const Editor::StepScope step(editor, kStepCopyInstrument, at);
    editor.SetInstrument(at.instrument, CloneOf(*from));
}

void ExchangeInstruments(Editor& editor, const Place& at, int source) {
    const Editor::StepScope step(editor, kStepSwapInstruments, at);
    editor.ExchangeInstruments(source, at.instrument);
}

void DeleteInstrument(Editor& editor, const Place& at) {
    const Editor::StepScope step(editor, kStepDeleteInstrument, at);
    editor.SetInstrument(at.instrument, nullptr);
}

void SetInstrumentColour(Editor& editor, const Place& at, std::uint32_t rgb) {
    const Editor::StepScope step(editor, kStepColour, at);
    editor.Set(InstrumentField(at.instrument, &Instrument::color), rgb);
}

}  // namespace vonta
