// The layout of an instrument, as the `.vti` file and the Instrument chunk of a module hold it. Each record is
// walked by the reader in every version and by the writer in the newest.
//
//   file:    magic, body          chunk in a module: number u8, body
//   body:    fields, then a list of chunks: Sample, Envelope, Synth
//   Sample:  fields, then a list of chunks: Sample Data
//
// A file magic stands for a version of the body. The newest magic is older than `color`, so a body behind it
// may or may not hold one: HasColor in LoaderVTI.cpp tells which.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

#include "formats/streams/Record.h"
#include "song/Instrument.h"

namespace vonta {

// A type of one level and the version of its body that is written. All older versions are read too.
struct ChunkKind {
    std::uint16_t type;
    std::uint16_t newest;
    std::uint16_t oldest = 1;
    constexpr std::uint32_t Id() const { return static_cast<std::uint32_t>(type) << 16 | newest; }
};

constexpr int kInstrumentVersion = 6;
constexpr int kColorVersion = 6;                     // the first with `color`; otherwise as the one before

struct InstrumentMagic {
    std::string_view bytes;
    int version;
};
using namespace std::string_view_literals;
constexpr std::array kInstrumentMagics{
    InstrumentMagic{"VTLI\0"sv, 1}, InstrumentMagic{"XVTLI0003"sv, 3}, InstrumentMagic{"XVTLI0005"sv, 5}};
constexpr InstrumentMagic kWrittenMagic = kInstrumentMagics.back();
constexpr std::size_t kLongestMagic = 9;

// In an instrument's body
constexpr ChunkKind kSampleChunk{1, 1};
constexpr ChunkKind kEnvelopeChunk{2, 3};
constexpr ChunkKind kSynthChunk{3, 1};

// In a sample: its wave, in one of four forms that are told by the version.
enum class WaveForm : std::uint16_t { Float = 1, SixteenBit = 2, EightBit = 3, Vorbis = 4 };
constexpr std::uint16_t kSampleDataType = 1;

constexpr float kStoredPanCentre = 0.5f;             // pans are stored minus this
constexpr int kEffectMapBytes = 64;                  // those without an effect code hold their own index
constexpr std::uint8_t kFirstEnvelopeKind = 1;
constexpr std::size_t kMaxZonesOfKey = 255;

template <class Io, class Pan>
void CentredPan(Io& io, Pan& pan) {
    float centred = pan - kStoredPanCentre;
    io.F32(centred);
    if constexpr (Io::kReading) pan = centred + kStoredPanCentre;
}

// 1 for a switch that is off.
template <class Io, class Switch>
void NegatedSwitch(Io& io, Switch& on) {
    std::uint8_t off = on == 0;
    io.U8(off);
    if constexpr (Io::kReading) on = off == 0;
}

// The count, then the values. What a damaged file left out, or is no number, reads as NaN and is not to be set.
template <class Io, class Values>
void ParameterValues(Io& io, Values& values) {
    auto count = static_cast<std::int32_t>(values.size());
    io.I32(count);
    if constexpr (Io::kReading) {
        const auto held = io.In().Remaining() / static_cast<std::int64_t>(sizeof(float));
        const auto kept = std::clamp<std::int64_t>(count, 0, held);
        values.assign(static_cast<std::size_t>(kept), std::numeric_limits<float>::quiet_NaN());
    }
    for (auto& value : values) io.F32(value);
}

// One velocity zone; one without samples is stored as if it had one.
template <class Io, class Zone>
void ZoneRecord(Io& io, Zone& zone) {
    std::uint8_t count = std::max<std::uint8_t>(zone.numSamples, 1);
    io.U8(count);
    for (std::size_t layer = 0; layer < count; ++layer) {
        std::uint8_t sample = layer < kMaxLayers ? zone.samples[layer] : std::uint8_t{0};
        io.U8(sample);
        if constexpr (Io::kReading)
            if (layer < kMaxLayers) zone.samples[layer] = sample;
    }
    io.U8(zone.velocityLow);
    io.U8(zone.velocityHigh);
    if constexpr (Io::kReading) zone.numSamples = std::min<std::uint8_t>(count, kMaxLayers);
}

// Up to version 4 a key has one sample for any velocity.
template <class Io, class Ins>
void KeyRecord(Io& io, Ins& ins, int key, int version) {
    auto& fixed = ins.fixedKey[static_cast<std::size_t>(key)];
    if constexpr (Io::kReading) {
        KeyZone any;
        if (version < 5) {
            std::uint8_t sample = 0;
            io.U8(sample);
            if (!io.In().Truncated()) ins.SetKeySample(key, sample, any.velocityLow, any.velocityHigh);
            return;
        }
        std::uint8_t count = 0;
        io.U8(count);
        std::vector<KeyZone> zones(count);
        for (KeyZone& zone : zones) ZoneRecord(io, zone);
        io.U8(fixed);
        if (io.In().Truncated()) return;
        // Last first: a zone is put before those with the same low velocity, so their order stays as it was.
        for (auto zone = zones.rbegin(); zone != zones.rend(); ++zone)
            for (std::size_t layer = 0; layer < zone->numSamples; ++layer)
                ins.AddKeySample(key, zone->samples[layer], zone->velocityLow, zone->velocityHigh);
    } else {
        const auto& zones = ins.keyZones[static_cast<std::size_t>(key)];
        const std::size_t count = std::min(zones.size(), kMaxZonesOfKey);
        io.U8(count);
        for (std::size_t i = 0; i < count; ++i) ZoneRecord(io, zones[i]);
        io.U8(fixed);
    }
}

template <class Io, class Ins>
void PlacementRecord(Io& io, Ins& ins, int version) {
    if (version < 3) return io.Zeros(version == 1 ? 4 : 8);
    CentredPan(io, ins.pan);
    io.I16(ins.transpose);
    io.I16(ins.fineTune);
}

template <class Io, class Map>
void EffectMapRecord(Io& io, Map& map) {
    for (auto& effect : map) io.U8(effect);
    for (int code = kEffectCodes; code < kEffectMapBytes; ++code) io.ConstU8(static_cast<std::uint8_t>(code));
}

// Version 1 stored the phases of the oscillators, and left room for more.
template <class Io, class Ins>
void OldFilterRecord(Io& io, Ins& ins) {
    constexpr std::size_t kUnknown = 5;
    io.U8(ins.filterOn);
    io.F32(ins.cutoff);
    io.F32(ins.cutoffLfoDepth);
    io.Zeros(kUnknown);
    io.F32(ins.cutoffLfoPeriod);
    io.F32(ins.cutoffLfoPhase);
    io.Zeros(kUnknown);
    io.F32(ins.resonance);
    io.F32(ins.resonanceLfoDepth);
    io.Zeros(kUnknown);
    io.F32(ins.resonanceLfoPeriod);
    io.F32(ins.resonanceLfoPhase);
    io.Zeros(kUnknown);
}

template <class Io, class Ins>
void FilterRecord(Io& io, Ins& ins) {
    io.U8(ins.filterOn);
    io.F32(ins.cutoff);
    io.F32(ins.cutoffLfoDepth);
    io.I32(ins.cutoffLfoWave);
    io.F32(ins.cutoffLfoPeriod);
    io.F32(ins.resonance);
    io.F32(ins.resonanceLfoDepth);
    io.I32(ins.resonanceLfoWave);
    io.F32(ins.resonanceLfoPeriod);
    io.I32(ins.filterType);
}

template <class Io, class Ins>
void MidiRecord(Io& io, Ins& ins, int version) {
    auto& midi = ins.midi;
    if (version >= 4) {
        io.U8(ins.useSynth);
        io.U8(midi.synth);
    }
    io.U16(midi.bank);
    io.U8(midi.sendBank);
    io.U8(midi.channel);
    for (std::size_t i = 0; i < (version >= 4 ? midi.controllers.size() : 1); ++i) io.U8(midi.controllers[i]);
    io.U8(midi.device);
    io.U8(midi.enabled);
    io.U8(midi.pan);
    io.U8(midi.sendPan);
    io.U8(midi.program);
    io.I8(midi.transpose);
    io.U8(midi.sendVolume);
    io.U8(midi.volume);
}

// As an instrument of version 4 and a module's synth hold them.
template <class Io, class AnySends>
void SendsRecord(Io& io, AnySends& sends) {
    for (auto& send : sends) {
        io.U8(send.on);
        io.F32(send.level);
        io.U8(send.slot);
    }
}

template <class Io, class AnySends>
void OldSendsRecord(Io& io, AnySends& sends, int version) {
    for (auto& send : sends) {
        io.U8(send.on);
        io.F32(send.level);
        if (version >= 2) io.Zeros(8);
    }
}

// Gain stands before frequency. A band that is off keeps the defaults.
template <class Io, class Bands>
void EqRecord(Io& io, Bands& bands) {
    for (auto& band : bands) {
        float gain = band.gain, frequency = band.frequency;
        io.U8(band.on);
        io.F32(gain);
        io.F32(frequency);
        if constexpr (Io::kReading)
            if (band.on) band = {band.on, frequency, gain};
    }
}

// The group's switch again, the buses and the equalizer: from version 3 on, the equalizer from 5 on.
template <class Io, class Ins>
void OutputRecord(Io& io, Ins& ins, int version) {
    constexpr std::size_t kBandBytes = 9;
    if (version < 3) return;
    if (version == 3) io.Zeros(22);
    NegatedSwitch(io, ins.groupOn);
    for (auto& bus : ins.busMask) io.U8(bus);
    if (version < 5) return io.Zeros(ins.eq.size() * kBandBytes);
    EqRecord(io, ins.eq);
}

// The fields of the body. `color` and a list of chunks follow.
template <class Io, class Ins>
void InstrumentRecord(Io& io, Ins& ins, int version) {
    io.Text(ins.name);
    for (int key = 0; key < kKeys; ++key) KeyRecord(io, ins, key, version);
    io.U16(ins.fadeOut);
    io.Zeros(4);
    io.U8(ins.muted);
    if (version >= 4) io.Bits(ins.groupOn, ins.groupOutput);
    else io.U8(ins.groupOn);
    io.U8(ins.newNoteAction);
    io.F32(ins.gain);
    PlacementRecord(io, ins, version);
    if (version >= 2) {
        io.ConstU32(ins.kind);                       // a reader knows it from the Synth chunk
        EffectMapRecord(io, ins.effectMap);
    }
    if (version >= 2) FilterRecord(io, ins);
    else OldFilterRecord(io, ins);
    MidiRecord(io, ins, version);
    if (version >= 4) SendsRecord(io, ins.sends);
    else OldSendsRecord(io, ins.sends, version);
    OutputRecord(io, ins, version);
}

// Behind the fields: from version 6 on, and in most files whose magic says 5.
template <class Io, class Ins>
void ColorRecord(Io& io, Ins& ins) {
    io.U32(ins.color);
}

// After the number of its place.
template <class Io, class AnySample>
void SampleRecord(Io& io, AnySample& sample) {
    io.Text(sample.name);
    io.U8(sample.volume);
    io.U8(sample.panning);
    io.I8(sample.fineTune);
    io.I8(sample.toneRel);
    io.U8(sample.bits);
    io.U32(sample.data->loopStart);
    io.U32(sample.data->loopEnd);
    io.U8(sample.data->loopType);
}

// What every form of a wave begins with.
struct WaveHead {
    std::uint32_t count = 0;                         // floats, all channels together
    std::uint8_t channels = 1;
};

template <class Io, class Head>
void WaveHeadRecord(Io& io, Head& head) {
    io.U32(head.count);
    io.U8(head.channels);
}

struct EnvelopePlace {
    std::uint8_t alternative = 0;
    std::uint8_t kind = kFirstEnvelopeKind;          // then in the order of EnvelopeKind
};

template <class Io, class Place>
void EnvelopePlaceRecord(Io& io, Place& place, int version) {
    if (version >= 2) io.U8(place.alternative);
    io.U8(place.kind);
}

template <class Io, class AnyEnvelope>
void EnvelopeRecord(Io& io, AnyEnvelope& envelope, int version) {
    io.U8(envelope.enabled);
    std::uint8_t count = std::min<std::uint8_t>(envelope.numPoints, kEnvelopePoints);
    io.U8(count);
    EnvelopePoint beyond;                            // a file may claim more points than there are
    for (std::size_t i = 0; i < count; ++i) {
        auto& point = i < kEnvelopePoints ? envelope.points[i] : beyond;
        io.U16(point.x);
        io.U16(point.y);
    }
    if constexpr (Io::kReading) envelope.numPoints = std::min<std::uint8_t>(count, kEnvelopePoints);
    io.U8(envelope.sustainOn);
    io.U8(envelope.sustainPoint);
    io.U8(envelope.loopOn);
    io.U8(envelope.loopStart);
    io.U8(envelope.loopEnd);
    if (version >= 3) io.U8(envelope.timeBased);
}

// The plug-in of an instrument. Its mixing section belongs to the song's synths alone.
struct InstrumentSynth {
    std::string path;
    std::vector<float> values;
};

template <class Io, class Synth>
void InstrumentSynthRecord(Io& io, Synth&& synth) {
    io.Text(synth.path);
    io.Zeros(6);
    ParameterValues(io, synth.values);
}

}  // namespace vonta
