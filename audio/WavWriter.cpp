#include "audio/WavWriter.h"

#include <emmintrin.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <limits>

#include "formats/samples/WavFormat.h"

namespace vonta {
namespace {

static_assert(std::endian::native == std::endian::little, "values go to disk as they lie in memory");

constexpr float kLowest = -32768.0f, kHighest = 32767.0f;
constexpr std::size_t kChunkFrames = 1024;

// How a width stores a value of the 16-bit scale: value * scale + centre, truncated.
template <class Stored> struct Width;
template <> struct Width<std::uint8_t> { static constexpr float scale = 0.00390625f, centre = 128.0f; };
template <> struct Width<std::int16_t> { static constexpr float scale = 1.0f, centre = 0.0f; };
template <> struct Width<std::int32_t> { static constexpr float scale = 65536.0f, centre = 0.0f; };

// Four values, clipped, scaled and truncated. Not a number, which a plug-in may produce, is silence.
template <class Stored>
__m128i ToIntegers(__m128 values) {
    values = _mm_and_ps(values, _mm_cmpord_ps(values, values));
    values = _mm_min_ps(_mm_max_ps(values, _mm_set1_ps(kLowest)), _mm_set1_ps(kHighest));
    values = _mm_mul_ps(values, _mm_set1_ps(Width<Stored>::scale));
    return _mm_cvttps_epi32(_mm_add_ps(values, _mm_set1_ps(Width<Stored>::centre)));
}

// Written out, for the compiler leaves comparisons that may trap one by one: five times slower.
template <class Stored>
void ToIntegers(const float* values, std::size_t frames, std::int32_t* out) {
    for (; frames >= 2; frames -= 2, values += 4, out += 4)
        _mm_storeu_si128(reinterpret_cast<__m128i*>(out), ToIntegers<Stored>(_mm_loadu_ps(values)));
    if (frames == 1)
        _mm_storel_epi64(reinterpret_cast<__m128i*>(out),
                         ToIntegers<Stored>(_mm_loadl_pi(_mm_setzero_ps(), reinterpret_cast<const __m64*>(values))));
}

template <class Stored>
bool WriteAs(DiskStream& stream, const float* values, std::size_t frames) {
    std::array<std::int32_t, kChunkFrames * 2> integers;
    std::array<Stored, kChunkFrames * 2> stored;
    while (frames > 0) {
        const std::size_t now = std::min(frames, kChunkFrames);
        ToIntegers<Stored>(values, now, integers.data());
        for (std::size_t i = 0; i < now * 2; ++i) stored[i] = static_cast<Stored>(integers[i]);
        if (stream.Write(stored.data(), sizeof(Stored) * 2, now) != now) return false;
        values += now * 2;
        frames -= now;
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
    const auto count = static_cast<std::size_t>(frames);
    dataSize_ += static_cast<std::uint32_t>(count * (bits_ / 8 * 2));
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
