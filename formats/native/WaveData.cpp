#include "formats/native/WaveData.h"

#include <algorithm>

#include "formats/native/VorbisData.h"
#include "formats/samples/WaveBytes.h"

namespace vonta {
namespace {

constexpr std::uint32_t kPackedSizeBytes = 4;        // a packed size counts its own field

// A Vorbis stream can claim hours of silence in a few bytes. Music comes nowhere near this ratio of memory to
// file; what goes beyond it draws on the allowance of the load.
constexpr std::int64_t kMusicRatio = 32;

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

// Whether a wave of so many bytes may come out of this stream.
bool MayUnpack(NativeLoad& load, std::int64_t bytes, std::size_t packed) {
    if (bytes <= static_cast<std::int64_t>(packed) * kMusicRatio) return true;
    if (bytes > load.unpackAllowance) return false;
    load.unpackAllowance -= bytes;
    return true;
}

void ReadVorbis(NativeLoad& load, Sample& sample, const WaveHead& head) {
    const auto packed = ReadPacked(load);
    const int channels = head.channels == 1 ? 1 : 2;
    const std::uint64_t held = MeasureVorbis(packed) * static_cast<std::uint64_t>(channels);
    const auto kept =
        WholeFrames(static_cast<std::int64_t>(std::min<std::uint64_t>(head.count, held)), head.channels);
    if (!MayUnpack(load, static_cast<std::int64_t>(kept) * std::int64_t{sizeof(float)}, packed.size())) {
        load.report.Add("Sample \"%s\": its packed wave claims %u values and is left out.", sample.name.c_str(),
                        kept);
        return;
    }
    DecodeVorbis(packed, channels, sample.Allocate(kept, channels));
    ReportShort(load, sample, head, kept);
}

}  // namespace

void WriteWave(ChunkWriter& chunks, const Sample& sample, bool compress) {
    if (!sample.Wave()) return;
    const std::span wave(sample.Wave(), sample.Count());
    const WaveHead head{sample.Count(), static_cast<std::uint8_t>(sample.Channels())};
    const auto packed = compress ? EncodeVorbis(wave, sample.Channels()) : std::vector<std::uint8_t>{};
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
