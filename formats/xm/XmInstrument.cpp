#include "formats/xm/XmInstrument.h"

#include <algorithm>
#include <array>
#include <limits>
#include <span>
#include <vector>

#include "formats/samples/SampleSetup.h"
#include "formats/streams/Record.h"

namespace vonta {
namespace {

constexpr std::size_t kBlockBytes = 16 * 1024;       // of a wave, decoded at once; even

void ApplyEnvelope(const XmEnvelope& from, Envelope& to) {
    to.enabled = (from.flags & kXmEnvelopeOn) != 0;
    to.sustainOn = (from.flags & kXmEnvelopeSustain) != 0;
    to.loopOn = (from.flags & kXmEnvelopeLoop) != 0;
    to.numPoints = from.numPoints;
    to.sustainPoint = from.sustain;
    to.loopStart = from.loopStart;
    to.loopEnd = from.loopEnd;
    for (std::size_t i = 0; i < from.points.size(); ++i) to.points[i] = {from.points[i][0], from.points[i][1]};
}

bool IsSixteenBit(const XmSampleHeader& header) { return (header.type & kXmSixteenBit) != 0; }

std::unique_ptr<Sample> MakeSample(const XmSampleHeader& header) {
    auto sample = std::make_unique<Sample>();
    const std::uint32_t frameBytes = IsSixteenBit(header) ? 2 : 1;
    const std::uint64_t loopEnd = std::uint64_t{header.loopStart} + header.loopLength;
    SampleData& data = *sample->data;
    sample->SetName(header.name);
    data.loopStart = header.loopStart / frameBytes;
    data.loopEnd = static_cast<std::uint32_t>(
        std::min<std::uint64_t>(loopEnd / frameBytes, std::numeric_limits<std::uint32_t>::max()));
    if ((header.type & kXmLoopMask) <= VTSAMPLE_LOOP_PINGPONG) data.loopType = header.type & kXmLoopMask;
    sample->toneRel = header.relativeNote;
    sample->fineTune = header.fineTune;
    sample->volume = static_cast<std::uint8_t>(std::min(header.volume * 2, 128));
    sample->panning = header.panning;
    return sample;
}

// The delta code of the format: each value is the difference to the frame before it.
class DeltaDecoder {
public:
    void EightBit(std::span<const std::uint8_t> in, float* out) {
        auto sum = static_cast<std::uint8_t>(sum_);
        for (const std::uint8_t delta : in) {
            sum = static_cast<std::uint8_t>(sum + delta);
            *out++ = static_cast<float>(static_cast<std::int8_t>(sum)) * kXmEightBitScale;
        }
        sum_ = sum;
    }
    void SixteenBit(std::span<const std::uint8_t> in, float* out) {
        std::uint16_t sum = sum_;
        for (std::size_t i = 0; i + 1 < in.size(); i += 2) {
            sum = static_cast<std::uint16_t>(sum + (in[i] | in[i + 1] << 8));
            *out++ = static_cast<float>(static_cast<std::int16_t>(sum));
        }
        sum_ = sum;
    }

private:
    std::uint16_t sum_ = 0;
};

void ReadWave(Reader& in, std::uint32_t bytes, bool sixteenBit, std::span<float> out) {
    std::array<std::uint8_t, kBlockBytes> block;
    DeltaDecoder decoder;
    float* to = out.data();
    while (bytes > 0) {
        const std::span<std::uint8_t> part(block.data(), std::min<std::size_t>(bytes, block.size()));
        in.Bytes(part);
        if (sixteenBit)
            decoder.SixteenBit(part, to);
        else
            decoder.EightBit(part, to);
        to += sixteenBit ? part.size() / 2 : part.size();
        bytes -= static_cast<std::uint32_t>(part.size());
    }
}

// As much of the wave as there is; false if that is not all.
bool LoadWave(Reader& in, const XmSampleHeader& header, Sample& sample) {
    const auto bytes = static_cast<std::uint32_t>(std::min<std::int64_t>(header.length, in.Remaining()));
    const bool sixteenBit = IsSixteenBit(header);
    if (header.length != 0) sample.bits = sixteenBit ? 16 : 8;
    if (bytes > 0) ReadWave(in, bytes, sixteenBit, sample.Allocate(sixteenBit ? bytes / 2 : bytes, 1));
    if (bytes < header.length) CutLoop(sample);
    return bytes == header.length;
}

// The headers of the samples that are kept; `dropped` is the size of the other waves.
std::vector<XmSampleHeader> ReadHeaders(Reader& in, int count, std::uint32_t headerSize, std::int64_t& dropped) {
    std::vector<XmSampleHeader> headers;
    RecordReader record(in);
    for (int i = 0; i < count; ++i) {
        XmSampleHeader header;
        XmSampleHeaderRecord(record, header);
        in.Skip(headerSize - kXmSampleHeaderBytes);
        if (in.Truncated()) break;
        if (i < kUsedSamples)
            headers.push_back(std::move(header));
        else
            dropped += header.length;
    }
    return headers;
}

}  // namespace

void ApplyXmBody(const XmInstrumentBody& body, Instrument& instrument) {
    ApplyEnvelope(body.volume, instrument.volumeEnvelopes[0]);
    ApplyEnvelope(body.pan, instrument.panEnvelopes[0]);
    instrument.fadeOut = body.fadeOut;
    for (int note = 0; note < kXmKeys; ++note)
        instrument.SetKeySample(note, body.samples[static_cast<std::size_t>(note)], 0, 127);
}

XmSamplesEnd ReadXmSamples(Reader& in, int count, std::uint32_t headerSize, Instrument& instrument, int number,
                   LoadReport& report) {
    if (headerSize < kXmSampleHeaderBytes || headerSize > kXmMaxRecordBytes) headerSize = kXmSampleHeaderBytes;
    std::int64_t dropped = 0;
    const auto headers = ReadHeaders(in, count, headerSize, dropped);
    for (const auto& header : headers) instrument.AddSample(MakeSample(header));
    if (in.Truncated()) {
        report.Add("The file ends in the sample headers of instrument %i.", number);
        return XmSamplesEnd::Cut;
    }
    auto end = XmSamplesEnd::Whole;
    for (std::size_t i = 0; i < headers.size(); ++i) {
        if (LoadWave(in, headers[i], *instrument.samples[i]) || end == XmSamplesEnd::Cut) continue;
        report.Add("The file ends in sample %i of instrument %i: the rest is silent.", static_cast<int>(i) + 1, number);
        end = XmSamplesEnd::Cut;
    }
    if (count > kUsedSamples)
        report.Add("Instrument %i has %i samples: the last %i are dropped.", number, count, count - kUsedSamples);
    in.Skip(dropped);
    return in.Truncated() ? XmSamplesEnd::Cut : end;
}

}  // namespace vonta
