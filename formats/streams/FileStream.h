// Bytes in and out: a file on disk, or a block of memory.
//
// Opened with "wb" a disk stream writes to a file beside its target; Close puts it in place when every byte is there
// and flushed. Until then, and if anything fails, the old file stays whole and the unfinished one is removed.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "formats/streams/PartFile.h"

namespace vonta {

enum SeekFrom : int { kFromStart = 0, kFromHere = 1 };

class FileStream {
public:
    FileStream() = default;
    FileStream(const FileStream&) = delete;
    FileStream& operator=(const FileStream&) = delete;
    virtual ~FileStream() = default;

    virtual bool Open(const std::string& path, const char* mode) = 0;   // "rb" or "wb"
    virtual bool Close() = 0;                        // false if what was written did not all reach its place
    virtual void Abandon() { Close(); }              // closes, and leaves nothing of what was written
    virtual std::size_t Write(const void* buffer, std::size_t size, std::size_t count) = 0;   // items written
    virtual std::size_t Read(void* buffer, std::size_t size, std::size_t count) = 0;          // whole items; 0 at the end
    virtual bool Seek(std::int64_t offset, int whence) = 0;             // SeekFrom; false outside 0 to Size
    virtual std::int64_t Tell() const = 0;
    virtual std::int64_t Size() const = 0;           // bytes of the whole file
    virtual const std::string& GetPath() const = 0;
    // Why the last Open, Write or Close failed, in the system's words; empty if none did.
    virtual std::string Error() const { return {}; }

    std::int64_t Remaining() const { return Size() - Tell(); }
};

class DiskStream final : public FileStream {
public:
    ~DiskStream() override;                          // an open write is abandoned
    bool Open(const std::string& path, const char* mode) override;      // refuses directories
    bool Close() override;
    void Abandon() override;
    std::size_t Write(const void* buffer, std::size_t size, std::size_t count) override;
    std::size_t Read(void* buffer, std::size_t size, std::size_t count) override;
    bool Seek(std::int64_t offset, int whence) override;
    std::int64_t Tell() const override;
    std::int64_t Size() const override;
    const std::string& GetPath() const override { return path_; }
    std::string Error() const override { return error_; }

private:
    bool OpenForReading();
    bool OpenForWriting();
    bool Commit();                                   // flushes to the disk and puts the part in place
    bool Flush();                                    // the window, if it was written to
    bool WriteAt(const std::uint8_t* bytes, std::size_t size, std::int64_t offset);
    std::size_t ReadAt(std::uint8_t* bytes, std::size_t size, std::int64_t offset);
    bool Fail(const char* doing);                    // notes errno; always false
    void Release();

    int file_ = -1;
    std::string path_, error_;
    std::string targetPath_;                         // path_ with symbolic links followed
    PartFile part_;                                  // what is written, beside the target; none for a device
    std::int64_t position_ = 0, size_ = 0;
    bool writing_ = false, failed_ = false;
    // The part of the file that is held in memory, so that small reads, small writes and steps back to a length
    // field just written cost no system call.
    std::vector<std::uint8_t> window_;
    std::int64_t windowStart_ = 0;
    std::size_t windowSize_ = 0;                     // valid bytes
    bool dirty_ = false;
};

// Reads what it is given, or collects what is written.
class MemoryStream final : public FileStream {
public:
    MemoryStream() = default;
    explicit MemoryStream(std::vector<std::uint8_t> bytes, std::string path = {});
    bool Open(const std::string& path, const char* mode) override;      // rewinds; "wb" also empties
    bool Close() override { return true; }
    std::size_t Write(const void* buffer, std::size_t size, std::size_t count) override;
    std::size_t Read(void* buffer, std::size_t size, std::size_t count) override;
    bool Seek(std::int64_t offset, int whence) override;
    std::int64_t Tell() const override { return static_cast<std::int64_t>(position_); }
    std::int64_t Size() const override { return static_cast<std::int64_t>(bytes_.size()); }
    const std::string& GetPath() const override { return path_; }
    const std::vector<std::uint8_t>& Bytes() const { return bytes_; }

private:
    std::vector<std::uint8_t> bytes_;
    std::size_t position_ = 0;
    std::string path_;
};

// Little-endian values of a stream. Past the end they read as 0 (empty), and Truncated remembers it.
class Reader {
public:
    explicit Reader(FileStream& stream) : stream_(stream) {}

    std::uint8_t U8();
    std::uint16_t U16();
    std::uint32_t U32();
    std::int8_t I8() { return static_cast<std::int8_t>(U8()); }
    std::int16_t I16() { return static_cast<std::int16_t>(U16()); }
    std::int32_t I32() { return static_cast<std::int32_t>(U32()); }
    float F32();                                     // raw bytes: the caller tests for NaN where it matters
    std::string Text();                              // up to and without its NUL; at most the rest of the file
    std::string FixedText(std::size_t width);        // width bytes, cut at the first NUL
    // Fills as much as there is, zeroes the rest; the bytes read.
    std::size_t Bytes(std::span<std::uint8_t> out);
    void Skip(std::int64_t bytes);                   // to the end at most
    bool Truncated() const { return truncated_; }
    std::int64_t Remaining() const { return stream_.Remaining(); }
    FileStream& Stream() { return stream_; }

private:
    FileStream& stream_;
    bool truncated_ = false;
};

// The same values, written. Failures show at the stream's Close.
class Writer {
public:
    explicit Writer(FileStream& stream) : stream_(stream) {}

    void U8(std::uint8_t value);
    void U16(std::uint16_t value);
    void U32(std::uint32_t value);
    void I8(std::int8_t value) { U8(static_cast<std::uint8_t>(value)); }
    void I16(std::int16_t value) { U16(static_cast<std::uint16_t>(value)); }
    void I32(std::int32_t value) { U32(static_cast<std::uint32_t>(value)); }
    void F32(float value);
    std::size_t Text(std::string_view text);         // the bytes up to a first NUL, and one NUL; the count written
    void FixedText(std::string_view text, std::size_t width, char fill = '\0');
    void Bytes(std::span<const std::uint8_t> bytes);
    FileStream& Stream() { return stream_; }

private:
    FileStream& stream_;
};

}  // namespace vonta
