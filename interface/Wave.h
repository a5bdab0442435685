// A scope's trace as a line.
#pragma once

#include <cstdint>

#include "engine/ScopeTap.h"
#include "interface/Video.h"

namespace vonta {

// Fills the rectangle from left to right, full scale from top to bottom; what is louder is cut. On the locked surface.
void DrawWave(Video& video, const Rect& area, const ScopeTap::Trace& trace, std::uint32_t colour);

}  // namespace vonta
