#include "audio/MixdownParts.h"

#include <algorithm>
#include <array>

namespace vonta {
namespace {

// A part's own buffer as its way to the output would bring it there.
const float* Scaled(const float* sound, bool stereo, float pan, float level, StereoBuffer& scratch) {
    const float left = (1.0f - pan) * level, right = pan * level;
    for (std::size_t frame = 0; frame < kRenderFrames; ++frame) {
        scratch[2 * frame] = sound[stereo ? 2 * frame : frame] * left;
        scratch[2 * frame + 1] = sound[stereo ? 2 * frame + 1 : frame] * right;
    }
    return scratch.data();
}

std::size_t At(int index) { return static_cast<std::size_t>(index); }

bool IsGroupOutput(const Mixer&, const Song& song, int pair) {
    return std::any_of(song.instruments.begin(), song.instruments.end(), [pair](const auto& instrument) {
        return instrument && instrument->groupOn && instrument->groupOutput == pair;
    });
}
const float* ReadOutput(const Mixer& mixer, const Song&, int pair, StereoBuffer&) {
    return mixer.finalBuffer[At(pair)].data();
}

bool HasEffect(const Mixer& mixer, const Song&, int slot) { return mixer.effects[At(slot)] != nullptr; }
const float* ReadEffect(const Mixer& mixer, const Song&, int slot, StereoBuffer& scratch) {
    const EffectSlot& effect = *mixer.effects[At(slot)];
    return Scaled(mixer.fxBuffer[At(slot)].data(), effect.OutputIsStereo(), effect.pan, effect.volume * kSlotScale,
                  scratch);
}

bool Always(const Mixer&, const Song&, int) { return true; }
const float* ReadBus(const Mixer& mixer, const Song&, int bus, StereoBuffer&) {
    return mixer.busBuffer[At(bus)].data();
}

bool HasInstrument(const Mixer&, const Song& song, int index) { return song.GetInstrument(index); }
const float* ReadGroup(const Mixer& mixer, const Song& song, int index, StereoBuffer&) {
    static constexpr StereoBuffer silence{};
    return mixer.groupUsed[At(index)] ? song.GetInstrument(index)->groupBuffer.data() : silence.data();
}

bool HasSynth(const Mixer&, const Song& song, int index) { return song.GetSynth(index); }
const float* ReadSynth(const Mixer&, const Song& song, int index, StereoBuffer& scratch) {
    const SynthPlugin& synth = *song.GetSynth(index);
    return Scaled(synth.buffer.data(), synth.OutputIsStereo(), synth.pan, synth.volume * kSynthScale, scratch);
}

struct PartKind {
    const char* name;
    std::size_t digits;                              // of the number, which counts from 1
    int count;
    bool (*exists)(const Mixer& mixer, const Song& song, int index);
    const float* (*read)(const Mixer& mixer, const Song& song, int index, StereoBuffer& scratch);
};
constexpr PartKind kParts[] = {
    {"_Master", 2, kOutputPairs, IsGroupOutput, ReadOutput},
    {"_Effect", 2, kSendSlots, HasEffect, ReadEffect},
    {"_SubGroup", 2, kBuses, Always, ReadBus},
    {"_Instr", 3, kMaxInstruments, HasInstrument, ReadGroup},
    {"_Synth", 3, kMaxInstruments, HasSynth, ReadSynth},
};
constexpr const char* kExtension = ".wav";

std::string Suffix(const PartKind& kind, int index) {
    const std::string number = std::to_string(index + 1);
    return kind.name + std::string(kind.digits - std::min(kind.digits, number.size()), '0') + number + kExtension;
}

}  // namespace

MixdownPart WholeMix(const std::string& extension) { return {extension, 0, ReadOutput}; }

std::vector<MixdownPart> FindParts(const Mixer& mixer, const Song& song) {
    std::vector<MixdownPart> parts;
    for (const PartKind& kind : kParts)
        for (int index = 0; index < kind.count; ++index)
            if (kind.exists(mixer, song, index)) parts.push_back({Suffix(kind, index), index, kind.read});
    return parts;
}

}  // namespace vonta
