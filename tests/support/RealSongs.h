// Songs that people made with other trackers, as tools/fetch-songs lays them into build/songs.
#pragma once

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

namespace vonta {

// The paths of all with this extension (".xm"), sorted.
inline std::vector<std::string> RealSongs(const std::string& extension) {
    namespace fs = std::filesystem;
    std::vector<std::string> paths;
    std::error_code missing;
    // The programs lie in build/PRESET/bin.
    const fs::path songs = fs::read_symlink("/proc/self/exe").parent_path() / "../../songs";
    for (fs::recursive_directory_iterator at(songs, missing), end; at != end; at.increment(missing))
        if (at->path().extension() == extension) paths.push_back(at->path().lexically_normal().string());
    std::sort(paths.begin(), paths.end());
    return paths;
}

}  // namespace vonta
