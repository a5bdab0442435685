// The name that a song has of its file.
#pragma once

#include <filesystem>

#include "formats/streams/FileStream.h"
#include "song/Song.h"

namespace vonta {

// Its full path, at the last load or save. A stream without a path leaves the song as it is.
inline void NameAfter(const FileStream& stream, Song& song) {
    std::error_code failed;
    const auto full = std::filesystem::absolute(stream.GetPath(), failed);   // of no path, that of the directory
    if (!failed && !stream.GetPath().empty()) song.SetFileName(full.lexically_normal().string());
}

}  // namespace vonta
