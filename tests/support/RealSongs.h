// Songs that people made with other trackers, banks and recordings, as tools/fetch-songs lays them into build/songs.
#pragma once

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

namespace vonta {

inline std::filesystem::path RealSongDirectory() {
    // The programs lie in build/PRESET/bin.
    return std::filesystem::read_symlink("/proc/self/exe").parent_path() / "../../songs";
}

// The path of one of them, whether it is there or not.
inline std::string RealFile(const std::string& name) {
    return (RealSongDirectory() / name).lexically_normal().string();
}

// The paths of all with this extension (".xm"), sorted.
inline std::vector<std::string> RealSongs(const std::string& extension) {
    namespace fs = std::filesystem;
    std::vector<std::string> paths;
    std::error_code missing;
    const fs::path songs = RealSongDirectory();
    for (fs::recursive_directory_iterator at(songs, missing), end; at != end; at.increment(missing))
        if (at->path().extension() == extension) paths.push_back(at->path().lexically_normal().string());
    std::sort(paths.begin(), paths.end());
    return paths;
}

}  // namespace vonta
