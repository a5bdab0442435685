// Reads the instruments of the native formats: a `.vti` file, or the Instrument chunk of a module.
#pragma once

#include <memory>
#include <string>

#include "formats/native/NativeLoad.h"
#include "song/Instrument.h"

namespace vonta {

// Logged for a chunk that is known nowhere in an instrument, and for an instrument of an unknown version.
constexpr const char* kUnknownInstrumentData = "\t\t\t\t\t- Unknown Instrument Data SubChunk found.\n";

// Null if the file is not there or holds no native instrument; report.error tells only of the first.
std::unique_ptr<Instrument> LoadInstrumentNative(const std::string& path, LoadReport& report);
std::unique_ptr<Instrument> LoadInstrumentNative(FileStream& stream, LoadReport& report);

// The body in the layout of a version, 1 to 6, into a new instrument.
void ReadInstrumentBody(NativeLoad& load, Instrument& instrument, int version);

}  // namespace vonta
