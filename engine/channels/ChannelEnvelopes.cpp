// A channel's seven running envelopes and its fade: set up at the note's start, advanced once a tick.
#include <algorithm>
#include <cstdlib>

#include "engine/channels/Channel.h"

namespace vonta {
namespace {

constexpr float kCutoffPerStep = 100.0f;          // envelope value 0 to 64: 0 to 6400 Hz
constexpr float kResonancePerStep = 1.0f / 64.0f;

// True if the curve runs for this note.
bool Begin(EnvelopeState& state, const Envelope& curve) {
    state.on = curve.enabled;
    if (!state.on) return false;
    state.envelope = &curve;
    state.position = 0;
    return true;
}

}  // namespace

void Channel::SetupEnvelopes(const Envelope& volumeCurve, const Envelope& panCurve, const Envelope& cutoffCurve,
                             const Envelope& resonanceCurve, std::uint8_t pan, float cutoffValue,
                             float resonanceValue) {
    envelopeVolume = kMaxEnvelopeY;
    if (Begin(volumeEnvelope, volumeCurve)) {
        AdvanceEnvelope(volumeEnvelope, keyOff, 0.0f);
        envelopeVolume = volumeEnvelope.value;
    }
    RecomputeVolume();

    if (Begin(panEnvelopes[0], panCurve)) {
        panEnvelopes[0].base = pan;
        EvaluatePan(0, 0.0f);
    } else {
        SetPan(0, pan);
    }

    cutoff = cutoffValue;
    if (Begin(cutoffEnvelope, cutoffCurve)) {
        AdvanceEnvelope(cutoffEnvelope, keyOff, 0.0f);
        cutoff = static_cast<float>(cutoffEnvelope.value) * kCutoffPerStep;
    }

    resonance = resonanceValue;
    if (Begin(resonanceEnvelope, resonanceCurve)) {
        AdvanceEnvelope(resonanceEnvelope, keyOff, 0.0f);
        resonance = static_cast<float>(resonanceEnvelope.value) * kResonancePerStep;
    }
}

void Channel::SwitchOffEnvelopes() {
    volumeEnvelope.on = cutoffEnvelope.on = resonanceEnvelope.on = 0;
    for (EnvelopeState& state : panEnvelopes) state.on = 0;
}

// The swing is scaled to what is left up to the edge: at the centre the curve spans everything, at an edge nothing.
void Channel::EvaluatePan(int voice, float step) {
    EnvelopeState& state = panEnvelopes[static_cast<std::size_t>(voice)];
    if (!state.on) return;
    AdvanceEnvelope(state, keyOff, step);
    const int room = kCentrePan - std::abs(state.base - kCentrePan);
    SetPan(voice, static_cast<float>(state.base + ((room * (state.value - 32)) >> 5)));
}

void Channel::Tick(float step) {
    if (!active) return;
    if (volumeEnvelope.on) {
        AdvanceEnvelope(volumeEnvelope, keyOff, step);
        envelopeVolume = volumeEnvelope.value;
        RecomputeVolume();
    }
    for (int k = 0; k < numVoices; ++k) EvaluatePan(k, step);
    if (cutoffEnvelope.on) {
        AdvanceEnvelope(cutoffEnvelope, keyOff, step);
        cutoff = static_cast<float>(cutoffEnvelope.value) * kCutoffPerStep;
    }
    if (resonanceEnvelope.on) {
        AdvanceEnvelope(resonanceEnvelope, keyOff, step);
        resonance = static_cast<float>(resonanceEnvelope.value) * kResonancePerStep;
    }
    if (!keyOff) return;
    RecomputeVolume();
    fadeLevel = std::max(fadeLevel - 2 * fadeOut, 0);
    if (fadeLevel == 0) Kill();
}

}  // namespace vonta
