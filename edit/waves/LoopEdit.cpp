#include <algorithm>

#include "edit/waves/WaveEdit.h"
#include "edit/waves/LoopTools.h"
#include "edit/waves/NewWave.h"

namespace vonta {
namespace {

using Point = std::uint32_t SampleData::*;

void SetPoint(Editor& editor, const Place& at, const char* name, Point point, std::int64_t floats) {
    const Editor::StepScope step(editor, name, at);
    editor.Set(DataField(at.instrument, at.sample, point), static_cast<std::uint32_t>(floats));
}

// In floats; a frame of a stereo wave is two of them, and no point stands between.
std::int64_t Whole(const Sample& sample, std::int64_t floats) {
    const std::int64_t count = sample.Count(), width = sample.Channels();
    return std::clamp<std::int64_t>(floats, 0, count) / width * width;
}

// In frames, bounded to the wave; empty if the sample does not loop.
LoopSpan LoopOf(const Sample& sample) {
    if (sample.data->loopType == VTSAMPLE_LOOP_NONE) return {};
    const std::int64_t width = sample.Channels();
    const std::int64_t end = Whole(sample, sample.data->loopEnd);
    return {std::min(Whole(sample, sample.data->loopStart), end) / width, end / width};
}

bool IsEmpty(const LoopSpan& loop) { return loop.end <= loop.start; }

}  // namespace

void SetLoopType(Editor& editor, const Place& at, LoopType type) {
    const Sample* sample = editor.GetSong().Find(NumberOf(at));
    if (!sample) return;
    const Editor::StepScope step(editor, "loop type", at);
    editor.Set(DataField(at.instrument, at.sample, &SampleData::loopType), static_cast<std::uint8_t>(type));
}

void SetLoopStart(Editor& editor, const Place& at, std::int64_t floats) {
    const Sample* sample = WithWave(editor.GetSong(), at);
    if (!sample) return;
    SetPoint(editor, at, "loop start", &SampleData::loopStart,
             std::min(Whole(*sample, floats), Whole(*sample, sample->data->loopEnd)));
}

void SetLoopEnd(Editor& editor, const Place& at, std::int64_t floats) {
    const Sample* sample = WithWave(editor.GetSong(), at);
    if (!sample) return;
    SetPoint(editor, at, "loop end", &SampleData::loopEnd,
             std::max(Whole(*sample, floats), Whole(*sample, sample->data->loopStart)));
}

void StepLoopStart(Editor& editor, const Place& at, int frames) {
    const Sample* sample = WithWave(editor.GetSong(), at);
    if (!sample) return;
    const std::int64_t width = sample->Channels(), start = sample->data->loopStart;
    const std::int64_t wanted = start + frames * width;
    if (frames > 0 && (wanted >= sample->data->loopEnd || wanted >= sample->Count() - width)) return;
    SetLoopStart(editor, at, wanted);
}

void StepLoopEnd(Editor& editor, const Place& at, int frames) {
    const Sample* sample = WithWave(editor.GetSong(), at);
    if (!sample) return;
    const std::int64_t width = sample->Channels(), end = sample->data->loopEnd;
    const std::int64_t wanted = end + frames * width;
    if (frames > 0 && wanted > sample->Count() - width) return;
    SetLoopEnd(editor, at, wanted);
}

LoopWork CrossfadeLoop(Editor& editor, const Place& at, std::int64_t frames) {
    const Sample* sample = WithWave(editor.GetSong(), at);
    if (!sample) return LoopWork::NoLoop;
    const LoopSpan loop = LoopOf(*sample);
    if (IsEmpty(loop) || sample->data->loopType != VTSAMPLE_LOOP_FORDWARD) return LoopWork::NoLoop;
    if (std::min(frames, LongestCrossfade(loop)) <= 0) return LoopWork::NothingBefore;
    auto copy = CopyOf(*sample);
    CrossfadeLoop({copy->data->Wave(), copy->data->count}, copy->Channels(), loop, frames);
    copy->Validate();
    Exchange(editor, at, "crossfade loop", std::move(copy));
    return LoopWork::Done;
}

LoopWork FindLoopEnd(Editor& editor, const Place& at) {
    const Sample* sample = WithWave(editor.GetSong(), at);
    if (!sample) return LoopWork::NoLoop;
    const LoopSpan loop = LoopOf(*sample);
    if (IsEmpty(loop)) return LoopWork::NoLoop;
    const auto end = FindLoopEnd({sample->Wave(), sample->Count()}, sample->Channels(), loop);
    if (!end) return LoopWork::NothingFound;
    SetLoopEnd(editor, at, *end * sample->Channels());
    return LoopWork::Done;
}

}  // namespace vonta
