// Writes a song as a native module.
#pragma once

#include "formats/Loaders.h"
#include "formats/streams/FileStream.h"

namespace vonta {

// 0 on success, 1 if the stream took less than all. With options.compress the waves go out in their lossy form.
// Says in options.report what the format cannot hold. Leaves the stream open.
int SaveModule(FileStream& stream, Song& song, const SaveOptions& options);

}  // namespace vonta
