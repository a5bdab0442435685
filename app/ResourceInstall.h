// What ships beside the program, brought into the start directory that it works from.
#pragma once

#include <string>

namespace vonta {

// Where the shipped files lie: beside the program as it was built or installed. Empty if they are nowhere.
std::string FindShippedDirectory();

// Where data pack and default skin are to be read: the start directory, or what ships if nothing could be put there.
std::string FindDataDirectory(const std::string& startDirectory);

// The configuration if it is missing, the data pack and the default skin if they are missing or not those that ship,
// and in a fresh directory the demo song. What the user made is never replaced. False, with name and reason, if one
// cannot be written. fresh: the directory held no configuration before.
bool InstallResources(const std::string& directory, bool& fresh, std::string& error);

}  // namespace vonta
