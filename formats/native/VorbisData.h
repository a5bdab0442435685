// Waves packed as an Ogg Vorbis stream, the one lossy form of the native files.
//
// Whatever the sample's own rate is, the stream claims 44100 Hz: the rate lives in the sample's tone. Waves are
// floats at the scale of a signed 16-bit sample, interleaved for stereo.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace vonta {

// Works for seconds on a long wave. Empty if the encoder cannot be set up.
std::vector<std::uint8_t> EncodeVorbis(std::span<const float> wave, int channels);

// How many frames a stream can decode to at most, told from the headers of its packets and from what its end says;
// 0 if it is no Vorbis stream of one or two channels. A wave of that size is no more than its packets bear out.
std::uint64_t MeasureVorbis(std::span<const std::uint8_t> packed);

// How many frames it does decode to. As long as a load, and without its memory.
std::uint64_t CountVorbis(std::span<const std::uint8_t> packed);

// Fills the wave, and stops where it ends or the stream does; the number of floats stored. A stream of one channel
// gives it to both of the wave, the second one of a stream is dropped for a wave of one.
std::size_t DecodeVorbis(std::span<const std::uint8_t> packed, int channels, std::span<float> wave);

}  // namespace vonta
