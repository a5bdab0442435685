// How an edit exchanges what the audio side may be reading: the block cycle stands still between two blocks, long
// enough for a pointer to change, and nobody hears it.
#pragma once

#include "engine/SndPlayer.h"

namespace vonta {

using Hold = CycleHold;

// Inside a Hold: ends what sounds of the instruments that play this wave, their own or as a clone, so that it may leave
// the song. Everything else plays on.
void StopSample(SndPlayer& player, const SampleData& data);

}  // namespace vonta
