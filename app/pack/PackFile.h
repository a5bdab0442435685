// A pack file: named stretches of one file. Vonta.dat and the skins are packs.
//
// Little-endian: 4 bytes count; then for each entry 30 bytes of name (padded with zeros, none if it fills them),
// 4 bytes offset from the start of the file, 4 bytes size; then the data. Names have a backslash as separator.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "formats/streams/FileStream.h"

namespace vonta {

class PackFile {
public:
    static constexpr std::size_t kNameLength = 30;

    // A file that cannot be opened or holds no sound directory leaves the object empty: IsOpen tells.
    explicit PackFile(const std::string& path);
    explicit PackFile(std::unique_ptr<FileStream> file);   // open for reading, at its start

    bool IsOpen() const { return file_ != nullptr; }
    void Close();
    // Makes the entry current, at its start. False, and nothing changes, if there is none or it lies beside the file.
    // Only the first 30 characters of the name count.
    bool Find(std::string_view name);
    bool Read(void* buffer, std::size_t size);   // false past the entry's end: nothing is read, the position advances
    std::uint32_t Remaining() const;             // bytes of the current entry, as far as the file holds them
    std::size_t Count() const { return entries_.size(); }
    std::string_view EntryName(std::size_t index) const;

private:
    struct Entry {
        std::string name;
        std::uint32_t offset = 0;                // from the start of the file
        std::uint64_t end = 0;
    };
    bool ReadDirectory();

    std::unique_ptr<FileStream> file_;
    std::vector<Entry> entries_;
    std::uint64_t position_ = 0, end_ = 0;       // of the current entry, from the start of the file
};

struct PackEntry {
    std::string name;                            // at most kNameLength characters
    std::vector<std::uint8_t> data;
};

// Writes a pack: beside the target, then renamed. False, with the reason, if it cannot be written or an entry is too
// long for the format.
bool WritePack(const std::string& path, const std::vector<PackEntry>& entries, std::string& error);

}  // namespace vonta
