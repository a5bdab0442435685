#include "audio/RingWriter.h"

#include "audio/Truncated16.h"

namespace vonta {

void RingWriter::Write(std::span<std::int16_t> ring, std::uint64_t index, const float* values, int frames,
                       std::uint64_t framesPlayed) {
    const std::size_t ringFrames = ring.size() / 2;
    if (ringFrames == 0) return;
    std::size_t at = index % ringFrames;
    for (int i = 0; i < frames; ++i) {
        Store(ring[2 * at], Truncated16(values[2 * i]));
        Store(ring[2 * at + 1], Truncated16(values[2 * i + 1]));
        if (++at == ringFrames) at = 0;
    }
    if (static_cast<std::size_t>(frames) >= ringFrames) Forgive();
    else CountIfLate(framesPlayed);
}

void RingWriter::CountIfLate(std::uint64_t framesPlayed) {
    if (framesPlayed > filledUntil_) underruns_ = underruns_ + 1;
    filledUntil_ = target_;
}

}  // namespace vonta
