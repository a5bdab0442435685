#include "formats/streams/PartFile.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <mutex>
#include <set>
#include <string_view>

namespace vonta {
namespace {

constexpr std::string_view kPrefix = ".vonta-save-"; // the process and a number follow
constexpr int kPartNames = 1000;                     // tries to find a name that no other save is using; a mixdown
                                                     // by parts has up to 284 files open

// The part files of this process.
struct Parts {
    std::mutex lock;
    std::set<std::string> paths;
};
Parts& Own() {
    static Parts parts;
    return parts;
}

bool IsPartName(const std::string& name) {
    return name.starts_with(kPrefix) && name.find_first_not_of("-0123456789", kPrefix.size()) == std::string::npos;
}

// Whether the descriptor is of the very file that has this name.
bool IsFileOfName(int file, const char* path) {
    struct stat open {}, named {};
    return ::fstat(file, &open) == 0 && ::lstat(path, &named) == 0 && S_ISREG(open.st_mode) &&
           open.st_dev == named.st_dev && open.st_ino == named.st_ino;
}

// The lock of a process goes with it. Who holds the lock of a part and finds the part still under its name knows that
// its owner is gone: one that lives moves or removes the part before it lets the lock go.
void RemoveIfDead(const std::string& path) {
    const int file = ::open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    if (file < 0) return;
    if (::flock(file, LOCK_EX | LOCK_NB) == 0 && IsFileOfName(file, path.c_str())) ::unlink(path.c_str());
    ::close(file);
}

void RemoveDead(const std::string& directory) {
    std::error_code none;
    for (std::filesystem::directory_iterator at(directory, none), end; !none && at != end; at.increment(none))
        if (IsPartName(at->path().filename().string())) RemoveIfDead(at->path().string());
}

// Locked from its first moment as far as others can tell: one that somebody took for dead in between is given up.
int CreateLocked(const std::string& path) {
    const int file = ::open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (file < 0) return -1;
    const bool taken = ::flock(file, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;   // file systems without locks
    if (!taken && IsFileOfName(file, path.c_str())) return file;                        // go without
    ::close(file);
    errno = EEXIST;
    return -1;
}

}  // namespace

int PartFile::Create(const std::string& directory) {
    Remove();
    Parts& own = Own();
    const std::lock_guard guard(own.lock);
    if (own.paths.empty()) RemoveDead(directory);    // the first of many has done it for all
    const std::string base = directory + "/" + std::string(kPrefix) + std::to_string(::getpid()) + "-";
    for (int i = 0; i < kPartNames; ++i) {
        const std::string path = base + std::to_string(i);
        const int file = CreateLocked(path);
        if (file < 0 && errno == EEXIST) continue;
        if (file < 0) return -1;
        own.paths.insert(path);
        path_ = path;
        return file;
    }
    return -1;
}

bool PartFile::MoveTo(const std::string& target) {
    if (::rename(path_.c_str(), target.c_str()) != 0) return false;
    Forget();
    return true;
}

void PartFile::Remove() {
    if (!IsOpen()) return;
    ::unlink(path_.c_str());
    Forget();
}

void PartFile::Forget() {
    const std::lock_guard guard(Own().lock);
    Own().paths.erase(path_);
    path_.clear();
}

void PartFile::RemoveAllForGood() {
    Parts& own = Own();
    own.lock.lock();
    for (const std::string& path : own.paths) ::unlink(path.c_str());
}

}  // namespace vonta
