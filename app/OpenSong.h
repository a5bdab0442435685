// A song file on its way into a sub-command.
#pragma once

#include <memory>
#include <string>

#include "formats/Loaders.h"
#include "song/Song.h"

namespace vonta {

// Loads the file and tells the user what was dropped or repaired, or why it failed; null then.
std::unique_ptr<Song> OpenSong(const std::string& path, LoadReport& report);

}  // namespace vonta
