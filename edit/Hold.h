// How an edit exchanges what the audio side may be reading.
#pragma once

#include "engine/SndPlayer.h"

namespace vonta {

// The block cycle stands still while it lives: long enough for a pointer to change.
class Hold {
public:
    explicit Hold(SndPlayer& player) : pause_(player) {}

private:
    MixerPause pause_;
};

// Inside a Hold: ends what sounds of an instrument, of its samples and of the clones that play them, so that they may
// leave the song. Everything else plays on.
void StopInstrument(SndPlayer& player, int slot);
void StopSample(SndPlayer& player, const SampleData& data);

}  // namespace vonta
