// Cuts a block at the ticks: what lies between two of them is mixed in one piece.
#include <algorithm>

#include "engine/SndPlayer.h"
#include "platform/Clock.h"
#include "platform/FlushToZero.h"

namespace vonta {
// The tick's length and position are taken once: a tempo change of an effect takes hold at the next block.
template <class MixSegment>
bool SndPlayer::WalkTicks(int frames, bool silent, MixSegment mixSegment) {
    const int tickLength = std::max(1, static_cast<int>(Load(mixer_->samplesPerTick)));
    int position = static_cast<int>(mixer_->tickPosition);
    bool wrapped = false;
    for (int offset = 0; offset < frames;) {
        const int toTick = position < tickLength ? tickLength - position : position == tickLength ? 0 : tickLength;
        const int segment = std::min(toTick, frames - offset);
        if (segment > 0) mixSegment(offset, segment);
        position += segment;
        if (position >= tickLength) {
            position -= tickLength;
            mixer_->cpuScan->Begin(kCpuTick);
            wrapped |= DoTick(silent);
            mixer_->cpuScan->End(kCpuTick);
        }
        offset += segment;
    }
    mixer_->tickPosition = static_cast<float>(position);
    return wrapped;
}

bool SndPlayer::Render(int frames) {
    const FlushToZero flush;
    frames = std::clamp(frames, 0, kMaxBlockFrames);
    ApplyMuteRequests();
    mixer_->BeginBlock();
    const bool wrapped = WalkTicks(frames, false, [this](int offset, int segment) {
        mixer_->MixSegment(*song_, offset, segment);
    });
    mixer_->FinishBlock(frames, Milliseconds());
    return wrapped;
}

bool SndPlayer::RenderSilently(int frames) {
    return WalkTicks(frames, true, [](int, int) {});
}

}  // namespace vonta
