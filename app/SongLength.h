// How long a song is, counted by letting the player walk through it without a sound.
#pragma once

#include "engine/SndPlayer.h"

namespace vonta {

struct SongLength {
    enum class End { Song, Circle, Limit };
    double seconds = 0;
    End end = End::Song;
};

// Walks as the mixdown does, at the player's rate, and at most for maxSeconds. What commands of the song change in it
// (tempo, filters switched on) stays changed: measure a copy. The device does not run meanwhile. Ctrl+C ends it.
SongLength MeasureSong(SndPlayer& player, double maxSeconds);

}  // namespace vonta
