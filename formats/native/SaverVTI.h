// Writes the instruments of the native formats, always in the newest version.
#pragma once

#include <string>

#include "formats/streams/Chunks.h"
#include "song/Instrument.h"

namespace vonta {

// A `.vti` file, waves uncompressed. 0 on success, 1 if it could not be written: the old file then stays.
int SaveInstrument(const std::string& path, const Instrument& instrument);
int SaveInstrument(FileStream& stream, const Instrument& instrument);   // leaves the stream open

// The body, as a file and a module hold it. With `compress` the waves go out in their lossy form.
void WriteInstrumentBody(ChunkWriter& chunks, const Instrument& instrument, bool compress);

}  // namespace vonta
