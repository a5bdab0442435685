// A lock that tells other processes whether its owner lives: it goes with the process, however that ends.
#pragma once

#include <string>

namespace vonta {

class FileLock {
public:
    FileLock() = default;
    ~FileLock() { Release(); }
    FileLock(const FileLock&) = delete;
    FileLock& operator=(const FileLock&) = delete;

    // Makes the file if need be. False, at once, if another process has it or the file cannot be had.
    bool Take(const std::string& path);
    void Release();
    bool IsTaken() const { return file_ >= 0; }

private:
    int file_ = -1;
};

}  // namespace vonta
