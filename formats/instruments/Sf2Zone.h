// What the generators of a SoundFont say of one zone, collected one after the other. Preset and instrument zones share
// the numbering of generators.
#pragma once

#include <cstdint>

#include "song/Instrument.h"

namespace vonta {

struct Sf2Zone {
    static constexpr int kNone = -1;

    int lowKey = kNone, highKey = kNone;             // as two bytes of the file: 0 to 255
    int lowVelocity = 0, highVelocity = 127;
    int instrument = kNone, sample = kNone;
    int coarseTune = 0;                              // semitones
    int scaleTuning = 100;                           // cents from key to key; 0: every key plays the same pitch
    bool loop = false;
    int delay = -12000, attack = -12000, hold = -12000, release = -12000;   // timecents: 1200 * log2(seconds)
    int sustain = 0;                                 // 0 is the full level

    void Take(std::uint16_t generator, std::uint16_t amount);   // generators not known are passed over
    bool HasKeys() const { return lowKey != kNone && highKey != kNone; }
    // What the next zone starts from. Delay, hold and scale tuning go on.
    void StartNext();
};

// The first volume envelope and the fade-out.
void SetVolumeCourse(Instrument& instrument, const Sf2Zone& zone);

}  // namespace vonta
