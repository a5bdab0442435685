#include "app/ResourceInstall.h"

#include <cstdlib>
#include <filesystem>
#include <sstream>
#include <vector>

#include "app/config/ConfigFile.h"
#include "app/config/ConfigInstall.h"
#include "formats/streams/FileStream.h"

namespace vonta {
namespace {

namespace fs = std::filesystem;

enum class Install { WhenDifferent, WhenFresh };

// A row a file: under which name it ships, under which it is installed.
struct Resource {
    const char *shipped, *installed;
    Install when;
};
constexpr Resource kResources[] = {
    {"Vonta.dat", "Vonta.dat", Install::WhenDifferent},
    {"Skins/Default.vts", "Skins/Default.vts", Install::WhenDifferent},
    {"demo.vtm", "Songs/Harbour Lights.vtm", Install::WhenFresh},
};

bool Refuse(std::string& error, const fs::path& path, const std::string& reason) {
    error = path.string() + ": " + reason;
    return false;
}

// The copy keeps the time of the original, so that a newer program is told by its files.
bool IsSame(const fs::path& original, const fs::path& copy) {
    std::error_code failed;
    const auto size = fs::file_size(copy, failed);
    return !failed && size == fs::file_size(original, failed) && !failed &&
           fs::last_write_time(original, failed) == fs::last_write_time(copy, failed) && !failed;
}

bool CopyBytes(FileStream& from, FileStream& to) {
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(from.Size()));
    bytes.resize(from.Read(bytes.data(), 1, bytes.size()));
    return to.Write(bytes.data(), 1, bytes.size()) == bytes.size() && to.Close();
}

// Put in place when it is whole: a program that runs keeps the file that it has open.
bool Copy(const fs::path& from, const fs::path& to, std::string& error) {
    std::error_code failed;
    fs::create_directories(to.parent_path(), failed);
    DiskStream in, out;
    if (!in.Open(from.string(), "rb")) return Refuse(error, from, in.Error());
    if (!out.Open(to.string(), "wb") || !CopyBytes(in, out)) return Refuse(error, to, out.Error());
    fs::last_write_time(to, fs::last_write_time(from, failed), failed);
    return !failed || Refuse(error, to, failed.message());
}

bool IsWanted(const Resource& row, const fs::path& original, const fs::path& copy, bool fresh) {
    std::error_code failed;
    if (!fs::exists(original, failed)) return false;
    return row.when == Install::WhenFresh ? fresh && !fs::exists(copy, failed) : !IsSame(original, copy);
}

// By the XDG rules.
std::vector<fs::path> SharedDirectories() {
    const char* value = std::getenv("XDG_DATA_DIRS");
    std::istringstream list(value && *value ? value : "/usr/local/share:/usr/share");
    std::vector<fs::path> directories;
    for (std::string directory; std::getline(list, directory, ':');)
        if (fs::path(directory).is_absolute()) directories.emplace_back(directory);
    return directories;
}

}  // namespace

std::string FindShippedDirectory() {
    std::vector<fs::path> places;
    std::error_code failed;
    if (const fs::path program = fs::read_symlink("/proc/self/exe", failed).parent_path(); !failed)
        places = {program / "../share/vonta", program / "../data"};
    for (const fs::path& shared : SharedDirectories()) places.push_back(shared / "vonta");
    for (const fs::path& place : places)
        if (fs::exists(place / kResources[0].shipped, failed)) return place.lexically_normal().string();
    return {};
}

std::string FindDataDirectory(const std::string& startDirectory) {
    std::error_code failed;
    if (fs::exists(fs::path(startDirectory) / kResources[0].installed, failed)) return startDirectory;
    const std::string shipped = FindShippedDirectory();
    return shipped.empty() ? startDirectory : shipped;
}

bool InstallResources(const std::string& directory, bool& fresh, std::string& error) {
    std::error_code failed;
    fs::create_directories(directory, failed);
    if (failed) {
        error = directory + ": " + failed.message();
        return false;
    }
    fresh = !fs::exists(fs::path(directory) / kConfigFile, failed);
    if (!InstallConfigFiles(directory, error)) return false;
    const std::string shipped = FindShippedDirectory();
    if (shipped.empty()) return true;                // a portable installation brings its own
    for (const Resource& row : kResources) {
        const fs::path from = fs::path(shipped) / row.shipped, to = fs::path(directory) / row.installed;
        if (IsWanted(row, from, to, fresh) && !Copy(from, to, error)) return false;
    }
    return true;
}

}  // namespace vonta
