// Denormal floats cost a hundred cycles each; a decaying filter makes millions of them. Every thread that
// renders holds one of these around the rendering.
#pragma once

#include <xmmintrin.h>
#include <pmmintrin.h>

namespace vonta {

class FlushToZero {
public:
    FlushToZero() : saved_(_mm_getcsr()) {
        _mm_setcsr(saved_ | _MM_FLUSH_ZERO_ON | _MM_DENORMALS_ZERO_ON);
    }
    ~FlushToZero() { _mm_setcsr(saved_); }
    FlushToZero(const FlushToZero&) = delete;
    FlushToZero& operator=(const FlushToZero&) = delete;

private:
    unsigned saved_;
};

}  // namespace vonta
