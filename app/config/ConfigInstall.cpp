#include "app/config/ConfigInstall.h"

#include <filesystem>

#include "app/config/Config.h"
#include "app/config/ConfigFile.h"
#include "app/config/ConfigText.h"
#include "app/config/Environment.h"

namespace vonta {
namespace {

struct DefaultFile {
    const char* name;
    void (*write)(FileStream& stream);
};

// The defaults, but in a window: a new user's desktop keeps its mode.
Config FreshConfig() {
    Config config;
    config.flags &= ~std::uint32_t{kFullscreen};
    return config;
}

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

bool InstallConfigFiles(const std::string& directory, std::string& error) {
    for (const DefaultFile& file : kDefaultFiles) {
        const auto path = std::filesystem::path(directory) / file.name;
        if (IsFree(path) && !WriteConfigFile(path.string(), file.write, &error)) return false;
    }
    return true;
}

}  // namespace vonta
