#include "interface/screens/DiskList.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

namespace vonta {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kSongs[] = {".xm", ".mod", ".vtm"};
constexpr std::string_view kInstruments[] = {".vti", ".xi", ".sf2", ".akp"};
constexpr std::string_view kSamples[] = {".wav", ".smp", ".iff", ".raw", ".sam", ".snd"};
constexpr std::string_view kLibraries[] = {".dll", ".so"};
constexpr std::string_view kSkins[] = {".vts"};

struct KindRow {
    std::span<const std::string_view> suffixes;
    bool isLibrary;
};
constexpr std::array<KindRow, kFileKinds> kKinds{{
    {kSongs, false}, {kInstruments, false}, {kSamples, false}, {kLibraries, true}, {kLibraries, true},
    {kLibraries, true}, {kLibraries, true}, {kSkins, false},
}};

char LowerCase(char byte) { return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte - 'A' + 'a') : byte; }

bool EndsWith(std::string_view name, std::string_view suffix) {
    if (name.size() <= suffix.size()) return false;
    name.remove_prefix(name.size() - suffix.size());
    return std::equal(name.begin(), name.end(), suffix.begin(), [](char a, char b) { return LowerCase(a) == b; });
}

// As a person sorts names; equal ones in the order of their bytes.
bool Before(const FileEntry& a, const FileEntry& b) {
    if (a.isDirectory != b.isDirectory) return a.isDirectory;
    const auto lower = [](char x, char y) { return LowerCase(x) < LowerCase(y); };
    if (std::lexicographical_compare(a.name.begin(), a.name.end(), b.name.begin(), b.name.end(), lower)) return true;
    if (std::lexicographical_compare(b.name.begin(), b.name.end(), a.name.begin(), a.name.end(), lower)) return false;
    return a.name < b.name;
}

bool IsListed(const FileEntry& entry, FileKind kind, bool showAll) {
    if (showAll) return true;
    return !entry.name.starts_with('.') && (entry.isDirectory ? true : IsOfKind(entry.name, kind));
}

}  // namespace

std::span<const std::string_view> SuffixesOf(FileKind kind) { return kKinds[static_cast<std::size_t>(kind)].suffixes; }

bool IsOfKind(std::string_view fileName, FileKind kind) {
    const auto suffixes = SuffixesOf(kind);
    return std::any_of(suffixes.begin(), suffixes.end(),
                       [&](std::string_view suffix) { return EndsWith(fileName, suffix); });
}

std::string WithoutSuffix(const std::string& fileName, FileKind kind) {
    return IsOfKind(fileName, kind) ? fileName.substr(0, fileName.rfind('.')) : fileName;
}

bool FindKind(std::string_view fileName, FileKind& kind) {
    for (int i = 0; i < kFileKinds; ++i) {
        const auto candidate = static_cast<FileKind>(i);
        if (kKinds[static_cast<std::size_t>(i)].isLibrary || !IsOfKind(fileName, candidate)) continue;
        kind = candidate;
        return true;
    }
    return false;
}

bool DiskList::Read(const std::string& directory, FileKind kind, bool showAll) {
    rows_.clear();
    isCut_ = false;
    std::error_code failed;
    fs::directory_iterator entry(directory, fs::directory_options::skip_permission_denied, failed);
    if (failed) return false;
    if (kind != FileKind::Skin) rows_.push_back({"..", 0, true});
    for (std::size_t examined = 0; entry != fs::directory_iterator(); ++examined) {
        isCut_ = examined == kMaxExamined;
        if (isCut_) break;
        std::error_code ignored;
        const fs::file_status status = entry->status(ignored);   // does not open what it looks at
        FileEntry row{entry->path().filename().string(), 0, fs::is_directory(status)};
        if ((row.isDirectory || fs::is_regular_file(status)) && IsListed(row, kind, showAll)) {
            if (!row.isDirectory) row.size = entry->file_size(ignored);
            if (ignored) row.size = 0;
            rows_.push_back(std::move(row));
        }
        entry.increment(failed);
        if (failed) break;
    }
    std::sort(rows_.begin(), rows_.end(), Before);
    return true;
}

}  // namespace vonta
