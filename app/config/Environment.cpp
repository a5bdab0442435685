#include "app/config/Environment.h"

#include "app/config/ConfigFile.h"
#include "engine/sequence/Effects.h"
#include "formats/streams/Record.h"

namespace vonta {
namespace {

template <class Io, class AnyEnvelope>
void EnvelopeRecord(Io& io, AnyEnvelope& envelope) {
    for (auto& point : envelope.points) {
        io.U16(point.x);
        io.U16(point.y);
    }
    io.U8(envelope.enabled);
    io.U8(envelope.numPoints);
    io.U8(envelope.sustainOn);
    io.U8(envelope.sustainPoint);
    io.U8(envelope.loopOn);
    io.U8(envelope.loopStart);
    io.U8(envelope.loopEnd);
    io.U8(envelope.timeBased);
}

template <class Io, class AnyEnvironment>
void EnvironmentRecord(Io& io, AnyEnvironment& environment) {
    for (auto& kind : environment.predefEnvelopes)
        for (auto& envelope : kind) EnvelopeRecord(io, envelope);
    for (auto& macro : environment.macros) {
        io.U16(macro.effect);
        io.U16(macro.param);
        io.U16(macro.volume);
    }
}

bool IsVolume(std::uint16_t volume) {
    return volume <= kNoVolume || (volume >= kVolumeCommand && volume <= kVolumeCommand + 0xFF);
}

void Validate(CommandMacro& macro) {
    if (macro.effect > kXDelay || macro.param > 0xFF) macro.effect = macro.param = 0;
    if (!IsVolume(macro.volume)) macro.volume = kNoVolume;
}

}  // namespace

void ReadEnvironment(FileStream& stream, Environment& environment) {
    Reader in(stream);
    RecordReader io(in);
    EnvironmentRecord(io, environment);
    for (auto& kind : environment.predefEnvelopes)
        for (auto& envelope : kind) envelope.Validate();
    for (auto& macro : environment.macros) Validate(macro);
}

void WriteEnvironment(FileStream& stream, const Environment& environment) {
    Writer out(stream);
    RecordWriter io(out);
    EnvironmentRecord(io, environment);
}

bool LoadEnvironment(const std::string& path, Environment& environment) {
    return ReadConfigFile(path, [&](FileStream& stream) { ReadEnvironment(stream, environment); });
}

bool SaveEnvironment(const std::string& path, const Environment& environment) {
    return WriteConfigFile(path, [&](FileStream& stream) { WriteEnvironment(stream, environment); });
}

}  // namespace vonta
