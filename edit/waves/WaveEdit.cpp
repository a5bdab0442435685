#include "edit/waves/WaveEdit.h"

#include <algorithm>
#include <utility>

#include "edit/waves/NewWave.h"

namespace vonta {
namespace {

// By one of the operations of Sample that work on a selection.
void EditRange(Editor& editor, const Place& at, const char* name, void (Sample::*operation)()) {
    const Sample* sample = WithWave(editor.GetSong(), at);
    if (!sample || !sample->selActive) return;
    auto view = ViewOf(*sample);
    (view.get()->*operation)();
    if (!view->data->isClone) Exchange(editor, at, name, std::move(view));
}

// The selection in whole frames inside the wave; all of it without one.
std::span<float> StretchOf(Sample& sample) {
    const std::span<float> all{sample.data->Wave(), sample.data->count};
    if (!sample.selActive) return all;
    const std::int64_t width = sample.Channels(), count = sample.data->count / width * width;
    const std::int64_t start = std::clamp<std::int64_t>(sample.selStart, 0, count) / width * width;
    const std::int64_t end = std::clamp<std::int64_t>(sample.selEnd, start, count) / width * width;
    return all.subspan(static_cast<std::size_t>(start), static_cast<std::size_t>(end - start));
}

void MirrorLoop(SampleData& data) {
    const std::uint32_t start = std::min(data.loopStart, data.count), end = std::clamp(data.loopEnd, start, data.count);
    data.loopStart = data.count - end;
    data.loopEnd = data.count - start;
}

}  // namespace

void SelectRange(Editor& editor, const Place& at, std::int64_t start, std::int64_t end) {
    Sample* sample = editor.GetSong().Find(NumberOf(at));
    if (!sample) return;
    const std::int64_t width = sample->Channels(), count = sample->Count();
    sample->selStart = static_cast<std::int32_t>(std::clamp<std::int64_t>(start, 0, count) / width * width);
    sample->selEnd = static_cast<std::int32_t>(std::clamp<std::int64_t>(end, 0, count) / width * width);
    sample->selActive = 1;
}

void SelectNothing(Editor& editor, const Place& at) {
    if (Sample* sample = editor.GetSong().Find(NumberOf(at))) sample->selActive = 0;
}

bool CopyRange(const Song& song, const Place& at, SampleClip& clip) {
    const Sample* sample = WithWave(song, at);
    if (!sample || !sample->selActive) return false;
    clip = sample->Copy();
    return true;
}

bool CutRange(Editor& editor, const Place& at, SampleClip& clip) {
    if (!CopyRange(editor.GetSong(), at, clip)) return false;
    EditRange(editor, at, "cut sample", &Sample::Delete);
    return true;
}

void DeleteRange(Editor& editor, const Place& at) { EditRange(editor, at, "delete sample range", &Sample::Delete); }

void CropToRange(Editor& editor, const Place& at) { EditRange(editor, at, "crop sample", &Sample::Crop); }

void PasteRange(Editor& editor, const Place& at, const SampleClip& clip) {
    const Sample* sample = editor.GetSong().Find(NumberOf(at));
    if (!sample || clip.values.empty()) return;
    std::unique_ptr<Sample> made;
    if (sample->Count() == 0) {
        made = std::make_unique<Sample>();
        made->SetData(clip.values, clip.channels);
        made->data->loopEnd = made->data->count - 1;
        made->Validate();
    } else {
        made = ViewOf(*sample);
        made->Paste(clip);
    }
    if (!made->data->isClone) Exchange(editor, at, "paste sample", std::move(made));
}

void UseWaveTool(Editor& editor, const Place& at, WaveTool tool) {
    const Sample* sample = WithWave(editor.GetSong(), at);
    if (!sample) return;
    auto copy = CopyOf(*sample);
    if (!Apply(tool, StretchOf(*copy), copy->Channels())) return;
    if (tool == WaveTool::Reverse && !copy->selActive) MirrorLoop(*copy->data);
    copy->Validate();
    Exchange(editor, at, NameOf(tool), std::move(copy));
}

void ScaleWave(Editor& editor, const Place& at, float factor) {
    const Sample* sample = WithWave(editor.GetSong(), at);
    if (!sample || factor == 1.0f) return;
    auto copy = CopyOf(*sample);
    Scale(StretchOf(*copy), factor);
    copy->Validate();
    Exchange(editor, at, "change volume of sample", std::move(copy));
}

void ToggleSign(Editor& editor, const Place& at) {
    const Sample* sample = WithWave(editor.GetSong(), at);
    if (!sample) return;
    auto view = ViewOf(*sample);
    view->ToggleSign();
    Exchange(editor, at, "change sign of sample", std::move(view));
}

void ToMono(Editor& editor, const Place& at) {
    const Sample* sample = WithWave(editor.GetSong(), at);
    if (!sample || sample->Channels() != 2) return;
    auto mono = std::make_unique<Sample>();
    MixToMono({sample->Wave(), sample->Count()}, mono->Allocate(sample->Count() / 2, 1));
    MovePoints(*mono, *sample, 1);
    mono->Validate();
    Exchange(editor, at, "sample to mono", std::move(mono));
}

bool CloneSample(Editor& editor, const Place& at, SampleNumber source) {
    const Song& song = editor.GetSong();
    const SampleNumber target = song.CloneTarget(source);
    const Sample* sample = song.Find(NumberOf(at));
    const Sample* played = song.Find(target);
    if (!sample || !played || NumberOf(at) == source || NumberOf(at) == target) return false;
    const Editor::StepScope step(editor, "clone sample", at);
    editor.Set(SampleField(at.instrument, at.sample, &Sample::fineTune), played->fineTune);
    editor.Set(SampleField(at.instrument, at.sample, &Sample::toneRel), played->toneRel);
    editor.Set(SampleField(at.instrument, at.sample, &Sample::panning), played->panning);
    editor.Set(SampleField(at.instrument, at.sample, &Sample::volume), played->volume);
    auto clone = std::make_unique<Sample>();
    clone->Link(played->data, target.CloneId());
    clone->data->loopStart = played->data->loopStart;
    clone->data->loopEnd = played->data->loopEnd;
    clone->data->loopType = played->data->loopType;
    editor.SetWave(at.instrument, at.sample, std::move(clone));
    return true;
}

}  // namespace vonta
