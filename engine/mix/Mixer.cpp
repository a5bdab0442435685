#include "engine/mix/Mixer.h"


#include "engine/mix/Stages.h"
#include "platform/Shared.h"

namespace vonta {

Mixer::Mixer() {
    for (auto& channel : channels) channel = std::make_unique<Channel>();
    for (auto& channel : reserve) channel = std::make_unique<Channel>();
    for (int pair = 0; pair < kOutputPairs; ++pair) outputs[pair] = finalBuffer[pair].data();
}

void Mixer::BeginBlock() {
    outputUsed.fill(0);
    groupUsed.fill(0);
}

void Mixer::MixSegment(Song& song, int offset, int frames) {
    struct Stage {
        CpuSection section;                       // the send slots mark their own
        void (*run)(Segment&);
    };
    static constexpr Stage kStages[] = {
        {kCpuScaling, MixVoices}, {kCpuPeaks, FindAudible}, {kCpuFilters, RunFilters}, {kCpuFilters, RunSynths},
        {kCpuScaling, MixBuses},  {kCpuUnshown, RunSendSlots}, {kCpuMixing, MixGroups}, {kCpuMixing, MixSynthsOut},
        {kCpuMixing, MixBusesOut}, {kCpuMixing, SilenceOutputs},
    };
    Segment segment(*this, song, offset, frames);
    for (const Stage& stage : kStages) {
        const CpuMark mark(*cpuScan, stage.section);
        stage.run(segment);
    }
    Store(busUsed, segment.busesWritten);
    Store(fxUsed, segment.slotsWritten);
    scope.TakeSegment(*this, offset, frames);
}

void Mixer::SetEffect(int slot, std::unique_ptr<EffectSlot> effect) {
    if (slot < 0 || slot >= kEffectSlots) return;
    if (effect && !effect->Init(0, 0, 0, sampleRate)) return;
    auto& place = effects[slot];
    if (place && effect) Store(effect->on, Load(place->on));
    if (place) place->Uninit();
    place = std::move(effect);
}

void Mixer::EffectOn(int slot, std::uint8_t on) {
    if (slot >= 0 && slot < kEffectSlots && effects[slot]) Store(effects[slot]->on, on);
}

DrvMIDIOUT* Mixer::MidiOutput(const Song& song, int output) {
    constexpr int kFirstSynth = 128;
    if (output < 0) return nullptr;
    if (output < kFirstSynth) return midiOut[output].get();
    SynthPlugin* synth = song.GetSynth(output - kFirstSynth);
    return synth ? &synth->midiSide : nullptr;
}

}  // namespace vonta
