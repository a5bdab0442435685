// How sound is shown: a scope's trace as a line, a peak as the length of a bar.
#pragma once

#include <cstdint>

#include "engine/mix/ScopeTap.h"
#include "interface/video/Video.h"

namespace vonta {

// Fills the rectangle from left to right, full scale from top to bottom; what is louder is cut. On the locked surface.
void DrawWave(Video& video, const Rect& area, const ScopeTap::Trace& trace, std::uint32_t colour);

// 0 to 1, in decibels, of a peak at the 16-bit scale.
float ShownLevel(float peak);

}  // namespace vonta
