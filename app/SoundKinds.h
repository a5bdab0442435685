// The kinds of sound devices as a command line names them.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "engine/SndPlayer.h"

namespace vonta {

struct SoundKind {
    const char* name;
    DeviceKind kind;
};

inline constexpr SoundKind kSoundKinds[] = {
    {"directsound", DeviceKind::DirectSoundPrimary}, {"secondary", DeviceKind::DirectSoundSecondary},
    {"waveout", DeviceKind::WaveOut},                {"asio", DeviceKind::Asio},
    {"nosound", DeviceKind::NoSound},                {"diskwriter", DeviceKind::DiskWritter},
};

inline std::vector<std::string> SoundKindNames() {
    std::vector<std::string> names;
    for (const SoundKind& row : kSoundKinds) names.emplace_back(row.name);
    return names;
}

// No sound for a name that is none of them.
inline DeviceKind SoundKindOf(std::string_view name) {
    for (const SoundKind& row : kSoundKinds)
        if (row.name == name) return row.kind;
    return DeviceKind::NoSound;
}

}  // namespace vonta
