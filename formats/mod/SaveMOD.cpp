// Writes a module of 31 instruments.
#include <algorithm>

#include "formats/ForeignEffects.h"
#include "formats/ForeignSavers.h"
#include "formats/mod/ModFormat.h"
#include "formats/samples/WaveBytes.h"
#include "formats/SaveLosses.h"

namespace vonta {
namespace {

constexpr int kCommonPatterns = 128;                 // all players read these

constexpr FormatLimits kModLimits = {
    .titleLength = kModTitleWidth,
    .nameLength = kModNameWidth,
    .channels = kModChannels,
    .positions = kModPositions,
    .patterns = kMaxPatterns,
    .minRows = kModRows,
    .maxRows = kModRows,
    .lowestNote = kModLowestNote,
    .instruments = kModInstruments,
    .samples = 1,
    .frames = kModMaxWords * kModWordBytes,
};

const Sample* FindSample(const Song& song, int number) {
    const Instrument* instrument = song.GetInstrument(number);
    return instrument ? instrument->GetSample(0) : nullptr;
}

std::uint32_t ToWords(const Sample& sample, std::uint32_t floats) {
    return floats / (static_cast<std::uint32_t>(sample.Channels()) * kModWordBytes);
}

void FillLoop(const Sample& sample, ModSample& record) {
    const SampleData& data = *sample.data;
    if (data.loopType == VTSAMPLE_LOOP_NONE) return;
    const std::uint32_t start = std::min<std::uint32_t>(ToWords(sample, data.loopStart), record.length);
    const std::uint32_t floats = std::max(data.loopEnd, data.loopStart) - data.loopStart;
    record.loopStart = static_cast<std::uint16_t>(start);
    record.loopLength = static_cast<std::uint16_t>(std::min(ToWords(sample, floats), record.length - start));
}

ModSample MakeSampleRecord(const Song& song, int number) {
    ModSample record;
    if (const Instrument* instrument = song.GetInstrument(number)) record.name = instrument->name;
    const Sample* sample = FindSample(song, number);
    if (!sample) return record;
    record.length = static_cast<std::uint16_t>(std::min(ToWords(*sample, sample->Count()), kModMaxWords));
    record.fineTune = static_cast<std::int8_t>(sample->fineTune / 16);
    record.volume = std::min<std::uint8_t>(sample->volume / 2, kModVolume);
    FillLoop(*sample, record);
    return record;
}

// Readers take the highest number of all 128 entries for the last pattern. Leftovers behind the song's end must
// not make them look for patterns that nobody ever wrote.
void FillOrders(const Song& song, ModHeader& header) {
    for (std::size_t i = 0; i < header.orders.size(); ++i) {
        const std::uint8_t pattern = song.patternList[i];
        if (i < header.length || song.GetPattern(pattern)) header.orders[i] = pattern;
    }
}

ModHeader MakeHeader(const Song& song, int channels) {
    ModHeader header;
    header.title = song.title;
    for (int i = 0; i < kModInstruments; ++i)
        header.samples[static_cast<std::size_t>(i)] = MakeSampleRecord(song, i);
    header.length = static_cast<std::uint8_t>(std::min<std::uint32_t>(song.length, kModPositions));
    header.restart = static_cast<std::uint8_t>(song.restartPos < header.length ? song.restartPos : 0);
    FillOrders(song, header);
    header.tag = MakeModTag(channels);
    return header;
}

using PatternBytes = std::vector<std::uint8_t>;

std::span<std::uint8_t, kModCellBytes> CellAt(PatternBytes& bytes, int channels, int row, int channel) {
    const auto cell = static_cast<std::size_t>(row * channels + channel);
    return std::span(bytes).subspan(cell * kModCellBytes).first<kModCellBytes>();
}

// Patterns of a file have 64 rows. A shorter one goes on to the next position after its last row if a cell
// there has no effect, and if no cell of that row says where to go already.
void EndShortPattern(PatternBytes& bytes, int channels, int row) {
    int free = -1;
    for (int channel = channels - 1; channel >= 0; --channel) {
        const Cell cell = ReadModCell(CellAt(bytes, channels, row, channel));
        if (cell.effect == kPositionJump || cell.effect == kPatternBreak) return;
        if (cell.effect == 0 && cell.param == 0) free = channel;
    }
    if (free < 0) return;
    const auto cell = CellAt(bytes, channels, row, free);
    cell[2] = static_cast<std::uint8_t>(cell[2] | kPatternBreak);
}

// Columns that the song does not have, and rows behind a pattern's end, are empty.
void SavePattern(Writer& out, const Song& song, int number, int channels) {
    PatternBytes bytes(static_cast<std::size_t>(kModRows * channels) * kModCellBytes);
    if (const Pattern* pattern = song.GetPattern(number)) {
        const int rows = std::min(pattern->Rows(), kModRows);
        for (int row = 0; row < rows; ++row)
            for (int channel = 0; channel < std::min(channels, song.numChannels); ++channel)
                WriteModCell(CellAt(bytes, channels, row, channel), pattern->Read(row, channel));
        if (rows < kModRows) EndShortPattern(bytes, channels, rows - 1);
    }
    out.Bytes(bytes);
}

void SaveWave(Writer& out, const Sample& sample, std::size_t words) {
    const auto channels = static_cast<std::size_t>(sample.Channels());
    const float* wave = sample.Wave();
    std::vector<float> left(words * kModWordBytes);
    for (std::size_t i = 0; i < left.size(); ++i) left[i] = wave[i * channels];
    WriteWaveValues<std::int8_t>(out, left);
}

// The tags name even numbers only, from 2 on.
int ChannelsOfFile(const Song& song) { return std::clamp((song.numChannels + 1) / 2 * 2, 2, kModChannels); }

}  // namespace

int SaveMOD(FileStream& stream, const Song& song, LoadReport* report) {
    const int channels = ChannelsOfFile(song);
    const ModHeader header = MakeHeader(song, channels);
    const int patterns = *std::ranges::max_element(header.orders) + 1;
    if (report) {
        FormatLimits limits = kModLimits;
        limits.patterns = patterns;
        if (channels > song.numChannels) report->Add("Empty channels added: %i", channels - song.numChannels);
        if (patterns > kCommonPatterns)
            report->Add("Patterns above %i, which not every player reads: %i", kCommonPatterns - 1,
                        patterns - kCommonPatterns);
        ReportLosses(song, limits, *report);
    }
    Writer out(stream);
    ModWriter record(out);
    ModHeaderRecord(record, header);
    for (int i = 0; i < patterns; ++i) SavePattern(out, song, i, channels);
    for (int i = 0; i < kModInstruments; ++i)
        if (const Sample* sample = FindSample(song, i))
            SaveWave(out, *sample, header.samples[static_cast<std::size_t>(i)].length);
    return 0;
}

}  // namespace vonta
