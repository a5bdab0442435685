// What instances that are gone left behind: unsaved work, to be offered at the next start.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "formats/Loaders.h"
#include "platform/FileLock.h"

namespace vonta {

// One directory of Recovery/, locked as long as this lives, so that no other start offers it too.
struct LeftWork {
    std::string directory;
    std::string song;                            // its title
    std::string path;                            // of its file; empty if it had none
    std::int64_t time = 0;                       // seconds since 1970, of the last writing
    std::uint64_t edits = 0;
    bool declined = false;                       // offered once: kept, but not offered again
    std::unique_ptr<FileLock> lock;
};

constexpr std::int64_t kKeptDays = 30;
constexpr std::uint64_t kKeptBytes = std::uint64_t{1} << 30;     // of all that was declined

// The newest first. Directories of instances that live are passed over; what holds nothing is removed.
std::vector<LeftWork> FindLeftWork(const std::string& startDirectory);

// The song as it was when it was last written: the base with every part that changed laid over it. The report tells
// what could not be had. Null if nothing could.
std::unique_ptr<Song> LoadLeftWork(const LeftWork& work, LoadReport& report);

void RemoveLeftWork(LeftWork& work);
void Decline(LeftWork& work);                    // whoever wants it back removes the file "declined" from its directory

// What the user did not want is kept for a while: of `works`, those older than kKeptDays go, and the oldest ones until
// the rest takes no more than kKeptBytes.
void RemoveOldWork(std::vector<LeftWork>& works, std::int64_t now);

}  // namespace vonta
