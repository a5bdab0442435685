// The four buses: gathered from the table's channels and the plug-ins, and mixed to their outputs.
#include <algorithm>

#include "engine/mix/Stages.h"
#include "platform/Shared.h"

namespace vonta {

namespace {

Sink BusSink(Segment& segment, int bus) {
    const auto bit = static_cast<std::uint8_t>(1u << bus);
    const bool written = segment.busesWritten & bit;
    segment.busesWritten |= bit;
    return {segment.At(segment.mixer.busBuffer[bus]), written};
}

}  // namespace

void MixBuses(Segment& segment) {
    for (int bus = 0; bus < kBuses; ++bus) {
        for (const Part& part : segment.heard) {
            const Channel& channel = *part.channel;
            if (part.reserve || !(channel.busMask >> bus & 1)) continue;
            Sum(BusSink(segment, bus), part.sound, segment.frames,
                StereoToStereo(channel.busLeft, channel.busRight));
        }
        for (const SynthPart& synth : segment.synths) {
            if (synth.muted || !Load(synth.plugin->busEnable[bus])) continue;
            Sum(BusSink(segment, bus), synth.sound, segment.frames, StereoToStereo(synth.left, synth.right));
        }
    }
}

void MixBusesOut(Segment& segment) {
    for (int i = 0; i < kBuses; ++i) {
        const Bus& bus = segment.song.buses[i];
        float* sound = segment.At(segment.mixer.busBuffer[i]);
        if (!(segment.busesWritten >> i & 1)) {
            if (segment.mixer.clearIdle) std::fill(sound, sound + 2 * segment.frames, 0.0f);
        } else if (Load(bus.active)) {
            const float volume = Load(bus.volume);
            Sum(segment.Output(Load(bus.output)), sound, segment.frames, StereoToStereo(volume, volume));
        }
    }
}

}  // namespace vonta
