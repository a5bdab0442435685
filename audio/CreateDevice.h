// Every kind of sound device by its number: what the player is given to make its device with.
#pragma once

#include <memory>

#include "audio/DrvSound.h"
#include "engine/SndPlayer.h"

namespace vonta {

// A DeviceFactory. Null for a kind that this build has no library for.
std::unique_ptr<DrvSound> CreateDevice(DeviceKind kind);

}  // namespace vonta
