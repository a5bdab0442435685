#include "song/Instrument.h"

#include <algorithm>
#include <utility>

#include "platform/Debug.h"
#include "platform/Shared.h"

namespace vonta {
namespace {

constexpr std::size_t kMaxNameLength = 255;
constexpr std::uint8_t kFullVolume = 128;
constexpr std::size_t kMaxZones = 256;      // of one key; more comes only from a file that means harm

constexpr Instrument::Envelopes Instrument::* kEnvelopesOfKind[kEnvelopeKinds] = {
    &Instrument::volumeEnvelopes, &Instrument::panEnvelopes, &Instrument::cutoffEnvelopes,
    &Instrument::resonanceEnvelopes};

bool IsKey(int key) { return key >= 0 && key < kKeys; }

// The zone with exactly these velocities, made if need be; null when it cannot be.
KeyZone* FindOrMakeZone(std::vector<KeyZone>& zones, int low, int high) {
    const auto same = [&](const KeyZone& zone) { return zone.velocityLow == low && zone.velocityHigh == high; };
    if (const auto found = std::ranges::find_if(zones, same); found != zones.end()) return &*found;
    if (zones.size() >= kMaxZones) return nullptr;
    const auto place = std::ranges::find_if(zones, [&](const KeyZone& zone) { return zone.velocityLow >= low; });
    return &*zones.insert(place, KeyZone{low, high, {}, 0});
}

void CopyFilter(const Instrument& from, Instrument& to) {
    to.filterOn = from.filterOn;
    to.cutoff = from.cutoff;
    to.cutoffLfoDepth = from.cutoffLfoDepth;
    to.cutoffLfoWave = from.cutoffLfoWave;
    to.cutoffLfoPeriod = from.cutoffLfoPeriod;
    to.resonance = from.resonance;
    to.resonanceLfoDepth = from.resonanceLfoDepth;
    to.resonanceLfoWave = from.resonanceLfoWave;
    to.resonanceLfoPeriod = from.resonanceLfoPeriod;
    to.filterType = from.filterType;
    to.cutoffLfoPhase = Load(from.cutoffLfoPhase);
    to.resonanceLfoPhase = Load(from.resonanceLfoPhase);
    to.gain = from.gain;
}

}  // namespace

Instrument::Instrument() { Validate(); }

void Instrument::SetName(std::string_view text) { name = text.substr(0, kMaxNameLength); }

Sample* Instrument::GetSample(int index) const {
    return index >= 0 && index < kMaxSamples ? samples[static_cast<std::size_t>(index)].get() : nullptr;
}

Instrument::Envelopes& Instrument::GetEnvelopes(EnvelopeKind which) {
    return this->*kEnvelopesOfKind[static_cast<std::size_t>(which)];
}

const Instrument::Envelopes& Instrument::GetEnvelopes(EnvelopeKind which) const {
    return this->*kEnvelopesOfKind[static_cast<std::size_t>(which)];
}

int Instrument::AddSample(std::unique_ptr<Sample> sample) {
    // The self-check may have counted fewer than there are: none is lost for that.
    while (numSamples >= 0 && numSamples < kMaxSamples && samples[static_cast<std::size_t>(numSamples)]) ++numSamples;
    if (numSamples < 0 || numSamples >= kMaxSamples) return -1;
    samples[static_cast<std::size_t>(numSamples)] = std::move(sample);
    return numSamples++;
}

std::unique_ptr<Sample> Instrument::SetSample(int index, std::unique_ptr<Sample> sample, int keep) {
    if (index < 0 || index >= kMaxSamples || (!sample && !keep)) return nullptr;
    auto& place = samples[static_cast<std::size_t>(index)];
    if (!keep) {
        sample->volume = kFullVolume;
        if (place) sample->toneRel = place->toneRel;
    }
    return std::exchange(place, std::move(sample));
}

const KeyZone* Instrument::FindZone(int key, int velocity) const {
    if (!IsKey(key)) return nullptr;
    for (const KeyZone& zone : keyZones[static_cast<std::size_t>(key)])
        if (zone.velocityLow <= velocity && velocity <= zone.velocityHigh) return &zone;
    return nullptr;
}

int Instrument::GetKeySample(int key, int layer, int velocity) const {
    if (layer < 0 || layer >= CountLayers(key, velocity)) return -1;
    return FindZone(key, velocity)->samples[static_cast<std::size_t>(layer)];
}

int Instrument::CountLayers(int key, int velocity) const {
    const KeyZone* zone = FindZone(key, velocity);
    return zone ? std::min<int>(zone->numSamples, kMaxLayers) : 0;
}

int Instrument::CountZones(int key) const {
    return IsKey(key) ? static_cast<int>(keyZones[static_cast<std::size_t>(key)].size()) : 0;
}

const KeyZone* Instrument::GetZone(int key, int index) const {
    if (index < 0 || index >= CountZones(key)) return nullptr;
    return &keyZones[static_cast<std::size_t>(key)][static_cast<std::size_t>(index)];
}

void Instrument::SetKeySample(int key, int sample, int velocityLow, int velocityHigh) {
    if (!IsKey(key) || sample < 0 || sample >= kMaxSamples) return;
    KeyZone* zone = FindOrMakeZone(keyZones[static_cast<std::size_t>(key)], velocityLow, velocityHigh);
    if (!zone) return;
    zone->samples = {static_cast<std::uint8_t>(sample)};
    zone->numSamples = 1;
}

void Instrument::AddKeySample(int key, int sample, int velocityLow, int velocityHigh) {
    if (!IsKey(key) || sample < 0 || sample >= kMaxSamples) return;
    KeyZone* zone = FindOrMakeZone(keyZones[static_cast<std::size_t>(key)], velocityLow, velocityHigh);
    if (!zone || zone->numSamples >= kMaxLayers) return;
    zone->samples[zone->numSamples++] = static_cast<std::uint8_t>(sample);
}

void Instrument::MapAllKeys() {
    constexpr KeyZone anyVelocity;
    for (int key = 0; key < kKeys; ++key) SetKeySample(key, 0, anyVelocity.velocityLow, anyVelocity.velocityHigh);
}

int Instrument::NextEnvelope(EnvelopeKind which) {
    const Envelopes& envelopes = GetEnvelopes(which);
    std::int32_t& next = rotation[static_cast<std::size_t>(which)];
    int chosen = next;
    for (int i = 0; i < kEnvelopeAlternatives; ++i) {
        const int candidate = (next + i) % kEnvelopeAlternatives;
        if (!Load(envelopes[static_cast<std::size_t>(candidate)].enabled)) continue;
        chosen = candidate;
        break;
    }
    next = (chosen + 1) % kEnvelopeAlternatives;
    return chosen;
}

int Instrument::SetSynth(std::unique_ptr<SynthPlugin> plugin) {
    synth = std::move(plugin);
    missingSynth.clear();
    Store(kind, synth ? 1 : 0);
    return synth ? 0 : 1;
}

std::unique_ptr<Instrument> Instrument::Duplicate() const {
    auto copy = std::make_unique<Instrument>();
    copy->name = name;
    for (int i = 0; i < kUsedSamples; ++i)
        if (const Sample* sample = GetSample(i)) copy->SetSample(i, sample->Duplicate(), 0);
    copy->numSamples = std::min(numSamples, kUsedSamples);
    copy->fixedKey = fixedKey;
    copy->fadeOut = fadeOut;
    copy->effectMap = effectMap;
    for (std::size_t i = 0; i < sends.size(); ++i) {
        copy->sends[i].on = sends[i].on;
        copy->sends[i].level = sends[i].level;
    }
    copy->midi = midi;
    copy->newNoteAction = newNoteAction;
    CopyFilter(*this, *copy);
    for (const auto envelopes : kEnvelopesOfKind) (*copy).*envelopes = this->*envelopes;
    return copy;
}

void Instrument::Validate() {
    DebugOutput("\t\t\ttesting instrument: %s...\n", name.c_str());
    numSamples = std::min(numSamples, kUsedSamples);
    for (int i = 0; i < kUsedSamples; ++i) {
        Sample* sample = GetSample(i);
        if (!sample) continue;
        DebugOutput("\t\t\t\ttesting sam(%i)\n", i);
        sample->Validate();
    }
    for (const auto envelopes : kEnvelopesOfKind)
        for (Envelope& envelope : this->*envelopes) envelope.Validate();
    fadeOut = std::min(fadeOut, kMaxFadeOut);
}

}  // namespace vonta
