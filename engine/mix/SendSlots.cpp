// The eight send slots in rising order: each gathers its input, runs its effect, and passes the output on to later
// slots and to an output pair.
//
// Where a segment stands in a slot's buffer follows from what comes out of it: at the frame of a stereo output, at
// the float of a mono one, so that a block's mono output stands in the buffer without gaps.
#include <algorithm>

#include "engine/mix/Stages.h"
#include "platform/Shared.h"

namespace vonta {

namespace {

// A slot's mixing section as this segment found it.
struct SlotLevels {
    explicit SlotLevels(const EffectSlot& effect)
        : volume(Load(effect.volume)), pan(Load(effect.pan)), muted(Load(effect.muted)), output(Load(effect.output)) {}
    float volume, pan;
    std::uint8_t muted, output;
};

float* SlotSound(const Segment& segment, int slot) {
    const int step = segment.mixer.effects[slot]->OutputIsStereo() ? 2 : 1;
    return segment.mixer.fxBuffer[slot].data() + step * segment.offset;
}

std::uint16_t SlotBit(int slot) { return static_cast<std::uint16_t>(1u << slot); }
bool IsWritten(const Segment& segment, int slot) { return segment.slotsWritten & SlotBit(slot); }

bool IsRunning(const Segment& segment, int slot) {
    const auto& effect = segment.mixer.effects[slot];
    return effect && Load(effect->on);
}

// Adds a stereo sound to a slot's input, or stores the first.
void Feed(Segment& segment, int slot, const float* sound, float level) {
    const Sink sink{SlotSound(segment, slot), IsWritten(segment, slot)};
    segment.slotsWritten |= SlotBit(slot);
    if (segment.mixer.effects[slot]->InputIsStereo()) Sum(sink, sound, segment.frames, StereoToStereo(level, level));
    else Sum(sink, sound, segment.frames, StereoToMono(level));
}

void Gather(Segment& segment, int slot) {
    const CpuMark mark(*segment.mixer.cpuScan, kCpuSlotCopy + static_cast<std::uint32_t>(slot));
    for (const Part& part : segment.heard)
        if (part.channel->sendMask >> slot & 1)
            Feed(segment, slot, part.sound, part.channel->sends[slot] / kSlotScale);

    for (const SynthPart& synth : segment.synths) {
        const Send& send = synth.plugin->sends[slot];
        if (Load(send.on)) Feed(segment, slot, synth.sound, Load(send.level));
    }

    for (int i = 0; i < kBuses; ++i) {
        const Bus& bus = segment.song.buses[i];
        if (!(segment.busesWritten >> i & 1) || !Load(bus.active)) continue;
        for (std::size_t k = 0; k < bus.sendEnabled.size(); ++k)
            if (Load(bus.sendEnabled[k]) && Load(bus.sendTarget[k]) == slot)
                Feed(segment, slot, segment.At(segment.mixer.busBuffer[i]), Load(bus.sendGain[k]) / kSlotScale);
    }
}

// The result: whether the slot has output. What is no number would stay in an effect, and in all that it feeds.
bool Process(Segment& segment, int slot) {
    const CpuMark mark(*segment.mixer.cpuScan, kCpuSlotProcess + static_cast<std::uint32_t>(slot));
    EffectSlot& effect = *segment.mixer.effects[slot];
    float* sound = SlotSound(segment, slot);
    const bool fed = IsWritten(segment, slot);
    if (fed) DropNonFinite(sound, segment.frames * (effect.InputIsStereo() ? 2 : 1));
    const bool tail = effect.Process(sound, segment.frames, fed ? 0 : 1) != 0;
    if (!fed && !tail) return false;
    segment.slotsWritten |= SlotBit(slot);
    DropNonFinite(sound, segment.frames * (effect.OutputIsStereo() ? 2 : 1));
    return true;
}

// Stores: of several ways into a slot the last stands, and the slot's own input is added to it.
void Forward(Segment& segment, int from, int to, const SlotLevels& levels, float gain) {
    const Mixer& mixer = segment.mixer;
    const bool stereoOut = mixer.effects[from]->OutputIsStereo(), stereoIn = mixer.effects[to]->InputIsStereo();
    const float* sound = SlotSound(segment, from);
    const Sink sink{SlotSound(segment, to), false};
    const float level = levels.volume * gain;
    const float left = (1.0f - levels.pan) * level, right = levels.pan * level;
    if (stereoOut && stereoIn) Sum(sink, sound, segment.frames, StereoToStereo(left, right));
    else if (stereoIn) Sum(sink, sound, segment.frames, MonoToStereo(left, right));
    else if (stereoOut) Sum(sink, sound, segment.frames, StereoToMono(level * 0.5f));
    else Sum(sink, sound, segment.frames, MonoToMono(level * gain));   // the gain counts twice
    segment.slotsWritten |= SlotBit(to);
}

void Route(Segment& segment, int slot) {
    const CpuMark mark(*segment.mixer.cpuScan, kCpuSlotMix + static_cast<std::uint32_t>(slot));
    const EffectSlot& effect = *segment.mixer.effects[slot];
    const SlotLevels levels(effect);
    if (levels.muted) return;

    const FxRouting& routing = segment.song.fxRouting[slot];
    for (std::size_t k = 0; k < routing.target.size(); ++k) {
        const int target = Load(routing.target[k]);
        const bool isLater = target > slot && target < kSendSlots;      // an earlier one has run already
        if (isLater && Load(routing.enabled[k]) && IsRunning(segment, target))
            Forward(segment, slot, target, levels, Load(routing.gain[k]));
    }

    const float left = (1.0f - levels.pan) * levels.volume * kSlotScale;
    const float right = levels.pan * levels.volume * kSlotScale;
    const float* sound = SlotSound(segment, slot);
    if (effect.OutputIsStereo()) Sum(segment.Output(levels.output), sound, segment.frames, StereoToStereo(left, right));
    else Sum(segment.Output(levels.output), sound, segment.frames, MonoToStereo(left, right));
}

void ClearIdle(Segment& segment, int slot) {
    const auto& effect = segment.mixer.effects[slot];
    if (!segment.mixer.clearIdle || !effect) return;
    float* sound = SlotSound(segment, slot);
    std::fill(sound, sound + segment.frames * (effect->OutputIsStereo() ? 2 : 1), 0.0f);
}

}  // namespace

void RunSendSlots(Segment& segment) {
    for (int slot = 0; slot < kSendSlots; ++slot) {
        bool hasOutput = false;
        if (IsRunning(segment, slot)) {
            Gather(segment, slot);
            hasOutput = Process(segment, slot);
            if (hasOutput) Route(segment, slot);
        }
        if (!hasOutput) ClearIdle(segment, slot);
    }
}

}  // namespace vonta
