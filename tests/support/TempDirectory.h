// A directory of the test's own, gone with everything in it when the test ends.
#pragma once

#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string>
#include <vector>

namespace vonta {

class TempDirectory {
public:
    TempDirectory() {
        std::string name = (std::filesystem::temp_directory_path() / "vonta-test-XXXXXX").string();
        path_ = ::mkdtemp(name.data());
    }
    ~TempDirectory() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    TempDirectory(const TempDirectory&) = delete;
    TempDirectory& operator=(const TempDirectory&) = delete;

    const std::filesystem::path& Path() const { return path_; }
    std::string File(const std::string& name) const { return (path_ / name).string(); }

    // Its path.
    std::string Write(const std::string& name, const std::string& text) const {
        std::ofstream(path_ / name, std::ios::binary) << text;
        return File(name);
    }

    // Names of what lies in it, hidden ones too.
    std::set<std::string> List() const {
        std::set<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(path_)) names.insert(entry.path().filename());
        return names;
    }

    std::vector<std::uint8_t> Bytes(const std::string& name) const {
        std::ifstream file(path_ / name, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    std::string Text(const std::string& name) const {
        const auto bytes = Bytes(name);
        return {bytes.begin(), bytes.end()};
    }

private:
    std::filesystem::path path_;
};

}  // namespace vonta
