#include "formats/native/LoaderVTI.h"

#include <algorithm>
#include <array>

#include "formats/native/VtiFormat.h"
#include "formats/native/WaveData.h"
#include "formats/OpenToLoad.h"

namespace vonta {
namespace {

constexpr std::uint16_t kNewestWaveForm = static_cast<std::uint16_t>(WaveForm::Vorbis);

struct SampleReader {
    NativeLoad& load;
    Sample& sample;
};

struct InstrumentReader {
    NativeLoad& load;
    Instrument& instrument;
    int synths = 0;
};

void ReadSampleData(SampleReader& reader, const ChunkHeader& chunk) {
    DebugOutput("\t\t\t\t\t\t\t\t- Sample Data Instrument Data SubChunk found.\n");
    const bool known = chunk.version >= 1 && chunk.version <= kNewestWaveForm;
    if (known) return ReadWave(reader.load, reader.sample, static_cast<WaveForm>(chunk.version));
    DebugOutput("%s", kUnknownInstrumentData);
    reader.load.chunks.SkipUnknown(chunk);
}

// Any version: the reader logs the chunk before it asks for it.
constexpr ChunkRow<SampleReader> kSampleRows[] = {
    {kSampleDataType, 0, UINT16_MAX, ReadSampleData, kUnknownInstrumentData},
};

// A loop that reaches past the wave would have the player read there.
void KeepLoopInside(NativeLoad& load, Sample& sample) {
    SampleData& data = *sample.data;
    if (!data.block || (data.loopEnd <= data.count && data.loopStart <= data.loopEnd)) return;
    data.loopEnd = std::min(data.loopEnd, data.count);
    data.loopStart = std::min(data.loopStart, data.loopEnd);
    load.report.Add("Sample \"%s\": its loop is cut at its end.", sample.name.c_str());
}

void ReadSample(InstrumentReader& reader, const ChunkHeader&) {
    NativeLoad& load = reader.load;
    auto io = load.Fields();
    std::uint8_t number = 0;
    io.U8(number);
    if (io.In().Truncated()) return;
    reader.instrument.SetSample(number, std::make_unique<Sample>(), 0);
    Sample& sample = *reader.instrument.GetSample(number);
    SampleRecord(io, sample);
    sample.SetName(std::string(sample.name));
    SampleReader contents{load, sample};
    load.chunks.ReadList<SampleReader>(contents, kSampleRows, kUnknownInstrumentData);
    KeepLoopInside(load, sample);
}

void ReadEnvelope(InstrumentReader& reader, const ChunkHeader& chunk) {
    auto io = reader.load.Fields();
    EnvelopePlace place;
    EnvelopePlaceRecord(io, place, chunk.version);
    if (io.In().Truncated()) return;
    Envelope envelope;
    EnvelopeRecord(io, envelope, chunk.version);
    const int kind = place.kind - kFirstEnvelopeKind;
    if (kind < 0 || kind >= kEnvelopeKinds || place.alternative >= kEnvelopeAlternatives) {
        reader.load.report.Add("An envelope of \"%s\" has no place and is left out.",
                               reader.instrument.name.c_str());
        return;
    }
    reader.instrument.GetEnvelopes(static_cast<EnvelopeKind>(kind))[place.alternative] = envelope;
}

// The rest of a failed plug-in is passed over. Its instrument keeps its name, and the report says what is missing.
void ReadSynth(InstrumentReader& reader, const ChunkHeader& chunk) {
    NativeLoad& load = reader.load;
    Reader& in = load.chunks.In();
    const std::int64_t rest = in.Remaining() - chunk.length;
    if (reader.synths++ > 0) return in.Skip(chunk.length);
    InstrumentSynth synth;
    auto io = load.Fields();
    InstrumentSynthRecord(io, synth);
    if (synth.path.empty() && in.Truncated()) return;
    Instrument& instrument = reader.instrument;
    if (instrument.SetSynth(load.LoadSynth({synth.path})) == 0)
        return SetParameters(*instrument.synth, synth.values);
    instrument.missingSynth = BytesOf([&](RecordWriter& out) { InstrumentSynthRecord(out, synth); });
    in.Skip(in.Remaining() - rest);
}

constexpr ChunkRow<InstrumentReader> kInstrumentRows[] = {
    {kSampleChunk.type, kSampleChunk.oldest, kSampleChunk.newest, ReadSample, kUnknownInstrumentData},
    {kEnvelopeChunk.type, kEnvelopeChunk.oldest, kEnvelopeChunk.newest, ReadEnvelope, kUnknownInstrumentData},
    {kSynthChunk.type, kSynthChunk.oldest, kSynthChunk.newest, ReadSynth, kUnknownInstrumentData},
};

// Numbers that index tables of the player fall back to their defaults when they point outside.
void KeepIndicesInside(Instrument& instrument) {
    static const Instrument fresh;
    KeepInside(instrument.groupOutput, kLastOutputPair, fresh.groupOutput);
    KeepInside(instrument.filterType, kLastFilterType, fresh.filterType);
    KeepSendsInside(instrument.sends);
}

// Samples are stored by number, not appended; the next one to be appended must not fall on one of them.
void CountSamples(Instrument& instrument) {
    for (int i = 0; i < kMaxSamples; ++i)
        if (instrument.GetSample(i)) instrument.numSamples = i + 1;
}

bool IsContent(const ChunkHeader& chunk) {
    return std::ranges::any_of(kInstrumentRows, [&](const auto& row) {
        return row.type == chunk.type && chunk.version >= row.firstVersion && chunk.version <= row.lastVersion;
    });
}

// Whether a list of chunks starts here: its headers lead from one to the next and to an end marker.
bool IsList(FileStream& stream, std::int64_t start) {
    if (!stream.Seek(start, kFromStart)) return false;
    ChunkReader chunks(stream);
    ChunkHeader chunk;
    for (bool first = true; chunks.Next(chunk); first = false) {
        if (first && !IsContent(chunk)) return false;
        chunks.In().Skip(chunk.length);
    }
    return !chunks.In().Truncated();
}

// The same magic stands before bodies with and without `color`. The list of chunks that follows tells them
// apart: it starts here, or one u32 later. In a damaged file, where neither holds, the first header has to do.
bool HasColor(FileStream& stream) {
    constexpr std::int64_t kColorBytes = 4;
    const std::int64_t here = stream.Tell();
    bool color = IsList(stream, here + kColorBytes);
    if (!color && !IsList(stream, here)) {
        stream.Seek(here, kFromStart);
        ChunkHeader chunk;
        ChunkReader(stream).Next(chunk);
        color = !IsContent(chunk);
    }
    stream.Seek(here, kFromStart);
    return color;
}

void ReadFields(NativeLoad& load, Instrument& instrument, int version) {
    auto io = load.Fields();
    InstrumentRecord(io, instrument, version);
    instrument.SetName(std::string(instrument.name));
    KeepIndicesInside(instrument);
}

void ReadColor(NativeLoad& load, Instrument& instrument) {
    auto io = load.Fields();
    ColorRecord(io, instrument);
}

void ReadContents(NativeLoad& load, Instrument& instrument) {
    InstrumentReader reader{load, instrument};
    load.chunks.ReadList<InstrumentReader>(reader, kInstrumentRows, kUnknownInstrumentData);
    CountSamples(instrument);
}

// Null if none fits. The stream then stands behind the magic.
const InstrumentMagic* FindMagic(FileStream& stream) {
    for (const InstrumentMagic& magic : kInstrumentMagics) {
        std::array<char, kLongestMagic> head{};
        stream.Seek(0, kFromStart);
        const std::size_t got = stream.Read(head.data(), 1, magic.bytes.size());
        if (std::string_view(head.data(), got) == magic.bytes) return &magic;
    }
    return nullptr;
}

}  // namespace

void ReadInstrumentBody(NativeLoad& load, Instrument& instrument, int version) {
    ReadFields(load, instrument, version);
    if (version >= kColorVersion) ReadColor(load, instrument);
    ReadContents(load, instrument);
}

std::unique_ptr<Instrument> LoadInstrumentNative(FileStream& stream, LoadReport& report) {
    const InstrumentMagic* magic = FindMagic(stream);
    if (!magic) return nullptr;
    report.formatName = "VTI";
    NativeLoad load(stream, report);
    auto instrument = std::make_unique<Instrument>();
    ReadFields(load, *instrument, magic->version);
    if (magic->version == kWrittenMagic.version && HasColor(stream)) ReadColor(load, *instrument);
    ReadContents(load, *instrument);
    load.ReportLosses();
    return instrument;
}

std::unique_ptr<Instrument> LoadInstrumentNative(const std::string& path, LoadReport& report) {
    DiskStream stream;
    return OpenToLoad(stream, path, report) ? LoadInstrumentNative(stream, report) : nullptr;
}

}  // namespace vonta
