// The band of the demo song.
#pragma once

#include <cstdint>

#include "song/Song.h"

namespace vonta::demo {

// In the order in which the song holds them.
enum Player : std::uint8_t {
    kKick, kSnare, kClap, kClosedHat, kOpenHat, kTom, kCrash, kRiser,
    kBass, kPad, kPluck, kPluckEcho, kLead, kLeadEcho, kHarmony, kPiano, kPianoEcho, kStab,
};

void AddInstruments(Song& song);

}  // namespace vonta::demo
