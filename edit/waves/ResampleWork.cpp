#include "edit/waves/ResampleWork.h"

#include <cmath>
#include <utility>

#include "edit/waves/NewWave.h"
#include "formats/samples/SampleSetup.h"

namespace vonta {
namespace {

std::span<float> RoomFor(Sample& made, const Sample& sample, double ratio) {
    const auto width = static_cast<std::uint32_t>(sample.Channels());
    const auto frames = static_cast<std::uint32_t>(Resampler::FramesMade(sample.Count() / width, ratio));
    return made.Allocate(frames * width, sample.Channels());
}

}  // namespace

double RateOf(const Sample& sample) {
    constexpr double kReferenceRate = 8363, kFineOfOctave = 12 * 128;
    return kReferenceRate * std::exp2((sample.toneRel * 128 + sample.fineTune) / kFineOfOctave);
}

std::unique_ptr<ResampleWork> ResampleWork::Begin(const Song& song, const Place& at, int rate) {
    const Sample* sample = WithWave(song, at);
    if (!sample || sample->Count() == 0 || rate < kLeastRate || rate > kMostRate) return nullptr;
    Sample tuned;                                // as near as a tuning comes to the rate
    TuneSample(tuned, static_cast<std::uint32_t>(rate));
    const double ratio = RateOf(tuned) / RateOf(*sample);
    const auto width = static_cast<std::uint64_t>(sample->Channels());
    if (ratio == 1 || Resampler::FramesMade(sample->Count() / width, ratio) * width > kMostFloats) return nullptr;
    return std::unique_ptr<ResampleWork>(new ResampleWork(*sample, at, tuned.toneRel, tuned.fineTune, ratio));
}

ResampleWork::ResampleWork(const Sample& sample, const Place& at, std::int8_t toneRel, std::int8_t fineTune,
                           double ratio)
    : at_(at), wave_(sample.Wave()), count_(sample.Count()), toneRel_(toneRel), fineTune_(fineTune), ratio_(ratio),
      made_(std::make_unique<Sample>()),
      resampler_({wave_, count_}, sample.Channels(), ratio, RoomFor(*made_, sample, ratio)) {}

bool ResampleWork::IsOf(const Song& song) const {
    const Sample* sample = song.Find(NumberOf(at_));
    return sample && sample->Wave() == wave_ && sample->Count() == count_ && sample->Channels() == made_->Channels();
}

ResampleWork::State ResampleWork::Work(Editor& editor, int milliseconds) {
    if (!IsOf(editor.GetSong())) return State::Failed;
    if (resampler_.Work(milliseconds)) return State::Working;
    if (resampler_.HasFailed()) return State::Failed;
    Finish(editor);
    return State::Done;
}

void ResampleWork::Finish(Editor& editor) {
    MovePoints(*made_, *editor.GetSong().Find(NumberOf(at_)), ratio_);
    made_->Validate();
    const Editor::StepScope step(editor, "resample", at_);
    const Hold hold(editor.Player());            // no note between the wave and its tuning
    editor.SetWave(at_.instrument, at_.sample, std::move(made_));
    editor.Set(SampleField(at_.instrument, at_.sample, &Sample::toneRel), toneRel_);
    editor.Set(SampleField(at_.instrument, at_.sample, &Sample::fineTune), fineTune_);
}

}  // namespace vonta
