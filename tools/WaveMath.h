// Small steps that the makers of waves share.
#pragma once

#include <algorithm>
#include <cmath>
#include <utility>

#include "tools/DemoWaves.h"

namespace vonta::demo {

// Scaled so that its peak is 1.
inline Wave Normalised(Wave wave) {
    float peak = 0;
    for (const float value : wave) peak = std::max(peak, std::abs(value));
    if (peak > 0)
        for (float& value : wave) value /= peak;
    return wave;
}

// The last floats go to silence, so that a wave that rings out does not end in a click.
inline void FadeEnd(Wave& wave, std::size_t floats) {
    floats = std::min(floats, wave.size());
    for (std::size_t i = 0; i < floats; ++i)
        wave[wave.size() - 1 - i] *= static_cast<float>(i) / static_cast<float>(floats);
}

}  // namespace vonta::demo
