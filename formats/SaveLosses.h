// What a song holds and the file of another tracker has no place for: told to the user in one line each, with
// how often it occurs.
#pragma once

#include <cstdint>

#include "formats/Loaders.h"

namespace vonta {

// What a format holds.
struct FormatLimits {
    std::size_t titleLength = 0, nameLength = 0;
    int channels = 0, positions = 0;
    int patterns = 0;                    // numbers below this are written
    int minRows = 0, maxRows = 0;        // of a pattern
    int lowestNote = 0;
    int instruments = 0;
    int samples = 0;                     // of an instrument
    std::uint32_t frames = 0;            // of a sample
    bool tempo = false;                  // of its own; else it is the default one
    bool noteOffs = false;
    bool volumeColumn = false;           // for volumes, not for commands
    bool envelopes = false;              // one for the volume, one for the panning
    bool sixteenBits = false, pingPong = false;
    bool tuning = false;                 // relative note and panning of a sample
    std::size_t sampleNameLength = 0;    // 0: samples have no names of their own
    bool oddFrames = false;              // samples and their loops may begin and end anywhere
    bool stereo = false, loops = true;
    std::uint32_t fixedRate = 0;         // Hz at which the file says that it plays; 0 if it says nothing
};

// Add nothing if all has its place. The second is for a file of one sample.
void ReportLosses(const Song& song, const FormatLimits& limits, LoadReport& report);
void ReportLosses(const Sample& sample, const FormatLimits& limits, LoadReport& report);

}  // namespace vonta
