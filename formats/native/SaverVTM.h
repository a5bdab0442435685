// Writes a song as a native module.
#pragma once

#include "formats/Loaders.h"
#include "formats/streams/FileStream.h"

namespace vonta {

// 0 on success, 1 if the stream took less than all. With options.compress the waves go out in their lossy form.
// Says in options.report what the format cannot hold. Leaves the stream open.
int SaveModule(FileStream& stream, Song& song, const SaveOptions& options);

// What of a song a module is to hold, for whoever keeps a copy that follows the edits: each part is a module by itself.
struct ModulePart {
    static constexpr int kNone = -1;

    int pattern = kNone, instrument = kNone;         // the one that is written
    bool waves = false;                              // those of the instrument
    bool mixer = false;                              // effects and plug-ins; title, numbers and order list always are
};

// 0 on success, 1 if the stream took less than all. Leaves the stream open.
int SaveModulePart(FileStream& stream, const Song& song, const ModulePart& part);

}  // namespace vonta
