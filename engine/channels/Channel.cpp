#include "engine/channels/Channel.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace vonta {
namespace {

constexpr double kMaxPeriod = 7680.0;
constexpr double kPeriodsPerNote = 64.0;
constexpr float kFadeStep = -0.00390625f;         // 1/256 of the gain per frame
constexpr float kGainPerVolume = 0.003f / 128.0f;

void Pitch(Voice& voice, double period, std::uint32_t sampleRate) {
    voice.period = period;
    voice.frequency = PeriodToFrequency(period);
    voice.step = FrequencyToStep(voice.frequency, sampleRate);
}

}  // namespace

std::uint32_t PeriodToFrequency(double period) {
    return static_cast<std::uint32_t>(8363.0 * std::exp2((4608.0 - period) / 768.0));
}

std::uint32_t FrequencyToStep(std::uint32_t frequency, std::uint32_t sampleRate) {
    const double fraction = static_cast<double>(frequency % sampleRate) / sampleRate;
    return ((frequency / sampleRate) << kFractionBits) +
           static_cast<std::uint32_t>(fraction * (1u << kFractionBits));
}

double NoteToPeriod(std::int32_t note, std::int32_t fineTune) {
    return kMaxPeriod - note * kPeriodsPerNote - fineTune / 2;
}

float LeftGain(int pan, int volume) {
    return static_cast<float>(std::min(255 - pan, kCentrePan) * volume) * kGainPerVolume;
}

float RightGain(int pan, int volume) {
    return static_cast<float>(std::min(pan, kCentrePan) * volume) * kGainPerVolume;
}

Channel::Channel() { Reset(); }

void Channel::Reset() {
    voices.fill(Voice{});
    numVoices = 1;
    active = tailFlag = 0;
    instrumentMuted = 0;
    volume = 128.0f;
    noteOffset = 0;
    lastInstrument = instrument = kNoInstrument;
    busLeft = busRight = 1.0f;
    groupOutput = 0;
    filterLeft = filterBankLeft[0].get();
    filterRight = filterBankRight[0].get();
    for (EqBand& band : eq) band.on = 0;
    newNoteAction = 0;
}

void Channel::Stop() {
    if (!active) return;
    for (int k = 0; k < numVoices; ++k) {
        Voice& voice = voices[static_cast<std::size_t>(k)];
        voice.fadeCount = kFadeFrames;
        voice.rampCount = 0;
        voice.fadeLeft = voice.gainLeft * kFadeStep;
        voice.fadeRight = voice.gainRight * kFadeStep;
    }
    active = 0;
    instrument = kNoInstrument;
}

void Channel::Kill() {
    SwitchOffEnvelopes();
    Stop();
}

void Channel::LetGo() {
    SwitchOffEnvelopes();
    for (Voice& voice : voices) {
        voice.position = voice.start = voice.end = voice.loopStart = voice.loopEnd = nullptr;
        voice.loopType = VTSAMPLE_LOOP_NONE;
        voice.fadeCount = 0;
    }
    active = tailFlag = 0;
    instrument = kNoInstrument;
}

void Channel::SetVolume(float value) {
    targetVolume = value;
    for (Voice& voice : voices) voice.rampCount = kRampFrames;
}

// A pan envelope at the centre reaches one beyond the right edge.
void Channel::SetPan(int voice, float value) {
    voices[static_cast<std::size_t>(voice)].pan = std::clamp(value, 0.0f, 255.0f);
    for (Voice& each : voices) each.rampCount = kRampFrames;
}

void Channel::SetNoteVolume(std::int32_t value) {
    noteVolume = std::clamp(value, 0, 128);
    RecomputeVolume();
}

void Channel::RecomputeVolume() {
    SetVolume(static_cast<float>(noteVolume * envelopeVolume * fadeLevel / (1 << 22)));
}

void Channel::SetPeriod(double period, std::uint32_t sampleRate) {
    const double bounded = std::clamp(period, 0.0, kMaxPeriod);
    const double notes = (kMaxPeriod - bounded) / kPeriodsPerNote;
    const auto note = static_cast<std::int32_t>(notes);
    const auto fine = static_cast<std::int8_t>(2.0 * (notes - note) * kPeriodsPerNote);
    for (int k = 0; k < numVoices; ++k) {
        Voice& voice = voices[static_cast<std::size_t>(k)];
        Pitch(voice, bounded, sampleRate);
        voice.note = note;
        voice.fineTune = fine;
    }
}

void Channel::PortaUp(double amount, std::uint32_t sampleRate) { SetPeriod(voices[0].period - amount, sampleRate); }

void Channel::PortaDown(double amount, std::uint32_t sampleRate) { SetPeriod(voices[0].period + amount, sampleRate); }

void Channel::SetNote(std::int32_t note, std::uint32_t sampleRate) {
    for (int k = 0; k < numVoices; ++k) {
        Voice& voice = voices[static_cast<std::size_t>(k)];
        voice.note = note;
        Pitch(voice, NoteToPeriod(note, voice.fineTune), sampleRate);
    }
}

void Channel::SetSampleOffset(std::int32_t offset) {
    for (int k = 0; k < numVoices; ++k) {
        Voice& voice = voices[static_cast<std::size_t>(k)];
        const std::ptrdiff_t at = static_cast<std::ptrdiff_t>(offset) * voice.frameSize;
        if (voice.loopType == VTSAMPLE_LOOP_NONE) {
            if (at < voice.end - voice.start) voice.position = voice.start + at;
        } else if (at <= voice.loopEnd - voice.start) {
            voice.position = voice.start + at;
        } else if (voice.loopType == VTSAMPLE_LOOP_FORDWARD) {
            voice.position = voice.loopStart;
        } else {
            voice.position = voice.loopEnd;
            voice.backward = 1;
        }
    }
}

void Channel::SetDelay(std::uint32_t frames) {
    if (!active) return;
    for (Voice& voice : voices) voice.delay = frames;
}

void Channel::Resume(bool on) {
    Voice& voice = voices[0];
    if (!on || !voice.position) {
        active = 0;
        return;
    }
    if (voice.backward) {
        if (voice.position > voice.loopStart) return;
        voice.backward = 0;
        voice.position = voice.loopStart;
        active = 1;
    } else if (voice.loopType == VTSAMPLE_LOOP_NONE) {
        active = voice.position < voice.end;
    } else {
        if (voice.position > voice.loopEnd) {
            const bool forward = voice.loopType == VTSAMPLE_LOOP_FORDWARD;
            voice.position = forward ? voice.loopStart : voice.loopEnd - voice.frameSize;
            voice.backward = !forward;
        }
        active = 1;
    }
}

// A target is a whole volume and a whole pan; the gain reached by the last ramp is set exactly, so that rounding of
// the ramp does not add up, and the next one starts from there.
void Channel::Refresh() {
    const int reached = static_cast<std::uint8_t>(volume), wanted = static_cast<std::uint8_t>(targetVolume);
    volume = targetVolume;
    if (!HasSound()) {
        for (Voice& voice : voices) voice.panByte = static_cast<std::uint8_t>(voice.pan);
        return;
    }
    for (int k = 0; k < numVoices; ++k) {
        Voice& voice = voices[static_cast<std::size_t>(k)];
        if (!voice.fadeCount) {
            voice.gainLeft = LeftGain(voice.panByte, reached);
            voice.gainRight = RightGain(voice.panByte, reached);
        }
        const auto pan = static_cast<std::uint8_t>(voice.pan);
        if (voice.rampCount) {
            voice.rampLeft = (LeftGain(pan, wanted) - voice.gainLeft) / kRampFrames;
            voice.rampRight = (RightGain(pan, wanted) - voice.gainRight) / kRampFrames;
        }
        voice.panByte = pan;
    }
    if (!filterOn) return;
    for (Filter* filter : {filterLeft, filterRight}) {
        filter->SetCutoff(cutoff);
        filter->SetResonance(resonance);
    }
}

}  // namespace vonta
