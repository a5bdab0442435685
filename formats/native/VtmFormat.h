// The layout of a module, `.vtm`: a tree of chunks. Each record is walked by the reader and by the writer.
//
//   Header; Info; Patterns: list of Pattern; Instruments: list of Instrument; MultiFXs: list of Effect; Mixer;
//   Synths: list of Synth; end marker
//   Pattern: fields, list of small Channel chunks: span of rows, cells
//   Instrument: number u8, body as in VtiFormat.h
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "formats/native/VtiFormat.h"
#include "song/Song.h"

namespace vonta {

// Top level
constexpr ChunkKind kHeaderChunk{0xFFFE, 1, 0};
constexpr ChunkKind kInfoChunk{1, 3};
constexpr ChunkKind kPatternsChunk{2, 1};
constexpr ChunkKind kInstrumentsChunk{3, 1};
constexpr ChunkKind kEffectsChunk{4, 1};
constexpr ChunkKind kMixerChunk{5, 2};
constexpr ChunkKind kSynthsChunk{6, 1};

// In the lists of the four
constexpr ChunkKind kPatternChunk{1, 1};
constexpr ChunkKind kInstrumentChunk{1, kInstrumentVersion};
constexpr ChunkKind kEffectChunk{1, 2};
constexpr ChunkKind kSongSynthChunk{1, 1};

// In a pattern, small
constexpr ChunkKind kChannelChunk{1, 1};
constexpr std::uint16_t kSmallChannelId = kChannelChunk.type << 8 | kChannelChunk.newest;

constexpr std::string_view kModuleName = "ALIM3";
constexpr std::uint32_t kWrittenTrackerVersion = 7600;
constexpr std::uint32_t kNewestTrackerVersion = 9472;   // a file of a newer one is read with a warning

// The rest of the slots has no place in the Mixer chunk.
constexpr std::size_t kStoredRoutings = 8;

// Those behind are not in the file.
inline int StoredChannels(const Song& song) { return std::clamp(song.numChannels, 0, kMaxChannels); }

struct ModuleHeader {
    std::string name{kModuleName};
    std::uint32_t trackerVersion = kWrittenTrackerVersion;
};

template <class Io, class Header>
void HeaderRecord(Io& io, Header& header) {
    io.FixedText(header.name, kModuleName.size());
    io.U32(header.trackerVersion);
}

// What is written is how the song begins, not what it has come to while it played.
inline std::uint32_t& BpmOf(Song& song) { return song.bpm; }
inline std::uint32_t& TempoOf(Song& song) { return song.tempo; }
inline std::uint32_t BpmOf(const Song& song) { return song.StartBpm(); }
inline std::uint32_t TempoOf(const Song& song) { return song.StartTempo(); }

template <class Io, class AnySong>
void InfoRecord(Io& io, AnySong& song, int version) {
    io.Text(song.title);
    io.ConstText("");
    io.Text(song.comments);
    io.ConstText("");
    io.ConstU32(0);
    io.ConstU32(0);
    io.U8(BpmOf(song));
    io.U8(TempoOf(song));
    io.U8(song.numChannels);
    if (version >= 2) io.Text(song.fileName);
    if (version >= 3) io.ConstU32(kWrittenTrackerVersion);
}

// What stands before the list of patterns. A length of 256 does not fit, and reads back as 0.
template <class Io, class AnySong>
void OrderRecord(Io& io, AnySong& song) {
    io.ConstU8(static_cast<std::uint8_t>(song.numChannels));
    for (auto& pattern : song.patternList) io.U8(pattern);
    io.U8(song.length);
    io.U8(song.restartPos);
}

struct PatternHead {
    std::uint8_t number = 0;
    std::uint16_t rows = kDefaultRows;
};

template <class Io, class Head>
void PatternRecord(Io& io, Head& head) {
    io.U8(head.number);
    io.U16(head.rows);
}

// The span of rows of a channel that is stored; one empty cell of row 0 if none has anything.
struct ChannelHead {
    std::uint8_t channel = 0;
    std::uint8_t lastRow = 0, firstRow = 0;
};

template <class Io, class Head>
void ChannelRecord(Io& io, Head& head) {
    io.U8(head.channel);
    io.U8(head.lastRow);
    io.U8(head.firstRow);
}

// Which fields of a cell follow: a mask with bit 7 set. All five: no mask, for an effect has bit 7 clear and
// stands first.
enum CellMask : std::uint8_t {
    kHasEffect = 1, kHasNote = 2, kHasInstrument = 4, kHasVolume = 8, kHasParam = 16,
    kAllFields = 31,
    kMasked = 0x80,
};

template <class Io, class AnyCell>
void CellRecord(Io& io, AnyCell& cell, unsigned present) {
    if (present & kHasEffect) io.U8(cell.effect);
    if (present & kHasNote) io.U8(cell.note);
    if (present & kHasInstrument) io.U8(cell.instrument);
    if (present & kHasVolume) io.U16(cell.volume);
    if (present & kHasParam) io.U8(cell.param);
}

// An effect slot as the file holds it, with the defaults of what version 1 lacks.
struct EffectSettings {
    std::uint8_t slot = 0;
    std::string path, name;
    std::uint8_t on = 0, output = 0;
    float volume = 0.8f, pan = 0.5f;
    std::uint8_t muted = 0;
    std::vector<float> values;
};

template <class Io, class Effect>
void EffectRecord(Io& io, Effect& effect, int version) {
    io.U8(effect.slot);
    io.Text(effect.path);
    if (version == 1) {
        io.ConstText("");
        io.U8(effect.on);
    } else {
        io.Text(effect.name);
        io.Bits(effect.on, effect.output);
        io.F32(effect.volume);
        io.F32(effect.pan);
        io.U8(effect.muted);
    }
    ParameterValues(io, effect.values);
}

template <class Io, class AnyBus>
void BusRecord(Io& io, AnyBus& bus) {
    io.Bits(bus.active, bus.output);
    io.F32(bus.volume);
    io.F32(bus.pan);
    for (std::size_t k = 0; k < bus.sendEnabled.size(); ++k) {
        io.U8(bus.sendEnabled[k]);
        io.F32(bus.sendGain[k]);
        io.U8(bus.sendTarget[k]);
    }
}

template <class Io, class Routing>
void RoutingRecord(Io& io, Routing& routing) {
    for (std::size_t k = 0; k < routing.target.size(); ++k) {
        io.U8(routing.enabled[k]);
        io.I32(routing.target[k]);
        io.F32(routing.gain[k]);
    }
}

template <class Io, class AnySong>
void MixerRecord(Io& io, AnySong& song, int version) {
    io.F32(song.masterVolume);
    if (version == 1) return;
    for (auto& bus : song.buses) BusRecord(io, bus);
    for (std::size_t slot = 0; slot < kStoredRoutings; ++slot) RoutingRecord(io, song.fxRouting[slot]);
}

// A plug-in of the song with its mixing section, as the file holds it.
struct SynthSettings {
    std::uint8_t number = 0;
    std::string path, name;
    std::vector<float> values;
    std::uint8_t muted = 0, output = 0;
    Sends sends = DefaultSends();
    float pan = 0.5f, volume = 1.0f;
    std::uint8_t on = 1;
    std::array<std::uint8_t, kBuses> buses{};
};

template <class Io, class Synth>
void SongSynthRecord(Io& io, Synth& synth) {
    io.U8(synth.number);
    io.Text(synth.path);
    io.Text(synth.name);
    ParameterValues(io, synth.values);
    io.Bits(synth.muted, synth.output);
    if constexpr (Io::kReading) synth.muted = synth.muted && synth.output == 0;   // read so ever since
    SendsRecord(io, synth.sends);
    CentredPan(io, synth.pan);
    io.F32(synth.volume);
    NegatedSwitch(io, synth.on);
    for (auto& bus : synth.buses) io.U8(bus);
}

}  // namespace vonta
