#include "app/config/StartDirectory.h"

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>

namespace vonta {
namespace {

namespace fs = std::filesystem;

// Only absolute paths count: the rules tell to pass over the others.
fs::path AbsoluteVariable(const char* name) {
    const char* value = std::getenv(name);
    return value && fs::path(value).is_absolute() ? fs::path(value) : fs::path();
}

fs::path HomeDirectory() {
    if (fs::path home = AbsoluteVariable("HOME"); !home.empty()) return home;
    const passwd* user = getpwuid(getuid());
    return user && user->pw_dir ? user->pw_dir : "";
}

}  // namespace

std::string FindStartDirectory() {
    std::error_code failed;
    const fs::path here = fs::current_path(failed);
    if (!failed && fs::exists(here / "Vonta.cfg", failed)) return here;
    if (const fs::path data = AbsoluteVariable("XDG_DATA_HOME"); !data.empty()) return data / "vonta";
    if (const fs::path home = HomeDirectory(); !home.empty()) return home / ".local/share/vonta";
    return here;
}

}  // namespace vonta
