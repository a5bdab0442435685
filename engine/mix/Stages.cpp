#include "engine/mix/Stages.h"

#include <algorithm>

#include "platform/Shared.h"

namespace vonta {

void Segment::ClearBefore(StereoBuffer& buffer) const { std::fill_n(buffer.begin(), 2 * offset, 0.0f); }

void Segment::Silence(StereoBuffer& buffer) const { std::fill_n(At(buffer), 2 * frames, 0.0f); }

Sink Segment::Output(int pair) {
    if (pair < 0 || pair >= kOutputPairs) pair = 0;
    StereoBuffer& buffer = mixer.outputBuffer[pair];
    if (!mixer.outputUsed[pair]) {
        mixer.outputUsed[pair] = 1;
        ClearBefore(buffer);
    }
    const auto bit = static_cast<std::uint16_t>(1u << pair);
    const bool written = outputsWritten & bit;
    outputsWritten |= bit;
    return {At(buffer), written};
}

namespace {

void MixTable(Segment& segment, bool reserve) {
    Mixer& mixer = segment.mixer;
    auto& channels = reserve ? mixer.reserve : mixer.channels;
    auto& buffers = reserve ? mixer.reserveBuffer : mixer.channelBuffer;
    const auto interpolation = static_cast<Interpolation>(Load(mixer.interpolation));
    for (std::size_t i = 0; i < channels.size(); ++i) {
        Channel& channel = *channels[i];
        if (!channel.HasSound()) {
            channel.tailFlag = 0;
            continue;
        }
        float* sound = segment.At(buffers[i]);
        MixChannel(sound, channel, segment.frames, interpolation);
        if (!channel.Sounding()) continue;
        const Part part{&channel, sound, reserve};
        segment.sounding.Add(part);
        if (!Load(channel.instrumentMuted)) segment.heard.Add(part);
    }
}

}  // namespace

void MixVoices(Segment& segment) {
    MixTable(segment, false);
    MixTable(segment, true);
}

void SilenceOutputs(Segment& segment) {
    for (int pair = 0; pair < kOutputPairs; ++pair)
        if (segment.mixer.outputUsed[pair] && !(segment.outputsWritten >> pair & 1))
            segment.Silence(segment.mixer.outputBuffer[pair]);
}

}  // namespace vonta
