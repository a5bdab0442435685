// What a fresh installation starts with.
#pragma once

#include <string>

#include "app/config/Config.h"

namespace vonta {

// The defaults, but in a window: a new user's desktop keeps its mode.
Config FreshConfig();

// Writes Vonta.cfg, Keyb.cfg and Env.cfg with the defaults into a directory, each only if nothing of its name is
// there: what the user has is never replaced. False, with name and reason, if one cannot be written.
bool InstallConfigFiles(const std::string& directory, std::string& error);

}  // namespace vonta
