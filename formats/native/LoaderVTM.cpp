#include "formats/native/LoaderVTM.h"

#include <utility>

#include "formats/native/LoaderVTI.h"
#include "formats/native/NativeLoad.h"
#include "formats/native/VtmFormat.h"

namespace vonta {
namespace {

constexpr const char* kUnknownChunk = "\t\t- Unknown Chunk found.\n";

struct SongReader {
    NativeLoad load;
    Song& song;
    std::int32_t patterns = 0, instruments = 0, effects = 0, synths = 0;   // chunks seen of each
};

// A list holds one chunk for each place at most. What a damaged file has beyond that is passed over, so that it
// costs no time.
bool IsOneTooMany(SongReader& reader, std::int32_t& seen, int places, const ChunkHeader& chunk) {
    if (seen < places) {
        ++seen;
        return false;
    }
    reader.load.chunks.In().Skip(chunk.length);
    return true;
}

// ---- Info, Mixer

void ReadInfo(SongReader& reader, const ChunkHeader& chunk) {
    auto io = reader.load.Fields();
    Song& song = reader.song;
    InfoRecord(io, song, chunk.version);
    song.SetTitle(std::string(song.title));
    song.SetFileName(std::string(song.fileName));
}

void ReadMixer(SongReader& reader, const ChunkHeader& chunk) {
    auto io = reader.load.Fields();
    Song& song = reader.song;
    MixerRecord(io, song, chunk.version);
    constexpr Bus freshBus;
    for (Bus& bus : song.buses) {
        KeepInside(bus.output, kLastOutputPair, freshBus.output);
        for (std::size_t k = 0; k < bus.sendTarget.size(); ++k)
            KeepInside(bus.sendTarget[k], kEffectSlots - 1, freshBus.sendTarget[k]);
    }
    for (FxRouting& routing : song.fxRouting)
        for (auto& target : routing.target) KeepInside(target, kEffectSlots - 1, std::int32_t{kNoTarget});
}

// ---- Patterns

struct PatternReader {
    NativeLoad& load;
    Pattern& pattern;
};

Cell ReadCell(RecordReader& io) {
    Cell cell;
    std::uint8_t first = kMasked;
    io.U8(first);
    if (!(first & kMasked)) cell.effect = first;
    CellRecord(io, cell, first & kMasked ? first : kAllFields & ~kHasEffect);
    return cell;
}

// Cells outside the pattern are read and dropped.
void ReadChannel(PatternReader& reader, const ChunkHeader&) {
    auto io = reader.load.Fields();
    ChannelHead head;
    ChannelRecord(io, head);
    for (int row = head.firstRow; row <= head.lastRow && !io.In().Truncated(); ++row)
        reader.pattern.Write(row, head.channel, ReadCell(io));
}

constexpr ChunkRow<PatternReader> kChannelRows[] = {
    {kChannelChunk.type, kChannelChunk.oldest, kChannelChunk.newest, ReadChannel, kUnknownChunk},
};

void ReadPattern(SongReader& reader, const ChunkHeader& chunk) {
    if (IsOneTooMany(reader, reader.patterns, kMaxPatterns, chunk)) return;
    auto io = reader.load.Fields();
    PatternHead head;
    PatternRecord(io, head);
    if (io.In().Truncated()) return;
    auto pattern = std::make_unique<Pattern>();
    pattern->SetNumRows(head.rows);
    PatternReader channels{reader.load, *pattern};
    reader.load.chunks.ReadSmallList<PatternReader>(channels, kChannelRows, kUnknownChunk);
    reader.song.SetPattern(head.number, std::move(pattern));
}

constexpr ChunkRow<SongReader> kPatternRows[] = {
    {kPatternChunk.type, kPatternChunk.oldest, kPatternChunk.newest, ReadPattern, kUnknownChunk},
};

void ReadPatterns(SongReader& reader, const ChunkHeader&) {
    auto io = reader.load.Fields();
    OrderRecord(io, reader.song);
    reader.load.chunks.ReadList<SongReader>(reader, kPatternRows, kUnknownChunk);
}

// ---- Instruments

void ReadInstrument(SongReader& reader, const ChunkHeader& chunk) {
    if (IsOneTooMany(reader, reader.instruments, kMaxInstruments, chunk)) return;
    auto io = reader.load.Fields();
    std::uint8_t number = 0;
    io.U8(number);
    if (io.In().Truncated()) return;
    auto instrument = std::make_unique<Instrument>();
    ReadInstrumentBody(reader.load, *instrument, chunk.version);
    if (number >= kMaxInstruments)
        reader.load.report.Add("Instrument %d \"%s\" has no place and is left out.", number,
                               instrument->name.c_str());
    reader.song.SetInstrument(number, std::move(instrument));
}

constexpr ChunkRow<SongReader> kInstrumentRows[] = {
    {kInstrumentChunk.type, kInstrumentChunk.oldest, kInstrumentChunk.newest, ReadInstrument,
     kUnknownInstrumentData},
};

void ReadInstruments(SongReader& reader, const ChunkHeader&) {
    reader.load.chunks.ReadList<SongReader>(reader, kInstrumentRows, kUnknownChunk);
}

// ---- Effects

void Apply(const EffectSettings& from, EffectSlot& effect, bool named) {
    if (named) effect.SetName(from.name);
    effect.SetActive(from.on);
    effect.volume = from.volume;
    effect.pan = from.pan;
    effect.muted = from.muted;
    effect.output = from.output;
    KeepInside(effect.output, kLastOutputPair, std::uint8_t{0});
    SetParameters(effect, from.values);
}

void ReadEffect(SongReader& reader, const ChunkHeader& chunk) {
    if (IsOneTooMany(reader, reader.effects, kEffectSlots, chunk)) return;
    auto io = reader.load.Fields();
    EffectSettings settings;
    EffectRecord(io, settings, chunk.version);
    if (settings.path.empty() && io.In().Truncated()) return;
    if (settings.slot >= kEffectSlots) {
        reader.load.report.Add("Effect slot %d has no place and is left out.", settings.slot);
        return;
    }
    reader.song.fxNames[settings.slot] = settings.name;
    const std::string name = FileNameOf(settings.path), &directory = reader.load.report.fxDirectory;
    auto effect =
        reader.load.LoadEffect({settings.path, name, directory.empty() ? "" : directory + "/" + name});
    if (effect)
        Apply(settings, *effect, chunk.version >= 2);
    else
        reader.song.missingEffects[settings.slot] =
            BytesOf([&](RecordWriter& out) { EffectRecord(out, settings, kEffectChunk.newest); });
    reader.song.fxSlots[settings.slot] = std::move(effect);
}

constexpr ChunkRow<SongReader> kEffectRows[] = {
    {kEffectChunk.type, kEffectChunk.oldest, kEffectChunk.newest, ReadEffect, kUnknownChunk},
};

void ReadEffects(SongReader& reader, const ChunkHeader&) {
    reader.load.chunks.ReadList<SongReader>(reader, kEffectRows, kUnknownChunk);
}

// ---- Synths

void Apply(const SynthSettings& from, SynthPlugin& synth) {
    synth.SetName(from.name);
    synth.muted = from.muted;
    synth.output = from.output;
    KeepInside(synth.output, kLastOutputPair, std::uint8_t{0});
    synth.sends = from.sends;
    KeepSendsInside(synth.sends);
    synth.pan = from.pan;
    synth.volume = from.volume;
    synth.on = from.on;
    synth.busEnable = from.buses;
    SetParameters(synth, from.values);
}

void ReadSynth(SongReader& reader, const ChunkHeader& chunk) {
    if (IsOneTooMany(reader, reader.synths, kMaxInstruments, chunk)) return;
    auto io = reader.load.Fields();
    SynthSettings settings;
    SongSynthRecord(io, settings);
    if (settings.path.empty() && io.In().Truncated()) return;
    if (settings.number >= kMaxInstruments) {
        reader.load.report.Add("Synth %d has no place and is left out.", settings.number);
        return;
    }
    auto synth = reader.load.LoadSynth({settings.path, FileNameOf(settings.path)});
    if (synth)
        Apply(settings, *synth);
    else
        reader.song.missingSynths[settings.number] =
            BytesOf([&](RecordWriter& out) { SongSynthRecord(out, settings); });
    reader.song.SetSynth(settings.number, std::move(synth));
}

constexpr ChunkRow<SongReader> kSynthRows[] = {
    {kSongSynthChunk.type, kSongSynthChunk.oldest, kSongSynthChunk.newest, ReadSynth, kUnknownChunk},
};

void ReadSynths(SongReader& reader, const ChunkHeader&) {
    reader.load.chunks.ReadList<SongReader>(reader, kSynthRows, kUnknownChunk);
}

// ---- Top level

constexpr ChunkRow<SongReader> Row(const ChunkKind& kind, void (*read)(SongReader&, const ChunkHeader&),
                                   const char* warning) {
    return {kind.type, kind.oldest, kind.newest, read, warning};
}

constexpr ChunkRow<SongReader> kSectionRows[] = {
    Row(kInfoChunk, ReadInfo, "\t\t\t- warning: info chunk version not supported.\n"),
    Row(kPatternsChunk, ReadPatterns, "\t\t\t- warning: patterns chunk version not supported.\n"),
    Row(kInstrumentsChunk, ReadInstruments, "\t\t\t- warning: instruments chunk version not supported.\n"),
    Row(kEffectsChunk, ReadEffects, "\t\t\t- warning: multifxs chunk version not supported.\n"),
    Row(kMixerChunk, ReadMixer, "\t\t\t- warning: mixer chunk version not supported.\n"),
    Row(kSynthsChunk, ReadSynths, "\t\t\t- warning: synth chunk version not supported.\n"),
};

// A first chunk that is no header is passed over.
bool ReadHeader(NativeLoad& load) {
    ChunkHeader chunk;
    load.chunks.Next(chunk);
    if (chunk.type != kHeaderChunk.type) {
        load.chunks.In().Skip(chunk.length);
        return true;
    }
    auto io = load.Fields();
    ModuleHeader header;
    header.name.clear();
    HeaderRecord(io, header);
    if (header.trackerVersion > kNewestTrackerVersion)
        DebugOutput("warning: file stored with a NEWer tracker version\n");
    return header.name == kModuleName;
}

template <class Places>
std::int32_t EndOf(const Places& places) {
    std::int32_t end = 0;
    for (std::size_t i = 0; i < places.size(); ++i)
        if (places[i]) end = static_cast<std::int32_t>(i) + 1;
    return end;
}

// What is stored by number counts as added, so that the next one to be added does not fall on it.
void CountPlaces(Song& song) {
    song.numPatterns = EndOf(song.patterns);
    song.numInstruments = EndOf(song.instruments);
}

}  // namespace

bool LoaderNative::Check(FileStream& stream) {
    ChunkReader chunks(stream);
    ChunkHeader chunk;
    chunks.Next(chunk);
    return chunk.type == kHeaderChunk.type && chunk.version <= kHeaderChunk.newest &&
           chunks.In().FixedText(kModuleName.size()) == kModuleName;
}

std::unique_ptr<Song> LoaderNative::Load(FileStream& stream, LoadReport& report) {
    auto song = Song::MakeDefault();
    SongReader reader{NativeLoad(stream, report), *song};
    NativeLoad& load = reader.load;
    if (!ReadHeader(load)) return nullptr;
    load.chunks.ReadList<SongReader>(reader, kSectionRows, kUnknownChunk);
    if (!load.chunks.In().Truncated()) DebugOutput("\t\t- EOF Chunk found.\n");
    load.ReportLosses();
    CountPlaces(*song);
    unknownChunk_ = load.chunks.HasUnknownChunks();
    stream.Close();
    return song;
}

}  // namespace vonta
