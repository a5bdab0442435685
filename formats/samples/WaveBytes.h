// Between the floats of a wave and the values that files hold.
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <span>
#include <type_traits>

#include "formats/streams/FileStream.h"

namespace vonta {

constexpr std::size_t kWaveBlockValues = 8192;       // converted at a time
constexpr std::int64_t kMaxWaveFloats = std::int64_t{1} << 29;   // of one sample: hours of sound, 2 GiB of memory

// Truncates; values beyond the range give its ends, and what is no number gives 0. Without a branch, so that
// loops over a wave become vector code.
template <class Integer>
Integer ToInteger(float value) {
    constexpr float low = std::numeric_limits<Integer>::min(), high = std::numeric_limits<Integer>::max();
    const float number = value == value ? value : 0.0f;
    const float aboveLow = number > low ? number : low;
    return static_cast<Integer>(aboveLow < high ? aboveLow : high);
}

// Between a stored value and the scale of a wave, where a signed 16-bit value stands for itself. Floats are stored at
// that scale too.
template <class Stored>
Stored FromWave(float value) {
    if constexpr (std::is_same_v<Stored, float>) return value;
    else if constexpr (sizeof(Stored) == 1) return static_cast<Stored>(ToInteger<std::int16_t>(value) / 256);
    else return ToInteger<Stored>(value);
}
inline float ToWave(float value) { return std::isfinite(value) ? value : 0.0f; }
inline float ToWave(std::int16_t value) { return value; }
inline float ToWave(std::int8_t value) { return static_cast<float>(value) * 256.0f; }
inline float ToWave(std::uint8_t value) { return static_cast<float>(value - 128) * 256.0f; }

// Fills the wave with values of this width. What the stream does not hold reads as zero bytes: callers ask for no more
// than remains.
template <class Stored>
void ReadWaveValues(Reader& in, std::span<float> wave) {
    static_assert(std::endian::native == std::endian::little, "values lie in memory as they lie on disk");
    std::array<Stored, kWaveBlockValues> block;
    while (!wave.empty()) {
        const std::size_t count = std::min(block.size(), wave.size());
        in.Bytes({reinterpret_cast<std::uint8_t*>(block.data()), count * sizeof(Stored)});
        std::transform(block.begin(), block.begin() + static_cast<std::ptrdiff_t>(count), wave.begin(),
                       [](Stored value) { return ToWave(value); });
        wave = wave.subspan(count);
    }
}

template <class Stored>
void WriteWaveValues(Writer& out, std::span<const float> wave) {
    static_assert(std::endian::native == std::endian::little, "values lie in memory as they lie on disk");
    std::array<Stored, kWaveBlockValues> block;
    while (!wave.empty()) {
        const std::size_t count = std::min(block.size(), wave.size());
        std::transform(wave.begin(), wave.begin() + static_cast<std::ptrdiff_t>(count), block.begin(),
                       FromWave<Stored>);
        out.Bytes({reinterpret_cast<const std::uint8_t*>(block.data()), count * sizeof(Stored)});
        wave = wave.subspan(count);
    }
}

}  // namespace vonta
