// Writes an Extended Module.
#include <algorithm>
#include <vector>

#include "formats/ForeignEffects.h"
#include "formats/ForeignSavers.h"
#include "formats/samples/WaveBytes.h"
#include "formats/SaveLosses.h"
#include "formats/streams/Record.h"
#include "formats/xm/XmFormat.h"

namespace vonta {
namespace {

constexpr std::string_view kTrackerName = "Vonta Tracker";
constexpr std::size_t kTitleLength = 19;             // the last byte of the title stays NUL
constexpr std::size_t kMaxPackedBytes = 65535;       // of a pattern
constexpr std::size_t kReservedBytes = 2;            // behind the block of an instrument
// Some players read the size of a sample header with every instrument, also where the file has none: a last
// instrument without samples would end too early for them and lose its name.
constexpr std::size_t kTailBytes = 4;
constexpr std::uint32_t kMaxFrames = 0x7FFFFFFF;     // of 16 bits, in a length of 32
constexpr std::uint32_t kFramesAtOnce = 16384;

constexpr FormatLimits kXmLimits = {
    .titleLength = kTitleLength,
    .nameLength = kXmNameWidth,
    .channels = kMaxChannels,
    .positions = kMaxPositions,
    .patterns = kMaxPatterns,
    .minRows = 1,
    .maxRows = kMaxRows,
    .lowestNote = 0,
    .instruments = kMaxInstruments,
    .samples = kUsedSamples,
    .frames = kMaxFrames,
    .tempo = true,
    .noteOffs = true,
    .volumeColumn = true,
    .envelopes = true,
    .sixteenBits = true,
    .pingPong = true,
    .tuning = true,
    .sampleNameLength = kXmNameWidth,
    .oddFrames = true,
};

// The number of the highest filled place below `end`, plus one.
template <class Owners>
int CountToLast(const Owners& owners, int end) {
    while (end > 0 && !owners[static_cast<std::size_t>(end - 1)]) --end;
    return end;
}

XmHeader MakeHeader(const Song& song) {
    XmHeader header;
    header.title = song.title.substr(0, kTitleLength);
    header.tracker = kTrackerName;
    header.length = static_cast<std::uint16_t>(song.length);
    header.restart = static_cast<std::uint16_t>(song.restartPos);
    header.channels = static_cast<std::uint16_t>(song.numChannels);
    header.patterns = static_cast<std::uint16_t>(CountToLast(song.patterns, kMaxPatterns));
    header.instruments = static_cast<std::uint16_t>(CountToLast(song.instruments, kMaxInstruments));
    header.tempo = static_cast<std::uint16_t>(song.StartTempo());
    header.bpm = static_cast<std::uint16_t>(song.StartBpm());
    header.order = song.patternList;
    return header;
}

// ---- Patterns

std::uint8_t FileNote(std::uint8_t note) {
    if (note == kNoteOff) return kXmNoteOff;
    return note <= kLastNote ? static_cast<std::uint8_t>(note + 1) : std::uint8_t{0};
}

std::uint8_t FileVolume(std::uint16_t volume) {
    return volume <= kMaxVolume ? static_cast<std::uint8_t>(volume / 2 + kXmVolumeFirst) : std::uint8_t{0};
}

using CellFields = std::array<std::uint8_t, kXmMaxCellBytes>;   // note, instrument, volume, effect, parameter

CellFields FileCell(const Cell& cell) {
    const bool known = cell.effect <= kLastForeignEffect;
    return {FileNote(cell.note), cell.instrument, FileVolume(cell.volume),
            known ? cell.effect : std::uint8_t{0}, FileParam(cell.effect, cell.param)};
}

void AppendCell(std::vector<std::uint8_t>& out, const CellFields& fields) {
    if (std::find(fields.begin() + 1, fields.end(), 0) == fields.end()) {
        out.insert(out.end(), fields.begin(), fields.end());
        return;
    }
    const std::size_t maskAt = out.size();
    out.push_back(kXmPacked);
    for (std::size_t i = 0; i < fields.size(); ++i) {
        if (fields[i] == 0) continue;
        out[maskAt] = static_cast<std::uint8_t>(out[maskAt] | 1 << i);
        out.push_back(fields[i]);
    }
}

// The cells of a pattern, packed. A field of 16 bits holds their size, so in a pattern that is long, wide and
// full the last cells become empty ones, of one byte; the number of those is added to cellsLost.
std::vector<std::uint8_t> PackCells(const Pattern* pattern, int rows, int channels, int& cellsLost) {
    std::vector<std::uint8_t> out;
    auto cellsLeft = static_cast<std::size_t>(rows * channels);
    for (int row = 0; row < rows; ++row)
        for (int channel = 0; channel < channels; ++channel) {
            const std::size_t start = out.size();
            AppendCell(out, pattern ? FileCell(pattern->Read(row, channel)) : CellFields{});
            if (out.size() + --cellsLeft <= kMaxPackedBytes) continue;
            out.resize(start);
            out.push_back(kXmPacked);
            ++cellsLost;
        }
    return out;
}

void SavePatterns(RecordWriter& io, const Song& song, const XmHeader& header, LoadReport* report) {
    int cellsLost = 0;
    for (int i = 0; i < header.patterns; ++i) {
        const Pattern* pattern = song.GetPattern(i);
        const int rows = pattern ? pattern->Rows() : kDefaultRows;
        const auto cells = PackCells(pattern, rows, header.channels, cellsLost);
        XmPatternHeader record;
        record.rows = static_cast<std::uint16_t>(rows);
        record.packedSize = static_cast<std::uint16_t>(cells.size());
        XmPatternHeaderRecord(io, record);
        io.Bytes(cells);
    }
    if (report && cellsLost > 0) report->Add("Cells at the end of overfull patterns left out: %i", cellsLost);
}

// ---- Instruments

XmEnvelope FileEnvelope(const Envelope& envelope) {
    XmEnvelope record;
    std::ranges::transform(envelope.points, record.points.begin(),
                           [](EnvelopePoint point) { return std::array{point.x, point.y}; });
    record.numPoints = envelope.numPoints;
    record.sustain = envelope.sustainPoint;
    record.loopStart = envelope.loopStart;
    record.loopEnd = envelope.loopEnd;
    record.flags = static_cast<std::uint8_t>((envelope.enabled ? kXmEnvelopeOn : 0) |
                                             (envelope.sustainOn ? kXmEnvelopeSustain : 0) |
                                             (envelope.loopOn ? kXmEnvelopeLoop : 0));
    return record;
}

void SaveInstrumentBlock(RecordWriter& io, const Instrument& instrument) {
    XmInstrumentBody body;
    for (int key = 0; key < kXmKeys; ++key)          // a key without a sample gives 255
        body.samples[static_cast<std::size_t>(key)] =
            static_cast<std::uint8_t>(instrument.GetKeySample(key, 0, 127));
    body.volume = FileEnvelope(instrument.volumeEnvelopes[0]);
    body.pan = FileEnvelope(instrument.panEnvelopes[0]);
    body.fadeOut = instrument.fadeOut;
    io.ConstU32(kXmSampleHeaderBytes);
    XmInstrumentBodyRecord(io, body);
    io.Zeros(kReservedBytes);
}

// How a sample stands in the file: always one channel.
struct WaveForm {
    bool eightBits = false;
    std::uint32_t channels = 1, frames = 0;

    WaveForm() = default;
    explicit WaveForm(const Sample& sample)
        : eightBits(sample.IsEightBit()),
          channels(static_cast<std::uint32_t>(sample.Channels())),
          frames(std::min(sample.Count() / channels, kMaxFrames)) {}
    std::uint32_t ToBytes(std::uint32_t floats) const {
        return std::min(floats / channels, kMaxFrames) * (eightBits ? 1 : 2);
    }
};

XmSampleHeader MakeSampleHeader(const Sample& sample, const WaveForm& form) {
    const SampleData& data = *sample.data;
    XmSampleHeader record;
    record.length = form.ToBytes(sample.Count());
    record.loopStart = form.ToBytes(data.loopStart);
    record.loopLength = std::max(form.ToBytes(data.loopEnd), record.loopStart) - record.loopStart;
    record.volume = std::min<std::uint8_t>(sample.volume, kMaxVolume) / 2;
    record.fineTune = sample.fineTune;
    record.type = static_cast<std::uint8_t>(data.loopType | (form.eightBits ? 0 : kXmSixteenBit));
    record.panning = sample.panning;
    record.relativeNote = sample.toneRel;
    record.name = sample.name;
    return record;
}

template <class Integer>
void ToFrames(std::span<const float> wave, std::size_t channels, float scale, std::vector<Integer>& frames) {
    frames.resize(wave.size() / channels);
    if (channels == 1)
        for (std::size_t i = 0; i < frames.size(); ++i) frames[i] = ToInteger<Integer>(wave[i] * scale);
    else
        for (std::size_t i = 0; i < frames.size(); ++i)
            frames[i] = ToInteger<Integer>((wave[2 * i] + wave[2 * i + 1]) * 0.5f * scale);
}

// Each frame as its difference to the one before, modulo its width.
template <class Integer>
void ToDeltas(const std::vector<Integer>& frames, Integer last, std::vector<std::uint8_t>& bytes) {
    bytes.resize(frames.size() * sizeof(Integer));
    for (std::size_t i = 0; i < frames.size(); ++i) {
        const int delta = frames[i] - last;
        last = frames[i];
        for (std::size_t byte = 0; byte < sizeof(Integer); ++byte)
            bytes[i * sizeof(Integer) + byte] = static_cast<std::uint8_t>(delta >> 8 * byte);
    }
}

template <class Integer>
void SaveDeltas(RecordWriter& io, std::span<const float> wave, std::size_t channels, float scale) {
    std::vector<Integer> frames;
    std::vector<std::uint8_t> bytes;
    Integer last = 0;
    while (!wave.empty()) {
        const auto block = wave.first(std::min(kFramesAtOnce * channels, wave.size()));
        ToFrames(block, channels, scale, frames);
        ToDeltas(frames, last, bytes);
        io.Bytes(bytes);
        last = frames.back();
        wave = wave.subspan(block.size());
    }
}

void SaveWave(RecordWriter& io, const Sample& sample, const WaveForm& form) {
    const std::span<const float> wave(sample.Wave(), std::size_t{form.frames} * form.channels);
    if (form.eightBits)
        SaveDeltas<std::int8_t>(io, wave, form.channels, 1 / kXmEightBitScale);
    else
        SaveDeltas<std::int16_t>(io, wave, form.channels, 1.0f);
}

// All headers, then all waves. An empty place has a header of zeros that calls itself 16 bits.
void SaveSamples(RecordWriter& io, const Instrument& instrument, int count) {
    std::vector<WaveForm> forms;                     // looks at each wave once
    XmSampleHeader none;
    none.type = kXmSixteenBit;
    for (int i = 0; i < count; ++i) {
        const Sample* sample = instrument.GetSample(i);
        forms.push_back(sample ? WaveForm(*sample) : WaveForm());
        const auto header = sample ? MakeSampleHeader(*sample, forms.back()) : none;
        XmSampleHeaderRecord(io, header);
    }
    for (int i = 0; i < count; ++i)
        if (const Sample* sample = instrument.GetSample(i))
            SaveWave(io, *sample, forms[static_cast<std::size_t>(i)]);
}

int CountSamples(const Instrument* instrument) {
    return instrument ? CountToLast(instrument->samples, kUsedSamples) : 0;
}

void SaveInstrument(RecordWriter& io, const Instrument* instrument) {
    XmInstrumentHeader header;
    if (instrument) header.name = instrument->name;
    header.numSamples = static_cast<std::uint16_t>(CountSamples(instrument));
    if (header.numSamples > 0) header.size = kXmInstrumentBytes + kReservedBytes;
    XmInstrumentHeaderRecord(io, header);
    if (header.numSamples == 0) return;
    SaveInstrumentBlock(io, *instrument);
    SaveSamples(io, *instrument, header.numSamples);
}

}  // namespace

int SaveXM(FileStream& stream, const Song& song, LoadReport* report) {
    if (report) ReportLosses(song, kXmLimits, *report);
    Writer out(stream);
    RecordWriter io(out);
    const XmHeader header = MakeHeader(song);
    XmHeaderRecord(io, header);
    SavePatterns(io, song, header, report);
    for (int i = 0; i < header.instruments; ++i) SaveInstrument(io, song.GetInstrument(i));
    if (header.instruments > 0 && CountSamples(song.GetInstrument(header.instruments - 1)) == 0)
        io.Zeros(kTailBytes);
    return 0;
}

}  // namespace vonta
