// What happens when a note is played: which samples sound for a key and a velocity, how envelopes and a filter
// shape them, where the sound goes, and what is sent to MIDI or a plug-in.
//
// Fields in the order of the files that hold them. Structural changes (samples, zones, plug-in) happen while the
// player is paused; single fields are plain stores.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "plugins/Send.h"
#include "plugins/SynthPlugin.h"
#include "song/Envelope.h"
#include "song/Sample.h"

namespace vonta {

constexpr int kKeys = 128;
constexpr int kFixedKeyNote = 60;        // what a fixed key plays
constexpr int kMaxLayers = 4;
constexpr int kFullVelocity = 127;
constexpr int kMaxSamples = 256;
constexpr int kUsedSamples = 16;         // files and the self-check know the first sixteen
constexpr int kEnvelopeAlternatives = 8;
constexpr int kEnvelopeKinds = 4;
constexpr int kEffectCodes = 21;
constexpr std::uint16_t kMaxFadeOut = 4095;

enum class EnvelopeKind { Volume, Pan, Cutoff, Resonance };

// A velocity range of one key. The zones of a key stand sorted by velocityLow; the next zone is the next element.
struct KeyZone {
    std::int32_t velocityLow = 0, velocityHigh = kFullVelocity;      // inclusive
    std::array<std::uint8_t, kMaxLayers> samples{};        // layers that sound together
    std::uint8_t numSamples = 0;
    bool operator==(const KeyZone&) const = default;
};

constexpr std::array<std::uint8_t, 16> NoControllers() {
    std::array<std::uint8_t, 16> controllers{};
    controllers.fill(255);
    return controllers;
}

struct MidiSettings {
    std::uint8_t enabled = 0;
    std::uint8_t device = 0;             // MIDI output number
    std::uint8_t synth = 0;              // plug-in number, instead of device when the instrument's useSynth is set
    std::uint8_t channel = 0;
    std::uint8_t program = 0;
    std::uint8_t volume = 127;
    std::uint8_t pan = 0;
    std::int8_t transpose = 0;           // semitones
    std::uint16_t bank = 0;
    std::uint8_t sendVolume = 0, sendPan = 0, sendBank = 0;
    std::array<std::uint8_t, 16> controllers = NoControllers();   // per effect code 0 to 15; 255 none
    bool operator==(const MidiSettings&) const = default;
};

struct EqSettings {
    std::uint8_t on = 0;
    float frequency = 0;                 // Hz
    float gain = 0;                      // -1 to 1; the band takes it times 25, in dB
    bool operator==(const EqSettings&) const = default;
};

constexpr std::array<std::uint32_t, kEffectCodes> IdentityEffectMap() {
    std::array<std::uint32_t, kEffectCodes> map{};
    for (std::uint32_t i = 0; i < map.size(); ++i) map[i] = i;
    return map;
}

struct Instrument {
    using Envelopes = std::array<Envelope, kEnvelopeAlternatives>;

    std::string name;                                             // at most 255 characters
    std::int32_t numSamples = 0;                                  // count of AddSample
    std::array<std::unique_ptr<Sample>, kMaxSamples> samples;
    std::unique_ptr<SynthPlugin> synth;
    std::vector<std::uint8_t> missingSynth;                       // the file's words on one that could not be loaded
    Envelopes volumeEnvelopes, panEnvelopes, cutoffEnvelopes, resonanceEnvelopes;
    std::array<std::vector<KeyZone>, kKeys> keyZones;
    std::array<std::uint8_t, kKeys> fixedKey{};                   // 1: the key plays at note 60 whatever it is
    std::uint16_t fadeOut = 0;                                    // 0 to 4095
    std::uint8_t muted = 0;                                       // new notes start silent
    std::uint8_t groupOn = 1;                                     // voices also pass through the instrument's group
    std::uint8_t groupOutput = 0;                                 // output pair of that group
    std::array<std::uint32_t, kEffectCodes> effectMap = IdentityEffectMap();
    Sends sends = DefaultSends();
    MidiSettings midi;
    std::array<std::uint8_t, kBuses> busMask{};
    std::uint32_t newNoteAction = 0;                              // 0 cut, 1 the old note goes on in the reserve
    std::uint32_t kind = 0;                                       // 0 samples, 1 plug-in
    std::array<std::int32_t, kEnvelopeKinds> rotation{};          // next alternative of each kind; run-time
    float pan = 0.5f;                                             // 0.0 left, 1.0 right
    std::int32_t transpose = 0;                                   // semitones
    std::int32_t fineTune = 0;                                    // added to the sample's
    std::uint8_t useSynth = 0;
    std::array<EqSettings, 3> eq{{{0, 32.0f, 0.0f}, {0, 2540.0f, 0.0f}, {0, 13500.0f, 0.0f}}};
    std::uint32_t color = 0xE0E0E0;                               // 0x00RRGGBB in the pattern view
    std::array<float, kBlockFloats> groupBuffer{};                // run-time
    std::uint8_t filterOn = 0;
    float cutoff = 5000.0f;                                       // Hz
    float cutoffLfoDepth = 5000.0f;
    std::int32_t cutoffLfoWave = 0;                               // 0 off, 1 sine, 2 square, 3 and 4 saws, 5 random
    float cutoffLfoPeriod = 50.0f;                                // notes for one cycle
    float resonance = 0.5f;
    float resonanceLfoDepth = 0.5f;                               // stored and saved only, as the next two
    std::int32_t resonanceLfoWave = 0;
    float resonanceLfoPeriod = 10.0f;
    std::int32_t filterType = 1;                                  // index in the filter bank
    float cutoffLfoPhase = 0.0f, resonanceLfoPhase = 0.0f;        // degrees; run-time
    float gain = 1.0f;                                            // linear
    std::array<std::int32_t, kEnvelopeKinds> shownEnvelope{};     // which alternative the editor shows

    Instrument();

    void SetName(std::string_view text);                          // cut to 255 characters
    Sample* GetSample(int index) const;                           // null outside 0 to 255 or if empty
    Envelopes& GetEnvelopes(EnvelopeKind which);
    const Envelopes& GetEnvelopes(EnvelopeKind which) const;

    // Takes it at numSamples and counts up; returns the index, or -1 (and drops it) when all places are taken.
    int AddSample(std::unique_ptr<Sample> sample);
    // Replaces and returns the former one. With keep 0 the new sample gets volume 128 and the former one's toneRel, and
    // an empty one does nothing.
    std::unique_ptr<Sample> SetSample(int index, std::unique_ptr<Sample> sample, int keep);

    const KeyZone* FindZone(int key, int velocity) const;         // null if none
    int GetKeySample(int key, int layer, int velocity) const;     // -1 if none
    int CountLayers(int key, int velocity) const;
    int CountZones(int key) const;
    const KeyZone* GetZone(int key, int index) const;
    void SetKeySample(int key, int sample, int velocityLow, int velocityHigh);   // the zone holds this one
    void AddKeySample(int key, int sample, int velocityLow, int velocityHigh);   // appended, up to four
    void MapAllKeys();                                            // every key and velocity: sample 0

    // Round robin: the next enabled alternative, or the next one if none is enabled.
    int NextEnvelope(EnvelopeKind which);

    // Installs a plug-in that has been loaded, or null for a failed load. 0 and kind 1, or 1 and kind 0.
    int SetSynth(std::unique_ptr<SynthPlugin> plugin);

    std::unique_ptr<Instrument> Duplicate() const;                // what a copy keeps: see docs/decisions.md
    void Validate();
};

// What the editor shows beside a controller entry: "0A: Pan", or "None" for 255.
std::string ControllerText(int controller);

}  // namespace vonta
