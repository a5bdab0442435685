#include "app/OpenSong.h"

#include "app/Messages.h"

namespace vonta {

std::unique_ptr<Song> OpenSong(const std::string& path, LoadReport& report) {
    bool hasUnknownChunks = false;
    auto song = LoadModule(path, hasUnknownChunks, report);
    if (!song) {
        Complain(path, report.error);
        return nullptr;
    }
    for (const std::string& line : report.lines) Complain(path, line);
    if (hasUnknownChunks) Complain(path, "holds parts of a newer format, which are left out");
    return song;
}

}  // namespace vonta
