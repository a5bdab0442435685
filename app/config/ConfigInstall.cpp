#include "app/config/ConfigInstall.h"

#include <filesystem>

#include "app/config/ConfigFile.h"
#include "app/config/ConfigText.h"
#include "app/config/Environment.h"

namespace vonta {
namespace {

struct DefaultFile {
    const char* name;
    void (*write)(FileStream& stream);
};

constexpr DefaultFile kDefaultFiles[] = {
    {kConfigFile, [](FileStream& stream) { WriteConfigText(stream, FreshConfig()); }},
    {kKeyTableFile, [](FileStream& stream) { WriteKeyTable(stream, DefaultKeyTable()); }},
    {kEnvironmentFile, [](FileStream& stream) { WriteEnvironment(stream, {}); }},
};

// A link that leads nowhere is the user's too.
bool IsFree(const std::filesystem::path& path) {
    std::error_code failed;
    return std::filesystem::symlink_status(path, failed).type() == std::filesystem::file_type::not_found;
}

}  // namespace

Config FreshConfig() {
    Config config;
    config.flags &= ~std::uint32_t{kFullscreen};
    return config;
}

bool InstallConfigFiles(const std::string& directory, std::string& error) {
    for (const DefaultFile& file : kDefaultFiles) {
        const auto path = std::filesystem::path(directory) / file.name;
        if (IsFree(path) && !WriteConfigFile(path.string(), file.write, &error)) return false;
    }
    return true;
}

}  // namespace vonta
