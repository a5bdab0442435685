// The sound of one note: up to four voices that share envelopes, filter and routing.
//
// A new note never shares a Channel with the old one: the mixer moves the old object to its reserve and puts a clean
// one in its place, so nobody keeps a reference to a Channel across a tick. Audio side only.
#pragma once

#include <array>
#include <cstdint>

#include "engine/channels/EnvelopeState.h"
#include "engine/channels/Voice.h"
#include "engine/mix/EqBand.h"
#include "engine/mix/Filter.h"
#include "plugins/Send.h"
#include "song/Instrument.h"

namespace vonta {

constexpr std::uint8_t kNoInstrument = 255;
constexpr std::int32_t kFullFade = 65536;

// The note that a channel holds on a MIDI output or a plug-in. It stays with the track when the sound moves to the
// reserve, so that its note off finds it.
struct MidiNoteState {
    std::uint8_t midiActive = 0;
    std::uint8_t midiNote = 0;
    std::uint8_t midiChannel = 0;
    std::uint8_t midiVelocity = 0;
    std::uint8_t midiDevice = 0;                  // below 128 a MIDI output, else synth plug-in + 128
    std::array<std::uint8_t, 16> controllers = NoControllers();
};

struct Channel {
    std::array<Voice, kMaxLayers> voices;
    std::uint8_t active = 0;                      // the note sounds
    std::uint8_t tailFlag = 0;                    // its last voice spent frames of this mix in a fade
    std::int32_t numVoices = 1;
    std::uint32_t sendMask = 0;                   // bit i: feeds effect slot i
    std::uint8_t busMask = 0;                     // bit b: feeds bus b
    std::uint8_t instrumentMuted = 0;             // runs, but is left out of every sum
    float volume = 128.0f;                        // of the last refresh, 0 to 128
    MidiNoteState midi;
    std::int8_t noteOffset = 0;                   // first voice's note minus the played note
    std::uint8_t lastInstrument = kNoInstrument, instrument = kNoInstrument;
    float busLeft = 1.0f, busRight = 1.0f;        // gains into buses and group
    std::uint8_t groupOutput = 0;                 // 0 none, else output pair plus 1
    std::array<float, kMixedSends> sends{};       // levels into the send slots
    Filter* filterLeft = nullptr;                 // in use, one of the banks below
    Filter* filterRight = nullptr;
    FilterBank filterBankLeft = MakeFilterBank(), filterBankRight = MakeFilterBank();
    std::uint8_t filterOn = 0;
    float cutoff = 0, resonance = 0;              // present values; Hz and 0 to 1
    std::array<EqBand, 3> eq;
    float targetVolume = 0;                       // 0 to 128
    std::uint32_t newNoteAction = 0;
    EnvelopeState volumeEnvelope;
    std::array<EnvelopeState, kMaxLayers> panEnvelopes;
    EnvelopeState cutoffEnvelope, resonanceEnvelope;
    std::int32_t fadeLevel = kFullFade;
    std::uint16_t fadeOut = 0;                    // taken from fadeLevel twice per tick after key off
    std::uint8_t keyOff = 0;
    std::int32_t noteVolume = 0;                  // 0 to 128
    std::int32_t envelopeVolume = 64;             // 0 to 64

    Channel();
    Channel(const Channel&) = delete;
    Channel& operator=(const Channel&) = delete;

    // Active, or a voice of it is fading: the mix loop has work here.
    bool HasSound() const {
        return active || voices[0].fadeCount || voices[1].fadeCount || voices[2].fadeCount || voices[3].fadeCount;
    }
    // Takes part in the stages after the mix.
    bool Sounding() const { return active || tailFlag; }

    void Reset();                                 // all but the MIDI note
    void Stop();                                  // ends the note with a fade
    void Kill();                                  // envelopes off, then Stop
    void LetGo();                                 // ends at once, of wave and curves; keeps what a later row takes up
    void SwitchOffEnvelopes();
    void SetVolume(float value);                  // 0 to 128, reached by a ramp
    void SetPan(int voice, float value);          // 0 to 255, reached by a ramp
    void SetNoteVolume(std::int32_t value);       // bounded to 0 to 128, then RecomputeVolume
    void RecomputeVolume();                       // note volume x envelope x fade

    // Linear periods, clamped to 0 to 7680; rate in Hz.
    void SetPeriod(double period, std::uint32_t sampleRate);
    void PortaUp(double amount, std::uint32_t sampleRate);
    void PortaDown(double amount, std::uint32_t sampleRate);
    void SetNote(std::int32_t note, std::uint32_t sampleRate);

    void SetSampleOffset(std::int32_t offset);    // frames
    void SetDelay(std::uint32_t frames);          // of every voice, if active
    void Resume(bool on);

    // The indices of the alternatives that this note takes; pan 0 to 255, cutoff in Hz, resonance 0 to 1.
    void SetupEnvelopes(const Envelope& volumeCurve, const Envelope& panCurve, const Envelope& cutoffCurve,
                        const Envelope& resonanceCurve, std::uint8_t pan, float cutoffValue, float resonanceValue);
    void EvaluatePan(int voice, float step);      // advances one pan envelope and stores the pan
    void Tick(float step);                        // once a tick: envelopes and fade
    void Refresh();                               // once a tick, after everything: targets become gains
};

// Linear period to Hz, and Hz to a voice's step.
std::uint32_t PeriodToFrequency(double period);
std::uint32_t FrequencyToStep(std::uint32_t frequency, std::uint32_t sampleRate);
double NoteToPeriod(std::int32_t note, std::int32_t fineTune);
// Gains of a side at a pan (0 to 255) and a volume (0 to 128): 0.381 left and 0.384 right at 128 and 128.
float LeftGain(int pan, int volume);
float RightGain(int pan, int volume);

}  // namespace vonta
