#include "engine/mix/ScopeTap.h"

#include <algorithm>
#include <cmath>

#include "engine/mix/Mixer.h"

namespace vonta {
namespace {

constexpr float kPointRate = 44100.0f;            // points a second

}  // namespace

// Short pieces fill a trace one after the other; one that is full begins anew with the next piece.
ScopeTap::Walk ScopeTap::Next(int& at, float sampleRate, int frames) {
    if (at >= kPoints) at = 0;
    const float step = sampleRate / kPointRate;
    Walk walk{at, std::min(kPoints - at, static_cast<int>(std::ceil(static_cast<float>(frames) / step))), step};
    at += walk.count;
    return walk;
}

void ScopeTap::Silence(Kept& kept) {
    if (kept.silent) return;
    for (auto& point : kept.points) point = 0.0f;
    kept.silent = true;
}

void ScopeTap::NoteReadings(std::size_t track, const Channel& channel) {
    active_[track] = channel.active;
    instruments_[track] = channel.instrument;
    for (std::size_t k = 0; k < kMaxLayers; ++k) {
        const Voice& voice = channel.voices[k];
        Reading& reading = readings_[track][k];
        const bool reads = channel.active && static_cast<std::int32_t>(k) < channel.numVoices && voice.start;
        if (reads) reading.position = static_cast<std::uint32_t>(voice.position - voice.start);
        reading.wave = reads ? voice.start : nullptr;
    }
}

void ScopeTap::TakeSegment(const Mixer& mixer, int offset, int frames) {
    for (std::size_t track = 0; track < tracks_.size(); ++track) NoteReadings(track, *mixer.channels[track]);
    if (segmentsWanted_ <= 0) return;
    segmentsWanted_ = segmentsWanted_ - 1;
    const Walk walk = Next(trackPoint_, static_cast<float>(mixer.sampleRate), frames);
    for (std::size_t track = 0; track < tracks_.size(); ++track) {
        const Channel& channel = *mixer.channels[track];
        if (!channel.Sounding() || Load(channel.instrumentMuted)) {
            Silence(tracks_[track]);
            continue;
        }
        tracks_[track].silent = false;
        const float* sound = mixer.channelBuffer[track].data() + 2 * offset;
        for (int i = 0; i < walk.count; ++i) {
            const int frame = std::min(static_cast<int>(static_cast<float>(i) * walk.step), frames - 1);
            tracks_[track].points[static_cast<std::size_t>(walk.first + i)] = sound[2 * frame] + sound[2 * frame + 1];
        }
    }
}

void ScopeTap::TakeBlock(const Mixer& mixer, int frames) {
    if (segmentsWanted_ <= 0) return;
    const float* sound = mixer.finalBuffer[0].data();
    const Walk walk = Next(outputPoint_, static_cast<float>(mixer.sampleRate), frames);
    for (std::size_t side = 0; side < output_.size(); ++side) {
        if (mixer.finalZeroed[0]) {
            Silence(output_[side]);
            continue;
        }
        float peak = peak_[side].load(std::memory_order_relaxed);
        for (int frame = 0; frame < frames; ++frame)
            peak = std::max(peak, std::abs(sound[2 * frame + static_cast<int>(side)]));
        peak_[side].store(peak, std::memory_order_relaxed);
        output_[side].silent = false;
        for (int i = 0; i < walk.count; ++i) {
            const int frame = std::min(static_cast<int>(static_cast<float>(i) * walk.step), frames - 1);
            output_[side].points[static_cast<std::size_t>(walk.first + i)] = sound[2 * frame + static_cast<int>(side)];
        }
    }
}

}  // namespace vonta
