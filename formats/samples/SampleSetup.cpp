#include "formats/samples/SampleSetup.h"

#include <algorithm>
#include <cmath>

namespace vonta {
namespace {

constexpr double kPerReferenceRate = 0.000119574317; // 1/8363, rounded up so that 8363 Hz is no hair below its note
constexpr double kSemitone = 64.0;                   // linear periods
constexpr double kOctave = 12 * kSemitone;
constexpr double kReferencePitch = kReferenceNote * kSemitone;

}  // namespace

RateTuning TuneToRate(std::uint32_t sampleRate) {
    if (sampleRate == 0) return {};
    const double pitch = kReferencePitch + kOctave * std::log2(sampleRate * kPerReferenceRate);
    const int note = static_cast<int>(pitch / kSemitone);
    return {note, static_cast<int>((pitch - kSemitone * note) * 2)};
}

void TuneSample(Sample& sample, std::uint32_t sampleRate) {
    const RateTuning tuning = TuneToRate(sampleRate);
    sample.toneRel = ToSignedByte(tuning.note - kReferenceNote);
    sample.fineTune = ToSignedByte(tuning.fineTune);
}

std::int8_t ToSignedByte(int value) { return static_cast<std::int8_t>(std::clamp(value, -128, 127)); }

void SetLoopPoints(Sample& sample, std::uint64_t start, std::uint64_t end) {
    SampleData& data = *sample.data;
    data.loopEnd = static_cast<std::uint32_t>(std::min<std::uint64_t>(end, data.count));
    data.loopStart = static_cast<std::uint32_t>(std::min<std::uint64_t>(start, data.loopEnd));
}

void CutLoop(Sample& sample) {
    SampleData& data = *sample.data;
    SetLoopPoints(sample, data.loopStart, data.loopEnd);
    if (data.loopStart == data.loopEnd) data.loopType = VTSAMPLE_LOOP_NONE;
}

void LoopForward(Sample& sample) {
    SampleData& data = *sample.data;
    data.loopType = VTSAMPLE_LOOP_FORDWARD;
    if (data.loopStart == data.loopEnd) SetLoopPoints(sample, 0, data.count);
}

}  // namespace vonta
