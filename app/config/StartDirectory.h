// The directory that the program works from: its configuration, skins and data lie there, and its crash backup.
#pragma once

#include <string>

namespace vonta {

// The current directory if it holds a Vonta.cfg (a portable installation), else the user's data directory by the XDG
// rules. It need not exist yet.
std::string FindStartDirectory();

}  // namespace vonta
