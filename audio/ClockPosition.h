// The position of a device without hardware: it moves through its ring with the millisecond clock.
#pragma once

#include <cstdint>

#include "audio/DrvSound.h"
#include "platform/Clock.h"

namespace vonta {

using MillisecondClock = std::uint32_t (*)();

class ClockPosition {
public:
    // ringMask: the ring's size less one, a power of two less one.
    ClockPosition(MillisecondClock clock, std::uint32_t ringMask) : clock_(clock), mask_(ringMask) {}

    void Restart(std::uint32_t sampleRate) {
        sampleRate_ = sampleRate;
        last_ = clock_();
        position_ = 0;
    }

    // Bytes, now. Fractions of a byte are lost at each call.
    std::uint32_t Advance() {
        const std::uint32_t now = clock_();
        const std::uint32_t elapsed = now - last_;   // unsigned: the clock may wrap
        last_ = now;
        const double bytes = static_cast<double>(sampleRate_) * elapsed * kDeviceFrameBytes * 0.001;
        position_ = (position_ + static_cast<std::uint32_t>(static_cast<std::uint64_t>(bytes))) & mask_;
        return position_;
    }

private:
    MillisecondClock clock_;
    std::uint32_t mask_, sampleRate_ = 0, last_ = 0, position_ = 0;
};

}  // namespace vonta
