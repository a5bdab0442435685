// From a float of a wave to the whole numbers that files hold.
#pragma once

#include <limits>

namespace vonta {

// Truncates; values beyond the range give its ends, and what is no number gives 0.
template <class Integer>
Integer ToInteger(float value) {
    constexpr float low = std::numeric_limits<Integer>::min(), high = std::numeric_limits<Integer>::max();
    if (value >= high) return std::numeric_limits<Integer>::max();
    if (value <= low) return std::numeric_limits<Integer>::min();
    return value == value ? static_cast<Integer>(value) : Integer{0};
}

}  // namespace vonta
