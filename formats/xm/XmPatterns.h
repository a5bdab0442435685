// The patterns of an Extended Module.
#pragma once

#include "formats/Loaders.h"
#include "formats/streams/FileStream.h"
#include "formats/xm/XmFormat.h"
#include "song/Song.h"

namespace vonta {

enum class XmPatternsEnd {
    Whole,
    Cut,              // the file ends before; what was there is kept, and the report tells
    Damaged,          // one cannot be read, and report.error says which
};

// Appends all patterns that the song has room for.
XmPatternsEnd ReadXmPatterns(Reader& in, const XmHeader& header, Song& song, LoadReport& report);

// Whether what stands at the stream's position could be a pattern's header. Leaves the position.
bool IsXmPatternHere(FileStream& stream);

}  // namespace vonta
