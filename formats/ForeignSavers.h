// Writers of other trackers' files. Each writes the whole song into an open stream, whose owner closes it and then
// learns whether all of it got there. The result is 0.
#pragma once

#include "formats/Loaders.h"

namespace vonta {

// What the file could not hold goes to the report; that may be null.
int SaveXM(FileStream& stream, const Song& song, LoadReport* report);
int SaveMOD(FileStream& stream, const Song& song, LoadReport* report);

}  // namespace vonta
