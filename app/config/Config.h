// The user's settings. Vonta.cfg holds them as text that explains itself, Keyb.cfg the key bindings.
//
// Values stand here as the file gives them, whatever they are; `Settings` (ConfigSettings.h) is what the program works
// with. Written on the interface thread only; nobody else reads it.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "app/config/KeyTable.h"

namespace vonta {

enum ConfigFlag : std::uint32_t {
    kForceToBlit = 1 << 0,                           // blits to the front surface; else flips where that is possible
    kHardwareMouse = 1 << 1,
    kFullscreen = 1 << 2,
    kLoadGfxAtInit = 1 << 3,                         // else each bitmap when it is first needed
    kMultichannelRecord = 1 << 4,                    // notes of the MIDI input go to the next marked channel
    kMultichannelEdit = 1 << 5,                      // notes of the keyboard do
    kRecordVelocity = 1 << 6,                        // into the volume column
    kRecordNoteOffs = 1 << 7,                        // kept for the file; nothing acts on it, nor on the next
    kRecordTranspose = 1 << 8,
    kAutoTuneSample = 1 << 9,                        // to C-4, when loaded into an empty slot
    kShowInstrColors = 1 << 10,
};
constexpr std::uint32_t kDefaultFlags = kHardwareMouse | kFullscreen | kAutoTuneSample | kShowInstrColors;

constexpr int kMaxMidiInput = 15;
constexpr int kMidiDelays = 16;                      // outputs whose delay can be set

// By number in Config::directories.
enum ConfigDirectory { kDirModule, kDirInstrument, kDirSample, kDirSynth, kDirFx, kDirVisual, kDirGame };
constexpr int kConfigDirectories = 7;

// By number in Config::mouse: which action the wheel has with which key held.
enum WheelModifier { kWheelPlain, kWheelControl, kWheelAlt, kWheelShift };
constexpr int kWheelModifiers = 4;
enum WheelAction { kWheelNothing, kWheelScroll, kWheelRow, kWheelInstrument };

struct Config {
    std::uint32_t flags = kDefaultFlags;
    int deviceNumber = 0;
    int mode = 2;                                    // kind of sound device, 0 to 5: see ConfigSettings.cpp
    float amplification = 0.8f;                      // linear; the file keeps six decimals
    int latency = 100;                               // ms
    int midiInput = 0;                               // 0 to kMaxMidiInput
    std::array<int, kMidiDelays> midiOutDelay{};     // ms
    int interpolation = 1;                           // NONE, LINEAR, CUBIC
    int patternChannels = 5;                         // 4, 8, 16, 24, 32, AUTO
    int patternNumberMode = 0;                       // DEC, HEX
    KeyTable keyTable = DefaultKeyTable();
    int mouseTicksPerSecond = 25;
    int keyboardTicksPerSecond = 25;
    int mouseRepeatDelay = 7;                        // ticks
    int keyboardRepeatDelay = 7;                     // ticks
    int sampleRate = 44100;                          // Hz
    std::array<std::string, kConfigDirectories> directories;   // where each kind of file is looked for first
    std::string skin;                                // file name in Skins/
    int fullscreenBits = 2;                          // 16, 24, 32
    std::array<int, kWheelModifiers> mouse{kWheelScroll, kWheelRow, kWheelNothing, kWheelInstrument};
    int waitTime = 10;                               // ms between frames; none at 0 or below
    int formerFiles = 1;                             // 0: a save keeps nothing of the file that it replaces
    int undoMemory = 256;                            // MiB that the steps to be taken back may hold

    bool operator==(const Config&) const = default;

    bool Has(ConfigFlag flag) const { return (flags & flag) != 0; }

    // 0, or 1 if a file cannot be opened or written. The second file is tried only if the first went well.
    int Load(const std::string& cfgName, const std::string& keybName);
    int Save(const std::string& cfgName, const std::string& keybName) const;
};

}  // namespace vonta
