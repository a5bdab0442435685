// The channel filters: who has something to filter, and the run of bands and filters over it.
#include <algorithm>
#include <cmath>

#include "engine/mix/Stages.h"

namespace vonta {

namespace {

bool HasBand(const Channel& channel) {
    return std::any_of(channel.eq.begin(), channel.eq.end(), [](const EqBand& band) { return band.on; });
}

// Bands work without the filter too, and a fading note keeps both to its end: dropping one would click.
bool WantsFilters(const Part& part) { return part.channel->filterOn || HasBand(*part.channel); }

// Whether a sample of the left side is above kLivePeak either way; the right side does not decide.
bool IsLive(const float* sound, int frames) {
    const __m128 peak = _mm_set1_ps(kLivePeak), sign = _mm_set1_ps(-0.0f);
    int i = 0;
    for (; i + 2 <= frames; i += 2) {
        const __m128 size = _mm_andnot_ps(sign, _mm_loadu_ps(sound + 2 * i));
        if (_mm_movemask_ps(_mm_cmpgt_ps(size, peak)) & 0b0101) return true;
    }
    return i < frames && std::abs(sound[2 * i]) > kLivePeak;
}

}  // namespace

void FindAudible(Segment& segment) {
    for (const Part& part : segment.sounding)
        if (WantsFilters(part) && IsLive(part.sound, segment.frames)) segment.audible.Add(part);
}

void RunFilters(Segment& segment) {
    for (const Part& part : segment.audible) {
        float* left = part.sound;
        float* right = part.sound + 1;
        for (EqBand& band : part.channel->eq) {
            if (!band.on) continue;
            band.ProcessLeft(left, segment.frames);
            band.ProcessRight(right, segment.frames);
        }
        if (!part.channel->filterOn) continue;
        part.channel->filterLeft->Process(left, segment.frames);
        part.channel->filterRight->Process(right, segment.frames);
    }
}

}  // namespace vonta
