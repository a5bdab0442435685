// What makes a forward loop run without a click. All places are frames; a loop's end is the first frame behind it.
#pragma once

#include <cstdint>
#include <optional>
#include <span>

namespace vonta {

struct LoopSpan {
    std::int64_t start = 0, end = 0;
};

// How long a crossfade can be: no longer than the loop, nor than what is heard before it.
std::int64_t LongestCrossfade(const LoopSpan& loop);
// The last `frames` of the loop pass over into those before its start, so that the jump back is none.
void CrossfadeLoop(std::span<float> wave, int channels, const LoopSpan& loop, std::int64_t frames);

// The end near the present one from which the wave goes on most like it does from the loop's start: where it crosses
// the start's value the same way, if it does. Nothing where there is too little wave to compare.
std::optional<std::int64_t> FindLoopEnd(std::span<const float> wave, int channels, const LoopSpan& loop);

}  // namespace vonta
