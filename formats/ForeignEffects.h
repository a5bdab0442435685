// Effects of XM and MOD cells: 0 to 15 are the song's own, but for the scale of the volume effect.
#pragma once

#include <cstdint>

namespace vonta {

constexpr std::uint8_t kLastForeignEffect = 15;
constexpr std::uint8_t kSetVolumeEffect = 12;        // up to 64 in files, up to 128 in the song
constexpr std::uint8_t kPositionJump = 11, kPatternBreak = 13;   // what makes a row the last of its pattern

constexpr std::uint8_t SongParam(std::uint8_t effect, std::uint8_t param) {
    return effect == kSetVolumeEffect ? static_cast<std::uint8_t>(param * 2) : param;
}

constexpr std::uint8_t FileParam(std::uint8_t effect, std::uint8_t param) {
    return effect == kSetVolumeEffect ? static_cast<std::uint8_t>(param / 2) : param;
}

}  // namespace vonta
