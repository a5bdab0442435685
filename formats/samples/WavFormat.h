// The head of a RIFF WAV file, described once for those who write it and those who read it.
//
//   "RIFF" u32 size | "WAVE" | "fmt " u32 16, WavFormat | "data" u32 bytes | frames, left first
//
// Little-endian. A size counts the bytes behind its own field.
#pragma once

#include <cstdint>
#include <string_view>

#include "formats/streams/Record.h"
#include "formats/streams/Riff.h"

namespace vonta {

constexpr std::string_view kWaveTag = "WAVE", kFormatTag = "fmt ", kDataTag = "data", kSamplerTag = "smpl";
constexpr std::uint32_t kWavFormatBytes = 16;
constexpr std::uint32_t kWavHeadBytes = 44;          // all before the frames
constexpr std::int64_t kRiffSizeAt = 4, kWavDataSizeAt = 40;
constexpr std::uint32_t kRiffPreambleBytes = 8;      // tag and size, which the RIFF size does not count
constexpr std::uint16_t kWavPcm = 1;

// The body of the "fmt " chunk.
struct WavFormat {
    std::uint16_t tag = kWavPcm;
    std::uint16_t channels = 2;
    std::uint32_t sampleRate = 44100;                // Hz
    std::uint32_t bytesPerSecond = 0;
    std::uint16_t frameBytes = 0;
    std::uint16_t bits = 16;                         // per value: 8 unsigned, 16 and 32 signed
};

constexpr WavFormat MakeWavFormat(std::uint16_t channels, std::uint32_t sampleRate, std::uint16_t bits) {
    const auto frameBytes = static_cast<std::uint16_t>(bits / 8 * channels);
    return {kWavPcm, channels, sampleRate, frameBytes * sampleRate, frameBytes, bits};
}

template <class Io, class Format>
void WavFormatRecord(Io& io, Format& format) {
    io.U16(format.tag);
    io.U16(format.channels);
    io.U32(format.sampleRate);
    io.U32(format.bytesPerSecond);
    io.U16(format.frameBytes);
    io.U16(format.bits);
}

// The whole head. The sizes are patched when `dataBytes` was not yet known.
inline void WriteWavHead(Writer& out, const WavFormat& format, std::uint32_t dataBytes) {
    RecordWriter record(out);
    out.FixedText(kRiffTag, 4);
    out.U32(kWavHeadBytes - kRiffPreambleBytes + dataBytes);
    out.FixedText(kWaveTag, 4);
    out.FixedText(kFormatTag, 4);
    out.U32(kWavFormatBytes);
    WavFormatRecord(record, format);
    out.FixedText(kDataTag, 4);
    out.U32(dataBytes);
}

}  // namespace vonta
