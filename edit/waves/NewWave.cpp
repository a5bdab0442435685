#include "edit/waves/NewWave.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace vonta {
namespace {

// The data at the end of a chain of clones.
std::shared_ptr<SampleData> PlayedBy(const Sample& sample) {
    std::shared_ptr<SampleData> data = sample.data;
    while (data->isClone && data.get() != &sample.data->Source()) {
        auto target = data->cloneOf.lock();
        if (!target) break;
        data = std::move(target);
    }
    return data;
}

}  // namespace

SampleNumber NumberOf(const Place& at) { return {at.instrument, at.sample}; }

const Sample* WithWave(const Song& song, const Place& at) {
    const Sample* sample = song.Find(NumberOf(at));
    return sample && sample->Wave() ? sample : nullptr;
}

std::unique_ptr<Sample> ViewOf(const Sample& sample) {
    auto view = std::make_unique<Sample>();
    view->Link(PlayedBy(sample), 0);
    view->data->loopStart = sample.data->loopStart;
    view->data->loopEnd = sample.data->loopEnd;
    view->data->loopType = sample.data->loopType;
    view->selStart = sample.selStart;
    view->selEnd = sample.selEnd;
    view->selActive = sample.selActive;
    return view;
}

std::unique_ptr<Sample> CopyOf(const Sample& sample) {
    auto copy = ViewOf(sample);
    copy->SetData({sample.Wave(), sample.Count()}, sample.Channels());
    return copy;
}

void MovePoints(Sample& copy, const Sample& from, double ratio) {
    const double width = from.Channels(), newWidth = copy.Channels();
    const auto moved = [&](double floats) {
        const double frames = std::floor(floats / width * ratio + 0.5);
        return std::clamp(frames * newWidth, 0.0, static_cast<double>(copy.data->count));
    };
    copy.data->loopStart = static_cast<std::uint32_t>(moved(from.data->loopStart));
    copy.data->loopEnd = static_cast<std::uint32_t>(moved(from.data->loopEnd));
    copy.data->loopType = from.data->loopType;
    copy.selStart = static_cast<std::int32_t>(moved(from.selStart));
    copy.selEnd = static_cast<std::int32_t>(moved(from.selEnd));
    copy.selActive = from.selActive;
}

void Exchange(Editor& editor, const Place& at, const char* name, std::unique_ptr<Sample> wave) {
    const Editor::StepScope step(editor, name, at);
    editor.SetWave(at.instrument, at.sample, std::move(wave));
}

}  // namespace vonta
