// The configuration in the terms of those who work with it: indices are turned into what they stand for, and every
// number is in its range. The file may say what it likes; the player and the interface take these.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>

#include "app/config/Config.h"
#include "engine/mix/MixLoop.h"
#include "engine/SndPlayer.h"

namespace vonta {

// What a value can be set to on the config screen, in steps of `step`.
struct ConfigRange {
    float low, high, step;

    float Clamp(float value) const { return std::clamp(value, low, high); }
    int Clamp(int value) const { return std::clamp(value, static_cast<int>(low), static_cast<int>(high)); }
};

constexpr ConfigRange kAmplificationRange{0, 1, 0.01f};
constexpr ConfigRange kLatencyRange{2, 60000, 1};    // ms; a minute, so that it still counts in a ring's bytes
constexpr ConfigRange kMidiDelayRange{0, 500, 1};    // ms
constexpr ConfigRange kTicksPerSecondRange{1, 50, 1};
constexpr ConfigRange kRepeatDelayRange{0, 50, 1};   // ticks
constexpr ConfigRange kUndoMemoryRange{1, 1 << 16, 1};   // MiB
constexpr ConfigRange kMidiInputRange{0, kMaxMidiInput, 1};

struct KeyRepeat {
    int ticksPerSecond = 25;
    int delay = 7;                                   // ticks until the first repeat

    bool operator==(const KeyRepeat&) const = default;
};

struct Settings {
    // Needed to start the sound.
    DeviceKind deviceKind = DeviceKind::NoSound;
    int deviceIndex = 0;
    std::uint32_t sampleRate = 44100;                // Hz
    int latencyMs = 100;
    // Applied once the interface stands.
    float masterAmp = 0.8f;
    std::array<std::uint32_t, kMidiDelays> midiOutDelayMs{};
    Interpolation interpolation = Interpolation::Linear;
    int visibleChannels = 0;                         // 0: as many as the song has, as far as they fit
    bool wideCells = true;                           // few enough channels to show the volume columns
    // Taken by the interface as it goes.
    int midiInput = 0;
    KeyRepeat keyboard, mouse;
    std::array<WheelAction, kWheelModifiers> wheel{};
    int colourDepth = 32;                            // bits per pixel of the full screen
    std::size_t undoMemory = std::size_t{256} << 20; // bytes
    int waitMs = 10;                                 // sleep of a frame
};

Settings SettingsOf(const Config& config);

}  // namespace vonta
