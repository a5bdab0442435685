// The millisecond clock that the engine, the no-sound devices and MIDI share.
#pragma once

#include <cstdint>

namespace vonta {

// Milliseconds of a monotonic clock; wraps at 2^32. Differences of two readings are taken unsigned.
std::uint32_t Milliseconds();

// Nanoseconds of the same clock; what the CPU scan counts in.
std::uint64_t Nanoseconds();

}  // namespace vonta
