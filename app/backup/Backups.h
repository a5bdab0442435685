// Songs that their user could not save: written where there is room when the program ends in a hurry, found again at
// the next start.
//
// The newest lies as backup.vtm in the start directory, or in the user's cache directory if that one takes nothing; what
// lay there is first put under its time. Elsewhere the name itself tells what it is. No file is ever written over, by
// whichever instance.
#pragma once

#include <cstdint>
#include <ctime>
#include <filesystem>
#include <string>
#include <vector>

namespace vonta {

struct Song;

struct BackupPlace {
    std::filesystem::path directory;
    bool ours = false;                               // holds nothing but the program's files; made if need be
};

// In the order in which they are tried: the start directory, the cache, the song's directory, the temporary one.
std::vector<BackupPlace> BackupPlaces(const std::string& startDirectory, const std::string& songFile);

struct BackupResult {
    std::string file;                                // where the song is; empty if no place took it
    std::string error;                               // of the first place, then
};
BackupResult WriteBackup(Song& song, const std::vector<BackupPlace>& places);

struct WaitingBackup {
    std::filesystem::path file;
    std::string title;                               // of the song, as far as it can be read
    std::int64_t written = 0;                        // when: nanoseconds of the system's clock
    bool ours = false;                               // its place is

    std::time_t Time() const { return static_cast<std::time_t>(written / 1'000'000'000); }
};
// Of this user, the newest first.
std::vector<WaitingBackup> WaitingBackups(const std::vector<BackupPlace>& places);

// Keeps it where it is not offered again: in Backups/ beside it, or under another name where the place is not ours. Its
// new path; the old one if the place takes no change.
std::filesystem::path PutAside(const WaitingBackup& backup);

}  // namespace vonta
