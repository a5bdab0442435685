// The end of a block: the two master slots on the main output, MIDI time, amplification and clip.
#include <algorithm>

#include "engine/mix/Mixer.h"
#include "engine/mix/StereoSum.h"
#include "platform/Shared.h"

namespace vonta {

namespace {

void RunMasterSlot(Mixer& mixer, int slot, int frames) {
    const auto& effect = mixer.effects[slot];
    if (!effect || !Load(effect->on)) return;
    float* sound = mixer.outputBuffer[0].data();
    if (!mixer.outputUsed[0]) {
        mixer.outputUsed[0] = 1;
        std::fill(sound, sound + 2 * frames, 0.0f);
    }
    if (effect->InputIsStereo() && effect->OutputIsStereo()) {
        const CpuMark mark(*mixer.cpuScan, kCpuSlotProcess + static_cast<std::uint32_t>(slot));
        DropNonFinite(sound, 2 * frames);
        effect->Process(sound, frames, 0);
    }
    const CpuMark mark(*mixer.cpuScan, kCpuSlotCopy + static_cast<std::uint32_t>(slot));
    std::copy(sound, sound + 2 * frames, mixer.fxBuffer[slot].data());
    Store(mixer.fxUsed, static_cast<std::uint16_t>(mixer.fxUsed | 1u << slot));
}

void ClipOutputs(Mixer& mixer, int frames) {
    const CpuMark mark(*mixer.cpuScan, kCpuClipping);
    const Clipped clipped(Load(mixer.masterAmp), kClipBound);
    for (int pair = 0; pair < kOutputPairs; ++pair) {
        if (mixer.outputUsed[pair]) {
            SumFrames<false>(mixer.finalBuffer[pair].data(), mixer.outputBuffer[pair].data(), frames, clipped);
            mixer.finalZeroed[pair] = 0;
        } else if (!mixer.finalZeroed[pair]) {
            mixer.finalBuffer[pair].fill(0.0f);
            mixer.finalZeroed[pair] = 1;
        }
    }
}

}  // namespace

void Mixer::FinishBlock(int frames, std::uint32_t now) {
    for (int slot = kSendSlots; slot < kEffectSlots; ++slot) RunMasterSlot(*this, slot, frames);
    for (int port = 0; port < kFlushedMidiOuts; ++port)
        if (midiOut[port]) midiOut[port]->Flush(now);
    ClipOutputs(*this, frames);
    scope.TakeBlock(*this, frames);
}

}  // namespace vonta
