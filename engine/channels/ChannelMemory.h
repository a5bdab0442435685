// What a channel remembers between rows, and the effect that runs on this one.
#pragma once

#include <cstdint>

namespace vonta {

struct ChannelMemory {
    std::uint16_t activeEffect = 0;                // tick code in the high byte, parameter in the low; 0 none
    std::uint16_t volumeColumnEffect = 0;          // command in the high byte, parameter in the low; 0 none
    std::uint16_t arpeggioNote = 0;
    std::int32_t offsetMemory = 0;                 // frames
    std::int32_t slideMemory = 0;
    std::int32_t portaUpMemory = 0, portaDownMemory = 0, portaSpeedMemory = 0;
    std::int32_t portaTarget = -1;                 // note; -1 none
    std::int32_t vibratoMemory = 0;                // speed in the high nibble, depth in the low
    std::uint8_t vibratoPosition = 0, vibratoNegative = 0;   // position 0 to 31, and the half wave
    float savedPeriod = 0;                         // to which vibrato returns
    std::int32_t tremoloMemory = 0;
    std::uint8_t tremoloPosition = 0, tremoloNegative = 0, tremoloBase = 0;
    std::uint16_t delayedNote = 0, delayedInstrument = 0, delayedVolume = 0;
    std::uint8_t patternLoopRow = 0;
    std::int32_t patternLoopCount = -1;            // -1 idle
};

}  // namespace vonta
