// Puts blocks into a ring of 16-bit stereo frames that plays, and counts the blocks that came too late.
//
// Block cycle's thread, but for Underruns and Forgive.
#pragma once

#include <cstdint>
#include <limits>
#include <span>

#include "platform/Shared.h"

namespace vonta {

class RingWriter {
public:
    // The ring is sound as it stands, all of it: after an opening, or a ring full of silence.
    void Forgive() { filledUntil_ = kForEver; }

    // What the blocks from here on fill the ring up to, in frames since the device began to play.
    void SetTarget(std::uint64_t frame) { target_ = frame; }

    // Frames of `values` (left and right by turns) to frame `index` of the ring, which is wrapped here, as the frames
    // behind its end are. framesPlayed tells how far the device is.
    void Write(std::span<std::int16_t> ring, std::uint64_t index, const float* values, int frames,
               std::uint64_t framesPlayed);

    std::uint32_t Underruns() const { return underruns_; }

private:
    static constexpr std::uint64_t kForEver = std::numeric_limits<std::uint64_t>::max();
    void CountIfLate(std::uint64_t framesPlayed);

    std::uint64_t target_ = 0;
    Relaxed<std::uint64_t> filledUntil_{kForEver};
    Relaxed<std::uint32_t> underruns_{0};
};

}  // namespace vonta
