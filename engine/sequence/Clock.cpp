// Beats, ticks and frames.
#include <algorithm>

#include "engine/sequence/Sequencer.h"

namespace vonta {
namespace {

// A host or a script may ask for any number: inside these a tick is a sound number of frames.
constexpr float kMinPlayedBpm = 1.0f, kMaxPlayedBpm = 100000.0f;

}  // namespace

// 125 BPM give 50 ticks a second and an envelope step of 1.
void Sequencer::UpdateTickLength() {
    const double beats = static_cast<double>(bpm_);
    const double ticksPerSecond = (beats + beats) * 0.2;
    Store(mixer_.samplesPerTick, static_cast<float>(mixer_.sampleRate / ticksPerSecond));
    tickStep_ = static_cast<float>(50.0 / ticksPerSecond);
}

void Sequencer::TempoChanged() {
    for (const auto& effect : mixer_.effects)
        if (effect) effect->TempoChanged();
}

float Sequencer::BoundedBpm(float bpm) { return bpm >= kMinPlayedBpm ? std::min(bpm, kMaxPlayedBpm) : kMinPlayedBpm; }

void Sequencer::SetBPM(float bpm) {
    bpm_ = BoundedBpm(bpm);
    song_->SetBPM(static_cast<std::uint32_t>(bpm_));
    UpdateTickLength();
    TempoChanged();
}

void Sequencer::SetTempo(std::uint32_t tempo) {
    song_->SetTempo(tempo);
    UpdateTickLength();
    TempoChanged();
}

}  // namespace vonta
