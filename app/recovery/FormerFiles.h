// Before a song is saved over a file, the former one is kept: its last five stand under Backups/ in the start directory.
#pragma once

#include <string>

namespace vonta {

constexpr int kFormerFiles = 5;                  // of each name

// Keeps the file at path, if there is one, under its name and the time: by a hard link, or a copy where that cannot be.
// True if it is kept or there is none; false and the system's reason if it cannot be kept.
bool KeepFormerFile(const std::string& startDirectory, const std::string& path, std::string& error);

}  // namespace vonta
