// One layer of a note: one sample being read. Four stand at the head of a Channel.
// Owned by its Channel; touched by the audio thread only.
#pragma once

#include <cstdint>

namespace vonta {

constexpr int kFractionBits = 18;
constexpr std::uint32_t kFractionMask = (1u << kFractionBits) - 1;
constexpr std::uint32_t kFadeFrames = 256;        // a cut note, whatever the rate
constexpr std::uint8_t kRampFrames = 128;         // a change of volume or pan
constexpr int kCentrePan = 128;

struct Voice {
    // What the mix loop reads and writes at each frame: together, and first.
    const float* position = nullptr;              // next element to read; steps by whole frames
    std::uint32_t frac = 0;                       // 18-bit fraction of a frame behind position
    std::uint32_t step = 65536;                   // frames per output frame, 14.18 fixed point
    float gainLeft = 128.0f, gainRight = 128.0f;  // linear, now sounding
    float rampLeft = 0, rampRight = 0;            // gain change per frame during a ramp
    float fadeLeft = 0, fadeRight = 0;            // gain change per frame during a fade to silence
    std::uint32_t fadeCount = 0;                  // frames left of a fade
    std::uint32_t delay = 0;                      // frames of silence before this voice sounds
    std::uint8_t rampCount = 0;                   // frames left of a ramp
    std::uint8_t loopType = 0;                    // LoopType
    std::uint8_t frameSize = 1;                   // elements: 1 mono, 2 stereo
    std::uint8_t backward = 0;                    // ping-pong direction

    const float* start = nullptr;                 // the wave's first element
    const float* end = nullptr;                   // one past its last
    const float* loopStart = nullptr;             // whole frames inside the wave: PlayNote sees to it
    const float* loopEnd = nullptr;

    std::uint32_t frequency = 0;                  // Hz
    double period = 0;                            // linear period, 64 to a semitone
    std::int32_t note = 0;                        // after all transposition
    std::int8_t baseFineTune = 0, fineTune = 0;   // at the note's start, and now
    std::uint8_t panByte = kCentrePan;            // pan of the last refresh
    float pan = kCentrePan;                       // target: 0 left, 128 centre, 255 right
};

}  // namespace vonta
