// Songs out of bytes and into bytes, through the entries that the program uses.
#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "formats/Loaders.h"

namespace vonta::test {

inline std::string JoinLines(const LoadReport& report) {
    std::string all;
    for (const auto& line : report.lines) all += line + "\n";
    return all;
}

struct Loaded {
    std::unique_ptr<Song> song;
    LoadReport report;
};

inline Loaded LoadBytes(std::vector<std::uint8_t> bytes) {
    MemoryStream stream(std::move(bytes));
    Loaded loaded;
    bool unknown = false;
    loaded.song = LoadModule(stream, unknown, loaded.report);
    return loaded;
}

struct Saved {
    std::vector<std::uint8_t> bytes;
    LoadReport report;
};

// No bytes if the save failed.
inline Saved SaveBytes(Song& song, SaveMode mode) {
    MemoryStream stream;
    Saved saved;
    saved.report.maxLines = 100;
    SaveOptions options;
    options.report = &saved.report;
    if (SaveFile(&stream, mode, song, options) == 0) saved.bytes = stream.Bytes();
    return saved;
}

}  // namespace vonta::test
