// Cuts a block at the ticks: what lies between two of them is mixed in one piece.
#include <algorithm>

#include "engine/SndPlayer.h"
#include "platform/Clock.h"
#include "platform/FlushToZero.h"

namespace vonta {
namespace {

// The tick's length and position are taken once: a tempo change of an effect takes hold at the next block.
template <class MixSegment>
bool WalkTicks(Mixer& mixer, Sequencer& sequencer, int frames, bool silent, MixSegment mixSegment) {
    const int tickLength = std::max(1, static_cast<int>(Load(mixer.samplesPerTick)));
    int position = static_cast<int>(mixer.tickPosition);
    bool wrapped = false;
    for (int offset = 0; offset < frames;) {
        const int toTick = position < tickLength ? tickLength - position : position == tickLength ? 0 : tickLength;
        const int segment = std::min(toTick, frames - offset);
        if (segment > 0) mixSegment(offset, segment);
        position += segment;
        if (position >= tickLength) {
            position -= tickLength;
            mixer.cpuScan->Begin(kCpuTick);
            wrapped |= sequencer.DoTick(silent);
            mixer.cpuScan->End(kCpuTick);
        }
        offset += segment;
    }
    mixer.tickPosition = static_cast<float>(position);
    return wrapped;
}

}  // namespace

bool SndPlayer::Render(int frames) {
    const FlushToZero flush;
    frames = std::clamp(frames, 0, kMaxBlockFrames);
    requests_.ApplyMutes(*mixer_);
    mixer_->BeginBlock();
    const bool wrapped = WalkTicks(*mixer_, sequencer_, frames, false, [this](int offset, int segment) {
        mixer_->MixSegment(*song_, offset, segment);
    });
    mixer_->FinishBlock(frames, Milliseconds());
    return wrapped;
}

bool SndPlayer::RenderSilently(int frames) {
    return WalkTicks(*mixer_, sequencer_, frames, true, [](int, int) {});
}

}  // namespace vonta
