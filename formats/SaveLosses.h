// What a song holds and the file of another tracker has no place for: told to the user in one line each, with
// how often it occurs.
#pragma once

#include <cstdint>

#include "formats/Loaders.h"

namespace vonta {

// What a format holds.
struct FormatLimits {
    std::size_t titleLength, nameLength;
    int channels, positions;
    int patterns;                        // numbers below this are written
    int minRows, maxRows;                // of a pattern
    int lowestNote;
    int instruments;
    int samples;                         // of an instrument
    std::uint32_t frames;                // of a sample
    bool tempo = false;                  // of its own; else it is the default one
    bool noteOffs = false;
    bool volumeColumn = false;           // for volumes, not for commands
    bool envelopes = false;              // one for the volume, one for the panning
    bool sixteenBits = false, pingPong = false;
    bool tuning = false;                 // relative note and panning of a sample
};

// Adds nothing if all of the song has its place.
void ReportLosses(const Song& song, const FormatLimits& limits, LoadReport& report);

}  // namespace vonta
