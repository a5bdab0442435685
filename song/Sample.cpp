#include "song/Sample.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "platform/Debug.h"

namespace vonta {
namespace {

constexpr std::size_t kMaxNameLength = 255;
constexpr int kMaxCloneSteps = 256;         // a ring of clones ends here, at one that has no wave
constexpr float kHalfRange = 32768.0f;      // full scale of a signed 16-bit sample

std::unique_ptr<float[]> MakeBlock(std::size_t count) {
    return std::make_unique<float[]>(SampleData::kHeadFloats + count + SampleData::kTailFloats);
}

using Parts = std::initializer_list<std::span<const float>>;

std::size_t CountOf(Parts parts) {
    std::size_t count = 0;
    for (const auto part : parts) count += part.size();
    return count;
}

// Written once from end to end: a wave may have hundreds of megabytes.
std::unique_ptr<float[]> MakeBlock(Parts parts) {
    auto block = std::make_unique_for_overwrite<float[]>(SampleData::kHeadFloats + CountOf(parts) + SampleData::kTailFloats);
    float* at = std::fill_n(block.get(), SampleData::kHeadFloats, 0.0f);
    for (const auto part : parts) at = std::ranges::copy(part, at).out;
    std::fill_n(at, SampleData::kTailFloats, 0.0f);
    return block;
}

void Install(Sample& sample, std::unique_ptr<float[]> block, std::uint32_t count, int channels) {
    sample.Unlink();
    sample.data->isClone = 0;
    sample.data->block = std::move(block);
    sample.data->count = count;
    sample.data->stereo = channels == 1 ? 0 : 1;
}

std::span<const float> Values(const Sample& sample) {
    const SampleData& source = sample.data->Source();
    return {source.Wave(), source.count};
}

bool IsSixteenBitValue(float value) {
    return value >= -kHalfRange && value < kHalfRange && value == static_cast<float>(static_cast<int>(value));
}

bool IsEightBitValue(float value) {
    return IsSixteenBitValue(value) && (static_cast<int>(value) & 0xFF) == 0;
}

// Unsigned and signed readings of one bit pattern lie half a range apart, wrapped.
float OtherSign(float value) {
    const float shifted = value + kHalfRange;
    return shifted >= kHalfRange ? shifted - 2 * kHalfRange : shifted;
}

// The parts of a wave before, in and after the selection, which an editor may have left outside the wave.
struct Selection {
    std::span<const float> before, inside, after;
};

Selection Split(const Sample& sample) {
    const auto values = Values(sample);
    const auto count = static_cast<std::int64_t>(values.size());
    const auto start = std::clamp<std::int64_t>(sample.selStart, 0, count);
    const auto end = std::clamp<std::int64_t>(sample.selEnd, start, count);
    return {values.first(static_cast<std::size_t>(start)),
            values.subspan(static_cast<std::size_t>(start), static_cast<std::size_t>(end - start)),
            values.subspan(static_cast<std::size_t>(end))};
}

}  // namespace

SampleData::~SampleData() { Unlink(); }

const SampleData& SampleData::Source() const {
    const SampleData* data = this;
    for (int step = 0; data->isClone && step < kMaxCloneSteps; ++step) {
        const auto target = data->cloneOf.lock();
        if (!target || target->parked) break;
        data = target.get();
    }
    return *data;
}

void SampleData::Unlink() {
    if (const auto target = cloneOf.lock()) {
        if (!target->isClone) {
            if (target->refCount > 0) --target->refCount;
        } else if (!target->cloneOf.expired()) {
            DebugOutput("warning: trying to unlink from a clone sample\n");
        }
    }
    cloneOf.reset();
}

void SampleData::SwapWave(SampleData& other) {
    std::swap(block, other.block);
    std::swap(count, other.count);
    std::swap(stereo, other.stereo);
    std::swap(loopStart, other.loopStart);
    std::swap(loopEnd, other.loopEnd);
    std::swap(loopType, other.loopType);
    std::swap(isClone, other.isClone);
    std::swap(cloneOf, other.cloneOf);
    std::swap(cloneId, other.cloneId);
}

void Sample::SetName(std::string_view text) { name = text.substr(0, kMaxNameLength); }

std::span<float> Sample::Allocate(std::uint32_t count, int channels) {
    Install(*this, MakeBlock(count), count, channels);
    return {data->Wave(), count};
}

void Sample::SetData(std::span<const float> values, int channels) {
    // The values may lie in the wave that is replaced: copied first.
    Install(*this, MakeBlock({values}), static_cast<std::uint32_t>(values.size()), channels);
}

void Sample::MakeClone() {
    Unlink();
    data->block.reset();
    data->count = 0;
    data->stereo = 0;
    data->isClone = 1;
}

void Sample::Link(const std::shared_ptr<SampleData>& target, std::uint32_t id) {
    MakeClone();
    data->cloneOf = target;
    data->cloneId = id;
    if (!target) return;
    if (target->isClone)
        DebugOutput("warning: trying to link to a clone sample\n");
    else
        ++target->refCount;
}

void Sample::Unlink() { data->Unlink(); }

void Sample::Validate() {
    if (!data->block) return;
    if (data->count == 0) {
        DebugOutput("sample without lenght\n");
        data->loopType = VTSAMPLE_LOOP_NONE;
        data->loopStart = data->loopEnd = 0;
        return;
    }
    if (data->stereo) return;
    // Interpolation reads past the end and must find no click there. A single value takes the zero before it.
    float* const past = data->Wave() + data->count;
    past[-1] = past[0] = past[1] = past[-2];
}

std::unique_ptr<Sample> Sample::Duplicate() const {
    auto copy = std::make_unique<Sample>();
    if (Wave()) copy->SetData(Values(*this), Channels());
    copy->data->loopStart = data->loopStart;
    copy->data->loopEnd = data->loopEnd;
    copy->data->loopType = data->loopType;
    copy->toneRel = toneRel;
    copy->fineTune = fineTune;
    copy->volume = volume;
    copy->panning = panning;
    copy->bits = bits;
    copy->name = name;
    copy->selStart = selStart;
    copy->selEnd = selEnd;
    copy->selActive = selActive;
    copy->Validate();
    return copy;
}

void Sample::ReplaceWave(std::initializer_list<std::span<const float>> parts) {
    const auto count = static_cast<std::uint32_t>(CountOf(parts));
    Install(*this, MakeBlock(parts), count, Channels());
    data->loopStart = 0;
    data->loopEnd = std::max(count, 1u) - 1;
    selActive = 0;
    selStart = 0;
    selEnd = static_cast<std::int32_t>(count) - 1;
    Validate();
}

SampleClip Sample::Copy() const {
    if (!selActive) return {};
    const auto inside = Split(*this).inside;
    return {{inside.begin(), inside.end()}, Channels()};
}

SampleClip Sample::Cut() {
    SampleClip clip = Copy();
    Delete();
    return clip;
}

void Sample::Delete() {
    if (!selActive) return;
    const Selection selection = Split(*this);
    ReplaceWave({selection.before, selection.after});
}

void Sample::Paste(const SampleClip& clip) {
    if (!selActive || clip.values.empty() || clip.channels != Channels()) return;
    if (Count() + clip.values.size() > std::numeric_limits<std::int32_t>::max()) return;   // a selection reaches its end
    const Selection selection = Split(*this);
    ReplaceWave({selection.before, clip.values, selection.inside, selection.after});
}

void Sample::Crop() {
    const auto inside = Split(*this).inside;
    if (!selActive || inside.empty()) return;
    ReplaceWave({inside});
    selEnd = -1;
}

void Sample::ToggleSign() {
    if (!Wave()) return;
    SetData(Values(*this), Channels());
    const std::span<float> values{data->Wave(), data->count};
    std::ranges::transform(values, values.begin(), OtherSign);
    Validate();
}

bool Sample::IsEightBit() const { return std::ranges::all_of(Values(*this), IsEightBitValue); }

bool Sample::IsSixteenBit() const { return std::ranges::all_of(Values(*this), IsSixteenBitValue); }

}  // namespace vonta
