#include "audio/WavWriter.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <limits>

#include "formats/WavFormat.h"

namespace vonta {
namespace {

static_assert(std::endian::native == std::endian::little, "values go to disk as they lie in memory");

constexpr float kLowest = -32768.0f, kHighest = 32767.0f;
constexpr std::size_t kChunkValues = 4096;

// How a width stores a value of the 16-bit scale: value * scale + centre, truncated.
template <class Stored> struct Width;
template <> struct Width<std::uint8_t> { static constexpr float scale = 0.00390625f, centre = 128.0f; };
template <> struct Width<std::int16_t> { static constexpr float scale = 1.0f, centre = 0.0f; };
template <> struct Width<std::int32_t> { static constexpr float scale = 65536.0f, centre = 0.0f; };

// Not a number, which a plug-in may produce, is silence. Selections, so that the loop vectorizes.
float Clip(float value) {
    const float number = value == value ? value : 0.0f;
    const float low = number > kLowest ? number : kLowest;
    return low < kHighest ? low : kHighest;
}

template <class Stored>
bool WriteAs(DiskStream& stream, const float* values, std::size_t count) {
    std::array<Stored, kChunkValues> chunk;
    while (count > 0) {
        const std::size_t now = std::min(count, chunk.size());
        for (std::size_t i = 0; i < now; ++i) {
            const float scaled = Clip(values[i]) * Width<Stored>::scale + Width<Stored>::centre;
            chunk[i] = static_cast<Stored>(static_cast<std::int32_t>(scaled));
        }
        if (stream.Write(chunk.data(), sizeof(Stored), now) != now) return false;
        values += now;
        count -= now;
    }
    return true;
}

}  // namespace

bool WavWriter::Open(const std::string& path, std::uint32_t sampleRate, std::uint32_t bits) {
    bits_ = bits;
    dataSize_ = 0;
    if (!stream_.Open(path, "wb")) return false;
    Writer out(stream_);
    WriteWavHead(out, MakeWavFormat(2, sampleRate, static_cast<std::uint16_t>(bits)), 0);
    return true;
}

bool WavWriter::HasRoom(int frames) const {
    constexpr std::uint64_t most = std::numeric_limits<std::uint32_t>::max() - (kWavHeadBytes - kRiffPreambleBytes);
    return dataSize_ + static_cast<std::uint64_t>(frames) * (bits_ / 8 * 2) <= most;
}

bool WavWriter::Write(const float* values, int frames) {
    const auto count = static_cast<std::size_t>(frames) * 2;
    dataSize_ += static_cast<std::uint32_t>(count * (bits_ / 8));
    switch (bits_) {
        case 8: return WriteAs<std::uint8_t>(stream_, values, count);
        case 16: return WriteAs<std::int16_t>(stream_, values, count);
        default: return WriteAs<std::int32_t>(stream_, values, count);
    }
}

bool WavWriter::Close() {
    Writer out(stream_);
    stream_.Seek(kRiffSizeAt, kFromStart);
    out.U32(kWavHeadBytes - kRiffPreambleBytes + dataSize_);
    stream_.Seek(kWavDataSizeAt, kFromStart);
    out.U32(dataSize_);
    return stream_.Close();
}

}  // namespace vonta
