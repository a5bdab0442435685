// Writes the instruments of the native formats, always in the newest version.
#pragma once

#include <string>

#include "formats/native/WaveData.h"
#include "formats/streams/Chunks.h"
#include "song/Instrument.h"

namespace vonta {

// A `.vti` file, waves uncompressed. 0 on success; 1 if it could not be written: the old file then stays. The report
// tells why, or what the format cannot hold; it may be null.
int SaveInstrument(const std::string& path, const Instrument& instrument, LoadReport* report = nullptr);
int SaveInstrument(FileStream& stream, const Instrument& instrument);   // leaves the stream open

// The body, as a file and a module hold it.
void WriteInstrumentBody(ChunkWriter& chunks, const Instrument& instrument, WavePacking& packing);

}  // namespace vonta
