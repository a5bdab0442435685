// What the user has put by while working: eight envelopes of each kind and ten command macros. Kept in Env.cfg.
//
// The file has no header and 1852 bytes, little-endian: the envelopes of 56 bytes each in the order of EnvelopeKind,
// then the macros of three 16-bit values each.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "song/Instrument.h"
#include "song/Pattern.h"

namespace vonta {

class FileStream;

// What a key writes into a cell: the effect with its parameter, or the volume.
struct CommandMacro {
    std::uint16_t effect = 0;                        // as in a Cell, all three
    std::uint16_t param = 0;
    std::uint16_t volume = kNoVolume;

    bool operator==(const CommandMacro&) const = default;
};

constexpr int kPredefinedEnvelopes = 8;
constexpr int kCommandMacros = 10;

struct Environment {
    std::array<std::array<Envelope, kPredefinedEnvelopes>, kEnvelopeKinds> predefEnvelopes{};   // by EnvelopeKind
    std::array<CommandMacro, kCommandMacros> macros{};

    bool operator==(const Environment&) const = default;
};

// Fields that the file no longer holds stay as they were. What no song could hold is brought into range.
void ReadEnvironment(FileStream& stream, Environment& environment);
void WriteEnvironment(FileStream& stream, const Environment& environment);

// False if the file cannot be opened, or not be written; the old file is then as it was.
bool LoadEnvironment(const std::string& path, Environment& environment);
bool SaveEnvironment(const std::string& path, const Environment& environment);

}  // namespace vonta
