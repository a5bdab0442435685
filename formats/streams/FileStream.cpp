#include "formats/streams/FileStream.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <limits>
#include <system_error>

namespace vonta {
namespace {

constexpr std::size_t kWindowBytes = 64 * 1024;

// Bytes of a request for whole items, or 0 if it is none or beyond all memory.
std::size_t RequestBytes(std::size_t size, std::size_t count) {
    if (size == 0 || count > std::numeric_limits<std::size_t>::max() / size) return 0;
    return size * count;
}

// A save through a symbolic link replaces what the link points at, not the link. False with errno if it points at
// nothing, or at itself in the end.
bool FollowLinks(std::string& path) {
    struct stat info {};
    if (::lstat(path.c_str(), &info) != 0 || !S_ISLNK(info.st_mode)) return true;
    const std::unique_ptr<char, decltype(&std::free)> real(::realpath(path.c_str(), nullptr), std::free);
    if (real) path = real.get();
    return real != nullptr;
}

void SyncDirectory(const std::string& path) {
    const int directory = ::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (directory < 0) return;
    ::fsync(directory);
    ::close(directory);
}

std::string DirectoryOf(const std::string& path) {
    const auto parent = std::filesystem::path(path).parent_path();
    return parent.empty() ? "." : parent.string();
}

}  // namespace

DiskStream::~DiskStream() { Abandon(); }

bool DiskStream::Fail(const char* doing) {
    if (!failed_) error_ = std::string(doing) + ": " + std::generic_category().message(errno);
    failed_ = true;
    return false;
}

bool DiskStream::Open(const std::string& path, const char* mode) {
    Abandon();
    path_ = path;
    error_.clear();
    failed_ = false;
    position_ = size_ = windowStart_ = 0;
    windowSize_ = 0;
    dirty_ = false;
    writing_ = mode[0] == 'w';
    window_.resize(kWindowBytes);
    if (writing_ ? OpenForWriting() : OpenForReading()) return true;
    Release();
    return false;
}

bool DiskStream::OpenForReading() {
    // Not blocking: a pipe that nobody writes to is refused below instead of waited for.
    file_ = ::open(path_.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    struct stat info {};
    if (file_ < 0 || ::fstat(file_, &info) != 0) return Fail("cannot open");
    if (S_ISDIR(info.st_mode)) {
        errno = EISDIR;
        return Fail("cannot open");
    }
    if (!S_ISREG(info.st_mode)) {
        errno = ENOTSUP;
        return Fail("not a plain file");
    }
    size_ = info.st_size;
    return true;
}

bool DiskStream::OpenForWriting() {
    targetPath_ = path_;
    if (!FollowLinks(targetPath_)) return Fail("cannot follow the link");
    struct stat info {};
    const bool exists = ::stat(targetPath_.c_str(), &info) == 0;
    if (exists && !S_ISREG(info.st_mode)) {          // a device is written in place; a directory is refused by open
        file_ = ::open(targetPath_.c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC);
        return file_ >= 0 || Fail("cannot write");
    }
    if (exists && ::access(targetPath_.c_str(), W_OK) != 0) return Fail("cannot write");
    file_ = part_.Create(DirectoryOf(targetPath_));
    if (file_ < 0) return Fail("cannot write");
    if (exists) (void)!::fchmod(file_, info.st_mode & 07777);   // the new file stays as private as the old one
    return true;
}

void DiskStream::Release() {
    if (file_ >= 0) ::close(file_);
    file_ = -1;
    std::vector<std::uint8_t>().swap(window_);
}

void DiskStream::Abandon() {
    part_.Remove();
    Release();
}

bool DiskStream::Close() {
    if (file_ < 0) return !failed_;
    if (writing_ && !Commit()) {
        Abandon();
        return false;
    }
    Release();
    return true;
}

bool DiskStream::Commit() {
    if (failed_ || !Flush()) return false;
    if (!part_.IsOpen()) return true;
    if (::fsync(file_) != 0) return Fail("cannot write");
    if (!part_.MoveTo(targetPath_)) return Fail("cannot put the new file in place");
    SyncDirectory(DirectoryOf(targetPath_));
    return true;
}

std::size_t DiskStream::ReadAt(std::uint8_t* bytes, std::size_t size, std::int64_t offset) {
    std::size_t done = 0;
    while (done < size) {
        const auto got = ::pread(file_, bytes + done, size - done, offset + static_cast<std::int64_t>(done));
        if (got < 0 && errno == EINTR) continue;
        if (got <= 0) break;
        done += static_cast<std::size_t>(got);
    }
    return done;
}

bool DiskStream::WriteAt(const std::uint8_t* bytes, std::size_t size, std::int64_t offset) {
    std::size_t done = 0;
    while (done < size) {
        const auto put = ::pwrite(file_, bytes + done, size - done, offset + static_cast<std::int64_t>(done));
        if (put < 0 && errno == EINTR) continue;
        if (put <= 0) return Fail("cannot write");
        done += static_cast<std::size_t>(put);
    }
    return true;
}

bool DiskStream::Flush() {
    if (dirty_ && !WriteAt(window_.data(), windowSize_, windowStart_)) return false;
    dirty_ = false;
    return true;
}

std::size_t DiskStream::Read(void* buffer, std::size_t size, std::size_t count) {
    if (file_ < 0 || writing_) return 0;
    auto* out = static_cast<std::uint8_t*>(buffer);
    const std::size_t wanted = RequestBytes(size, count);
    std::size_t done = 0;
    while (done < wanted) {
        const std::size_t at = static_cast<std::size_t>(position_ - windowStart_);   // huge if before the window
        std::size_t got;
        if (at < windowSize_) {
            got = std::min(wanted - done, windowSize_ - at);
            std::memcpy(out + done, window_.data() + at, got);
        } else if (wanted - done >= kWindowBytes) {
            got = ReadAt(out + done, wanted - done, position_);
            if (got == 0) break;
        } else {
            windowStart_ = position_;
            windowSize_ = ReadAt(window_.data(), kWindowBytes, position_);
            if (windowSize_ == 0) break;
            continue;
        }
        done += got;
        position_ += static_cast<std::int64_t>(got);
    }
    return wanted == 0 ? 0 : done / size;
}

std::size_t DiskStream::Write(const void* buffer, std::size_t size, std::size_t count) {
    if (file_ < 0 || !writing_ || failed_) return 0;
    const auto* in = static_cast<const std::uint8_t*>(buffer);
    const std::size_t wanted = RequestBytes(size, count);
    std::size_t done = 0;
    while (done < wanted) {
        const std::size_t at = static_cast<std::size_t>(position_ - windowStart_);   // huge if before the window
        std::size_t put;
        if (at <= windowSize_ && at < kWindowBytes) {
            put = std::min(wanted - done, kWindowBytes - at);
            std::memcpy(window_.data() + at, in + done, put);
            windowSize_ = std::max(windowSize_, at + put);
            dirty_ = true;
        } else {
            if (!Flush()) return done / size;
            windowStart_ = position_;
            windowSize_ = 0;
            continue;
        }
        done += put;
        position_ += static_cast<std::int64_t>(put);
    }
    size_ = std::max(size_, position_);
    return wanted == 0 ? 0 : count;
}

bool DiskStream::Seek(std::int64_t offset, int whence) {
    const std::int64_t base = whence == kFromHere ? position_ : 0;
    if (file_ < 0 || offset < -base || offset > size_ - base) return false;
    position_ = base + offset;
    return true;
}

std::int64_t DiskStream::Tell() const { return position_; }

std::int64_t DiskStream::Size() const { return size_; }

MemoryStream::MemoryStream(std::vector<std::uint8_t> bytes, std::string path)
    : bytes_(std::move(bytes)), path_(std::move(path)) {}

bool MemoryStream::Open(const std::string& path, const char* mode) {
    if (!path.empty()) path_ = path;
    if (mode[0] == 'w') bytes_.clear();
    position_ = 0;
    return true;
}

std::size_t MemoryStream::Read(void* buffer, std::size_t size, std::size_t count) {
    const std::size_t got = std::min(RequestBytes(size, count), bytes_.size() - position_);
    if (got == 0) return 0;
    std::memcpy(buffer, bytes_.data() + position_, got);
    position_ += got;
    return got / size;
}

std::size_t MemoryStream::Write(const void* buffer, std::size_t size, std::size_t count) {
    const std::size_t wanted = RequestBytes(size, count);
    if (wanted == 0) return 0;
    bytes_.resize(std::max(bytes_.size(), position_ + wanted));
    std::memcpy(bytes_.data() + position_, buffer, wanted);
    position_ += wanted;
    return count;
}

bool MemoryStream::Seek(std::int64_t offset, int whence) {
    const std::int64_t base = whence == kFromHere ? Tell() : 0;
    if (offset < -base || offset > Size() - base) return false;
    position_ = static_cast<std::size_t>(base + offset);
    return true;
}

}  // namespace vonta
