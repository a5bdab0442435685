// What a fresh installation starts with.
#pragma once

#include <string>

namespace vonta {

// Writes Vonta.cfg, Keyb.cfg and Env.cfg with the defaults into a directory, each only if nothing of its name is
// there: what the user has is never replaced. False, with name and reason, if one cannot be written.
bool InstallConfigFiles(const std::string& directory, std::string& error);

}  // namespace vonta
