// A float of the mix as a 16-bit value.
#pragma once

#include <xmmintrin.h>

#include <cstdint>

namespace vonta {

// The low 16 bits of the truncated value: nothing clips here. The instruction is defined for every float, where a cast
// is not.
inline std::int16_t Truncated16(float value) { return static_cast<std::int16_t>(_mm_cvttss_si32(_mm_set_ss(value))); }

}  // namespace vonta
