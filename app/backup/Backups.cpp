#include "app/backup/Backups.h"

#include <fcntl.h>
#include <stdio.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>

#include "formats/Loaders.h"
#include "formats/native/VtmFormat.h"
#include "formats/streams/Chunks.h"

namespace vonta {
namespace {

namespace fs = std::filesystem;

constexpr const char* kNewest = "backup.vtm";
constexpr const char* kOurs = "backup";              // then the time, where the directory is the program's
constexpr const char* kElsewhere = "vonta-backup";   // and where it is not
constexpr const char* kSeenElsewhere = "vonta-kept";
constexpr const char* kSeenDirectory = "Backups";
constexpr const char* kSuffix = ".vtm";
constexpr int kNames = 1000;                         // of one second
constexpr std::size_t kTitleWidth = 64;              // bytes that are looked at

std::string TimeText(std::time_t time) {
    std::tm parts{};
    char text[32] = "";
    if (localtime_r(&time, &parts)) std::strftime(text, sizeof text, "%Y%m%d-%H%M%S", &parts);
    return text;
}

std::string NameAt(const char* what, std::time_t time, int number) {
    std::string name = std::string(what) + '-' + TimeText(time);
    if (number != 0) name.append(1, '-').append(std::to_string(number));
    return name + kSuffix;
}

bool IsNamed(const std::string& name, const char* what) {
    return name.starts_with(std::string(what) + "-") && name.ends_with(kSuffix);
}

// Never over another file; where the file system cannot promise that, not at all.
bool MoveTo(const fs::path& from, const fs::path& to) {
    return ::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0;
}

// To the first free name of that time; its path, or an empty one.
fs::path MoveUnderTime(const fs::path& from, const fs::path& directory, const char* what, std::time_t time) {
    for (int i = 0; i < kNames; ++i) {
        const fs::path to = directory / NameAt(what, time, i);
        if (MoveTo(from, to)) return to;
        if (errno != EEXIST) break;
    }
    return {};
}

// A plain file of this user's.
bool IsOwnFile(const fs::path& file, struct stat& info) {
    return ::lstat(file.c_str(), &info) == 0 && S_ISREG(info.st_mode) && info.st_uid == ::geteuid();
}

// The file becomes the newest of its directory. Should that not work out it waits under its own name.
fs::path BecomeNewest(const fs::path& file) {
    const fs::path newest = file.parent_path() / kNewest;
    for (int i = 0; i < kNames; ++i) {               // another instance may do the same just now
        if (MoveTo(file, newest)) return newest;
        struct stat info {};
        if (errno != EEXIST || ::lstat(newest.c_str(), &info) != 0) break;
        if (MoveUnderTime(newest, newest.parent_path(), kOurs, info.st_mtime).empty() && errno != ENOENT) break;
    }
    return file;
}

// A name that nobody has and no other process makes up.
fs::path FreeFile(const BackupPlace& place) {
    const std::string what = std::string(place.ours ? kOurs : kElsewhere) + "-" + std::to_string(::getpid());
    const std::time_t now = std::time(nullptr);
    for (int i = 0; i < kNames; ++i) {
        fs::path file = place.directory / NameAt(what.c_str(), now, i);
        struct stat info {};
        if (::lstat(file.c_str(), &info) != 0) return file;
    }
    return {};
}

std::string WriteInto(const BackupPlace& place, Song& song, std::string& error) {
    std::error_code failed;
    if (place.ours) fs::create_directories(place.directory, failed);
    const fs::path file = FreeFile(place);
    DiskStream stream;
    if (stream.Open(file.string(), "wb") && SaveFile(&stream, SaveMode::Module, song, {}) == 0)
        return (place.ours ? BecomeNewest(file) : file).string();
    if (error.empty()) error = place.directory.string() + ": " + stream.Error();
    return {};
}

// The first text of the Info chunk, which follows the head.
std::string TitleOf(const fs::path& file) {
    DiskStream stream;
    if (!stream.Open(file.string(), "rb")) return {};
    ChunkReader chunks(stream);
    for (ChunkHeader chunk; chunks.Next(chunk); chunks.In().Skip(chunk.length))
        if (chunk.type == kInfoChunk.type) return chunks.In().FixedText(kTitleWidth);
    return {};
}

fs::path CacheDirectory() {
    const char* cache = std::getenv("XDG_CACHE_HOME");
    if (cache && fs::path(cache).is_absolute()) return fs::path(cache) / "vonta";
    const char* home = std::getenv("HOME");
    return home && fs::path(home).is_absolute() ? fs::path(home) / ".cache/vonta" : fs::path();
}

std::int64_t WrittenAt(const struct stat& info) {
    return info.st_mtim.tv_sec * std::int64_t{1'000'000'000} + info.st_mtim.tv_nsec;
}

void LookInto(const BackupPlace& place, std::vector<WaitingBackup>& found) {
    std::error_code failed;
    for (fs::directory_iterator entry(place.directory, failed), end; !failed && entry != end; entry.increment(failed)) {
        const std::string name = entry->path().filename().string();
        const bool wanted = place.ours ? name == kNewest || IsNamed(name, kOurs) : IsNamed(name, kElsewhere);
        struct stat info {};
        if (wanted && IsOwnFile(entry->path(), info)) found.push_back({entry->path(), {}, WrittenAt(info), place.ours});
    }
}

}  // namespace

std::vector<BackupPlace> BackupPlaces(const std::string& startDirectory, const std::string& songFile) {
    std::vector<BackupPlace> places{{startDirectory, true}};
    const auto add = [&](const fs::path& directory, bool ours) {
        const auto same = [&](const BackupPlace& place) { return place.directory == directory; };
        if (directory.is_absolute() && std::none_of(places.begin(), places.end(), same)) places.push_back({directory, ours});
    };
    std::error_code failed;
    add(CacheDirectory(), true);
    add(fs::path(songFile).parent_path(), false);
    add(fs::current_path(failed), false);
    add(fs::temp_directory_path(failed), false);
    return places;
}

BackupResult WriteBackup(Song& song, const std::vector<BackupPlace>& places) {
    BackupResult result;
    for (const BackupPlace& place : places)
        if (result.file.empty()) result.file = WriteInto(place, song, result.error);
    return result;
}

std::vector<WaitingBackup> WaitingBackups(const std::vector<BackupPlace>& places) {
    std::vector<WaitingBackup> found;
    for (const BackupPlace& place : places) LookInto(place, found);
    const auto isNewer = [](const WaitingBackup& a, const WaitingBackup& b) { return a.written > b.written; };
    std::stable_sort(found.begin(), found.end(), isNewer);
    for (WaitingBackup& backup : found) backup.title = TitleOf(backup.file);
    return found;
}

fs::path PutAside(const WaitingBackup& backup) {
    std::error_code failed;
    const fs::path beside = backup.file.parent_path();
    const fs::path seen = backup.ours ? beside / kSeenDirectory : beside;
    fs::create_directories(seen, failed);
    const fs::path to = MoveUnderTime(backup.file, seen, backup.ours ? kOurs : kSeenElsewhere, backup.Time());
    return to.empty() ? backup.file : to;
}

}  // namespace vonta
