#include "formats/native/WaveData.h"

#include <algorithm>

#include "formats/native/VorbisData.h"
#include "formats/samples/WaveBytes.h"

namespace vonta {
namespace {

constexpr std::uint32_t kPackedSizeBytes = 4;        // a packed size counts its own field
constexpr float kWaveScale = 32768.0f;

constexpr std::int64_t FloatBytes(std::size_t floats) {
    return static_cast<std::int64_t>(floats) * std::int64_t{sizeof(float)};
}

// The forms that hold plain values, one row each.
struct PlainForm {
    WaveForm form;
    std::uint32_t bytes;                             // of one value
    void (*write)(Writer& out, std::span<const float> wave);
    void (*read)(Reader& in, std::span<float> wave);
};

template <class Raw>
constexpr PlainForm MakeForm(WaveForm form) {
    return {form, sizeof(Raw), WriteWaveValues<Raw>, ReadWaveValues<Raw>};
}

constexpr PlainForm kPlainForms[] = {
    MakeForm<float>(WaveForm::Float),
    MakeForm<std::int16_t>(WaveForm::SixteenBit),
    MakeForm<std::int8_t>(WaveForm::EightBit),
};

const PlainForm& FindPlainForm(WaveForm form) {
    return *std::ranges::find(kPlainForms, form, &PlainForm::form);
}

WaveForm SmallestForm(const Sample& sample) {
    if (sample.IsEightBit()) return WaveForm::EightBit;
    return sample.IsSixteenBit() ? WaveForm::SixteenBit : WaveForm::Float;
}

template <class Body>
void WriteChunk(ChunkWriter& chunks, WaveForm form, const WaveHead& head, Body&& body) {
    chunks.Chunk(ChunkKind{kSampleDataType, static_cast<std::uint16_t>(form)}.Id(), [&] {
        RecordWriter io(chunks.Out());
        WaveHeadRecord(io, head);
        body();
    });
}

std::uint32_t WholeFrames(std::int64_t floats, std::uint8_t channels) {
    return static_cast<std::uint32_t>(channels == 1 ? floats : floats / 2 * 2);
}

void ReportShort(NativeLoad& load, const Sample& sample, const WaveHead& head, std::uint32_t kept) {
    if (kept < head.count)
        load.report.Add("Sample \"%s\": the file holds %u of its %u values.", sample.name.c_str(), kept,
                        head.count);
}

void ReadPlain(NativeLoad& load, Sample& sample, const WaveHead& head, const PlainForm& form) {
    Reader& in = load.chunks.In();
    const std::int64_t held = std::min<std::int64_t>(head.count, in.Remaining() / form.bytes);
    const std::uint32_t kept = WholeFrames(held, head.channels);
    form.read(in, sample.Allocate(kept, head.channels));
    in.Skip((static_cast<std::int64_t>(head.count) - kept) * form.bytes);
    ReportShort(load, sample, head, kept);
}

std::vector<std::uint8_t> ReadPacked(NativeLoad& load) {
    std::uint32_t size = kPackedSizeBytes;
    load.Fields().U32(size);
    Reader& in = load.chunks.In();
    const auto bytes =
        std::min<std::int64_t>(std::max(size, kPackedSizeBytes) - kPackedSizeBytes, in.Remaining());
    std::vector<std::uint8_t> packed(static_cast<std::size_t>(bytes));
    in.Bytes(packed);
    return packed;
}

// A few bytes of a stream can decode to hours of silence: what all of them take together is bounded.
bool MayUnpack(NativeLoad& load, std::int64_t bytes) {
    if (bytes > load.unpackAllowance) return false;
    load.unpackAllowance -= bytes;
    return true;
}

// A stream may turn out shorter than its packets promise.
std::uint32_t Decode(std::span<const std::uint8_t> packed, int channels, std::uint32_t count, Sample& sample) {
    const std::span<float> wave = sample.Allocate(count, channels);
    const std::size_t stored = DecodeVorbis(packed, channels, wave);
    if (stored < wave.size()) {
        const std::vector<float> held(wave.begin(), wave.begin() + static_cast<std::ptrdiff_t>(stored));
        sample.SetData(held, channels);
    }
    return static_cast<std::uint32_t>(stored);
}

void ReadVorbis(NativeLoad& load, Sample& sample, const WaveHead& head) {
    const auto packed = ReadPacked(load);
    if (head.channels != 1 && head.channels != 2) {
        load.report.Add("Sample \"%s\": a packed wave of %d channels is left out.", sample.name.c_str(), head.channels);
        return;
    }
    const std::uint64_t held = MeasureVorbis(packed) * head.channels;
    const auto kept =
        WholeFrames(static_cast<std::int64_t>(std::min<std::uint64_t>(head.count, held)), head.channels);
    if (!MayUnpack(load, FloatBytes(kept))) {
        load.report.Add("Sample \"%s\" is left out: packed waves of a file may take %d MiB together.",
                        sample.name.c_str(), static_cast<int>(kMaxUnpackedBytes >> 20));
        return;
    }
    ReportShort(load, sample, head, Decode(packed, head.channels, kept, sample));
}

// Why a wave is not to be packed, or null. What comes back from a stream lies in the range of 16 bits.
const char* ReasonToStayPlain(std::span<const float> wave, const WavePacking& packing) {
    const auto isBeyond = [](float value) { return !(value >= -kWaveScale && value <= kWaveScale); };
    if (FloatBytes(wave.size()) > packing.allowance) return "the file has enough packed waves";
    if (std::ranges::any_of(wave, isBeyond)) return "packing would clip it";
    return nullptr;
}

// The packed form of the wave, if it is wanted and is known to come back at its full length; else empty.
std::vector<std::uint8_t> Pack(const Sample& sample, std::span<const float> wave, WavePacking& packing) {
    if (!packing.wanted) return {};
    const char* reason = ReasonToStayPlain(wave, packing);
    if (!reason) {
        const auto channels = static_cast<std::uint64_t>(sample.Channels());
        auto packed = EncodeVorbis(wave, sample.Channels());
        if (CountVorbis(packed) * channels == wave.size() && MeasureVorbis(packed) * channels == wave.size()) {
            packing.allowance -= FloatBytes(wave.size());
            return packed;
        }
        reason = "packing would change its length";
    }
    if (packing.report) packing.report->Add("Sample \"%s\" is not compressed: %s", sample.name.c_str(), reason);
    return {};
}

}  // namespace

void WriteWave(ChunkWriter& chunks, const Sample& sample, WavePacking& packing) {
    if (!sample.Wave() || packing.leftOut) return;
    const std::span wave(sample.Wave(), sample.Count());
    const WaveHead head{sample.Count(), static_cast<std::uint8_t>(sample.Channels())};
    const auto packed = Pack(sample, wave, packing);
    if (packed.empty()) {
        const PlainForm& form = FindPlainForm(SmallestForm(sample));
        return WriteChunk(chunks, form.form, head, [&] { form.write(chunks.Out(), wave); });
    }
    WriteChunk(chunks, WaveForm::Vorbis, head, [&] {
        chunks.Out().U32(static_cast<std::uint32_t>(packed.size()) + kPackedSizeBytes);
        chunks.Out().Bytes(packed);
    });
}

void ReadWave(NativeLoad& load, Sample& sample, WaveForm form) {
    WaveHead head;
    auto io = load.Fields();
    WaveHeadRecord(io, head);
    if (form == WaveForm::Vorbis) ReadVorbis(load, sample, head);
    else ReadPlain(load, sample, head, FindPlainForm(form));
}

}  // namespace vonta
