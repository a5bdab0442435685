#include "platform/FileLock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace vonta {

bool FileLock::Take(const std::string& path) {
    Release();
    const int file = ::open(path.c_str(), O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC, 0600);
    if (file < 0) return false;
    if (::flock(file, LOCK_EX | LOCK_NB) != 0) {
        ::close(file);
        return false;
    }
    file_ = file;
    return true;
}

void FileLock::Release() {
    if (file_ >= 0) ::close(file_);
    file_ = -1;
}

}  // namespace vonta
