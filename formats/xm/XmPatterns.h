// The patterns of an Extended Module.
#pragma once

#include "formats/Loaders.h"
#include "formats/streams/FileStream.h"
#include "formats/xm/XmFormat.h"
#include "song/Song.h"

namespace vonta {

// Appends all patterns that the song has room for; false if one is damaged.
bool ReadXmPatterns(Reader& in, const XmHeader& header, Song& song, LoadReport& report);

// Whether what stands at the stream's position could be a pattern's header. Leaves the position.
bool IsXmPatternHere(FileStream& stream);

}  // namespace vonta
