// What the Disk Op lists: the kinds of files with their filters, and the rows of one directory.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace vonta {

enum class FileKind : int { Song, Instrument, Sample, Synth, Effect, Visual, Game, Skin };
constexpr int kFileKinds = 8;

// Suffixes with their point, in lower case; compared without regard to case.
std::span<const std::string_view> SuffixesOf(FileKind kind);
bool IsOfKind(std::string_view fileName, FileKind kind);
// The name without a suffix of the kind. What is typed behind a suffix would be lost again when the name is cut at its
// point, so a name is edited without it.
std::string WithoutSuffix(const std::string& fileName, FileKind kind);
// The kind that a file is loaded as by its name alone; false if none takes it. Libraries of plug-ins have but one
// suffix for four kinds, so they are never found this way.
bool FindKind(std::string_view fileName, FileKind& kind);

struct FileEntry {
    std::string name;
    std::uint64_t size = 0;                      // bytes; 0 of a directory
    bool isDirectory = false;
};

class DiskList {
public:
    static constexpr std::size_t kMaxExamined = 200000;  // entries; what a directory holds beyond them is not shown

    // Directories first, then files, each sorted by name. Files are plain ones: pipes and devices, which may never
    // answer, are left out, and so is what begins with a point unless all is shown. False if the directory cannot be
    // read; the list is empty then.
    bool Read(const std::string& directory, FileKind kind, bool showAll);

    bool IsCut() const { return isCut_; }        // there is more than was looked at
    int Count() const { return static_cast<int>(rows_.size()); }
    const FileEntry& At(int row) const { return rows_[static_cast<std::size_t>(row)]; }

private:
    std::vector<FileEntry> rows_;
    bool isCut_ = false;
};

// Where each kind was last looked for. Kinds keep their own directory while the program runs.
class DirectoryMemory {
public:
    explicit DirectoryMemory(const std::string& directory) { directories_.fill(directory); }
    const std::string& Of(FileKind kind) const { return directories_[static_cast<std::size_t>(kind)]; }
    void Keep(FileKind kind, const std::string& directory) { directories_[static_cast<std::size_t>(kind)] = directory; }

private:
    std::array<std::string, kFileKinds> directories_;
};

}  // namespace vonta
