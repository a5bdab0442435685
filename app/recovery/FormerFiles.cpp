#include "app/recovery/FormerFiles.h"

#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <vector>

namespace vonta {
namespace {

namespace fs = std::filesystem;

constexpr const char* kFolder = "Backups";

std::string TimeStamp() {
    const std::time_t now = std::time(nullptr);
    std::tm parts{};
    char text[32] = "";
    if (localtime_r(&now, &parts)) std::strftime(text, sizeof text, "%Y%m%d-%H%M%S", &parts);
    return text;
}

// NAME-20261123-101500-00.vtm, with another number for the next ones of one second: in the order of their names.
bool IsFormerOf(const fs::path& file, const fs::path& name) {
    const std::string text = file.filename().string(), stem = name.stem().string() + "-";
    constexpr std::size_t kStampLength = 18;
    return text.starts_with(stem) && text.size() >= stem.size() + kStampLength && file.extension() == name.extension() &&
           text.find_first_not_of("0123456789-", stem.size()) >= stem.size() + kStampLength;
}

int NextNumber(const fs::path& folder, const std::string& stem) {
    int next = 0;
    std::error_code none;
    for (fs::directory_iterator at(folder, none), end; !none && at != end; at.increment(none)) {
        const std::string name = at->path().filename().string();
        if (name.starts_with(stem + "-")) next = std::max(next, std::atoi(name.c_str() + stem.size() + 1) + 1);
    }
    return next;
}

void DropOldest(const fs::path& folder, const fs::path& name) {
    std::vector<fs::path> kept;
    std::error_code none;
    for (fs::directory_iterator at(folder, none), end; !none && at != end; at.increment(none))
        if (IsFormerOf(at->path(), name)) kept.push_back(at->path());
    std::ranges::sort(kept);
    for (std::size_t i = 0; i + kFormerFiles < kept.size(); ++i) fs::remove(kept[i], none);
}

}  // namespace

bool KeepFormerFile(const std::string& startDirectory, const std::string& path, std::string& error) {
    std::error_code failed;
    const fs::path file = fs::canonical(path, failed);           // behind a link stands what is replaced
    if (failed || !fs::is_regular_file(file, failed)) return true;
    const fs::path folder = fs::path(startDirectory) / kFolder;
    fs::create_directories(folder, failed);
    const std::string stem = file.stem().string() + "-" + TimeStamp();
    for (int i = NextNumber(folder, stem); i < 100 && !failed; ++i) {
        const std::string number = std::to_string(i / 10) + std::to_string(i % 10);
        const fs::path to = folder / (stem + "-" + number + file.extension().string());
        if (fs::exists(fs::symlink_status(to, failed))) continue;
        failed.clear();
        fs::create_hard_link(file, to, failed);
        if (failed) {
            failed.clear();
            fs::copy_file(file, to, failed);
        }
        if (failed) break;
        DropOldest(folder, file.filename());
        return true;
    }
    error = failed ? failed.message() : "no name is free";
    return false;
}

}  // namespace vonta
