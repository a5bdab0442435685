// From a float of a wave to the whole numbers that files hold.
#pragma once

#include <limits>

namespace vonta {

// Truncates; values beyond the range give its ends, and what is no number gives 0. Without a branch, so that
// loops over a wave become vector code.
template <class Integer>
Integer ToInteger(float value) {
    constexpr float low = std::numeric_limits<Integer>::min(), high = std::numeric_limits<Integer>::max();
    const float number = value == value ? value : 0.0f;
    const float aboveLow = number > low ? number : low;
    return static_cast<Integer>(aboveLow < high ? aboveLow : high);
}

}  // namespace vonta
