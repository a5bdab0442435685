// The devices of a kind by name, in the order of their numbers.
#pragma once

#include <string>
#include <vector>

#include "engine/SndPlayer.h"

namespace vonta {

// Empty for a kind that this build or this machine has none of. Starts the sound system for the question.
std::vector<std::string> ListDevices(DeviceKind kind);

}  // namespace vonta
