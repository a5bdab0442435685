#include "formats/native/SaverVTM.h"

#include <algorithm>

#include "formats/native/NativeLoad.h"
#include "formats/native/NativeLosses.h"
#include "formats/native/SaverVTI.h"
#include "formats/native/VtmFormat.h"
#include "formats/streams/Chunks.h"

namespace vonta {
namespace {

struct SongWriter {
    ChunkWriter chunks;
    const Song& song;
    WavePacking packing;
    const ModulePart* part = nullptr;                // what is wanted; null: everything
    RecordWriter io{chunks.Out()};

    bool Wants(int ModulePart::* which, int number) const { return !part || part->*which == number; }
    bool WantsMixer() const { return !part || part->mixer; }
};

void WriteHeader(SongWriter& out) {
    const ModuleHeader header;
    HeaderRecord(out.io, header);
}

void WriteInfo(SongWriter& out) { InfoRecord(out.io, out.song, kInfoChunk.newest); }

void WriteCell(RecordWriter& io, const Cell& cell) {
    constexpr Cell empty;
    unsigned present = 0;
    if (cell.effect != empty.effect) present |= kHasEffect;
    if (cell.note != empty.note) present |= kHasNote;
    if (cell.instrument != empty.instrument) present |= kHasInstrument;
    if (cell.volume != empty.volume) present |= kHasVolume;
    if (cell.param != empty.param) present |= kHasParam;
    // An effect number that would be taken for a mask gets one in front.
    if (present != kAllFields || cell.effect & kMasked) io.U8(present | kMasked);
    CellRecord(io, cell, present);
}

ChannelHead FindSpan(const Pattern& pattern, int channel) {
    ChannelHead head{static_cast<std::uint8_t>(channel)};
    const auto empty = [&](int row) { return pattern.Read(row, channel) == Cell{}; };
    int last = std::min(pattern.rows, kMaxRows) - 1;
    while (last > 0 && empty(last)) --last;
    int first = 0;
    while (first < last && empty(first)) ++first;
    head.lastRow = static_cast<std::uint8_t>(last);
    head.firstRow = static_cast<std::uint8_t>(first);
    return head;
}

void WriteChannel(SongWriter& out, const Pattern& pattern, int channel) {
    out.chunks.SmallChunk(kSmallChannelId, [&] {
        const ChannelHead head = FindSpan(pattern, channel);
        ChannelRecord(out.io, head);
        for (int row = head.firstRow; row <= head.lastRow; ++row) WriteCell(out.io, pattern.Read(row, channel));
    });
}

void WritePattern(SongWriter& out, int number, const Pattern& pattern) {
    out.chunks.Chunk(kPatternChunk.Id(), [&] {
        const PatternHead head{static_cast<std::uint8_t>(number), static_cast<std::uint16_t>(pattern.rows)};
        PatternRecord(out.io, head);
        for (int channel = 0; channel < StoredChannels(out.song); ++channel)
            WriteChannel(out, pattern, channel);
        out.chunks.WriteSmallEnd();
    });
}

void WritePatterns(SongWriter& out) {
    OrderRecord(out.io, out.song);
    for (int number = 0; number < kMaxPatterns; ++number)
        if (const Pattern* pattern = out.song.GetPattern(number); pattern && out.Wants(&ModulePart::pattern, number))
            WritePattern(out, number, *pattern);
    out.chunks.WriteEnd();
}

void WriteInstruments(SongWriter& out) {
    for (int number = 0; number < kMaxInstruments; ++number) {
        const Instrument* instrument = out.song.GetInstrument(number);
        if (!instrument || !out.Wants(&ModulePart::instrument, number)) continue;
        out.chunks.Chunk(kInstrumentChunk.Id(), [&] {
            out.io.U8(number);
            WriteInstrumentBody(out.chunks, *instrument, out.packing);
        });
    }
    out.chunks.WriteEnd();
}

// The player holds the slots of the song that it plays; those of any other are its own.
const EffectSlot* FindSlot(const Song& song, std::size_t slot) {
    const EffectSlot* played = song.fxSlotTable ? (*song.fxSlotTable)[slot].get() : nullptr;
    return played ? played : song.fxSlots[slot].get();
}

void WriteMissing(SongWriter& out, const ChunkKind& kind, const std::map<int, std::vector<std::uint8_t>>& missing,
                  int place) {
    const auto found = missing.find(place);
    if (found != missing.end()) out.chunks.Chunk(kind.Id(), [&] { out.io.Bytes(found->second); });
}

void WriteEffects(SongWriter& out) {
    for (std::uint8_t slot = 0; slot < kEffectSlots && out.WantsMixer(); ++slot) {
        const EffectSlot* effect = FindSlot(out.song, slot);
        if (!effect) {
            WriteMissing(out, kEffectChunk, out.song.missingEffects, slot);
            continue;
        }
        out.chunks.Chunk(kEffectChunk.Id(), [&] {
            const EffectSettings settings{slot,         effect->GetPath(), effect->GetName(), effect->on,
                                          effect->output, effect->volume,    effect->pan,       effect->muted,
                                          GetParameters(*effect)};
            EffectRecord(out.io, settings, kEffectChunk.newest);
        });
    }
    out.chunks.WriteEnd();
}

void WriteMixer(SongWriter& out) { MixerRecord(out.io, out.song, kMixerChunk.newest); }

void WriteSynths(SongWriter& out) {
    for (int number = 0; number < kMaxInstruments && out.WantsMixer(); ++number) {
        const SynthPlugin* synth = out.song.GetSynth(number);
        if (!synth) {
            WriteMissing(out, kSongSynthChunk, out.song.missingSynths, number);
            continue;
        }
        out.chunks.Chunk(kSongSynthChunk.Id(), [&] {
            const SynthSettings settings{static_cast<std::uint8_t>(number), synth->GetPath(), synth->GetName(),
                                         GetParameters(*synth), synth->muted, synth->output, synth->sends,
                                         synth->pan, synth->volume, synth->on, synth->busEnable};
            SongSynthRecord(out.io, settings);
        });
    }
    out.chunks.WriteEnd();
}

struct Section {
    ChunkKind kind;
    void (*write)(SongWriter& out);
};

// In the order of the file.
constexpr Section kSections[] = {
    {kHeaderChunk, WriteHeader},           {kInfoChunk, WriteInfo},       {kPatternsChunk, WritePatterns},
    {kInstrumentsChunk, WriteInstruments}, {kEffectsChunk, WriteEffects}, {kMixerChunk, WriteMixer},
    {kSynthsChunk, WriteSynths},
};

void WriteSections(SongWriter& out) {
    for (const Section& section : kSections) out.chunks.Chunk(section.kind.Id(), [&] { section.write(out); });
    out.chunks.WriteEnd();
}

}  // namespace

int SaveModule(FileStream& stream, Song& song, const SaveOptions& options) {
    SongWriter out{ChunkWriter(stream), song, {.wanted = options.compress, .report = options.report}};
    WriteSections(out);
    if (options.report) ReportNativeLosses(song, *options.report);
    return stream.Error().empty() ? 0 : 1;
}

int SaveModulePart(FileStream& stream, const Song& song, const ModulePart& part) {
    SongWriter out{ChunkWriter(stream), song, {.leftOut = !part.waves}, &part};
    WriteSections(out);
    return stream.Error().empty() ? 0 : 1;
}

}  // namespace vonta
