// The innermost loop: reads a channel's voices for a number of output frames into its stereo buffer.
//
// Written once as a template over mono or stereo, interpolation, store or add, and kind of gain; a block is cut into
// runs inside which nothing changes, and cutting it anywhere changes no frame. No form allocates or locks.
#pragma once

#include <cstdint>

#include "engine/channels/Channel.h"

namespace vonta {

// As the configuration counts them; any other value acts as None.
enum class Interpolation : std::uint32_t { None = 1, Linear = 2, Cubic = 3 };

// Voice 0 stores, later voices add. buffer holds `frames` interleaved stereo frames. Sets the channel's tailFlag.
void MixChannel(float* buffer, Channel& channel, int frames, Interpolation interpolation);

}  // namespace vonta
