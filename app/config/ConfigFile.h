// The files of the start directory, each opened for one piece of reading or writing. What cannot be done is told in the
// debug log, and by the result with its reason; a failed save leaves the old file as it was.
#pragma once

#include <functional>
#include <string>

#include "formats/streams/FileStream.h"

namespace vonta {

constexpr const char* kConfigFile = "Vonta.cfg";
constexpr const char* kKeyTableFile = "Keyb.cfg";
constexpr const char* kEnvironmentFile = "Env.cfg";

bool ReadConfigFile(const std::string& path, const std::function<void(FileStream&)>& read);
bool WriteConfigFile(const std::string& path, const std::function<void(FileStream&)>& write,
               std::string* error = nullptr);

}  // namespace vonta
