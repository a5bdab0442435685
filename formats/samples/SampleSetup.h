// What the loaders of samples and of foreign instruments set alike: pitch from the recording's rate, and loops.
#pragma once

#include <cstdint>

#include "song/Sample.h"

namespace vonta {

constexpr int kReferenceNote = 48;                   // plays a wave of 8363 Hz as it was recorded
constexpr int kDefaultBaseNote = 60;                 // MIDI unity note of a wave that tells none

// The note that plays a wave at its own rate when no tone is added, and the rest in 1/128 of a semitone.
struct RateTuning {
    int note = kReferenceNote;
    int fineTune = 0;                                // -127 to 127
};

RateTuning TuneToRate(std::uint32_t sampleRate);     // Hz; 0 counts as the reference
void TuneSample(Sample& sample, std::uint32_t sampleRate);   // so that the reference note plays it as recorded

std::int8_t ToSignedByte(int value);                 // the nearest

// Loop points in floats, moved into the wave.
void SetLoopPoints(Sample& sample, std::uint64_t start, std::uint64_t end);
// Of a wave that is shorter than its file said: the loop goes no further than what there is, and is none behind it.
void CutLoop(Sample& sample);
// A loop without points goes over the whole wave: an empty one would be silent.
void LoopForward(Sample& sample);

}  // namespace vonta
