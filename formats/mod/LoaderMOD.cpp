#include "formats/mod/LoaderMOD.h"

#include <algorithm>

#include "formats/Comments.h"
#include "formats/mod/ModFormat.h"
#include "formats/samples/SampleSetup.h"
#include "formats/samples/WaveBytes.h"
#include "platform/Debug.h"

namespace vonta {
namespace {

void LoadHeader(const ModHeader& header, int channels, Song& song) {
    song.SetTitle(header.title);
    song.numChannels = std::min(channels, kMaxChannels);   // one channel stays one
    song.SetBPM(kDefaultBpm);
    song.SetTempo(kDefaultTempo);
    std::copy(header.orders.begin(), header.orders.end(), song.patternList.begin());
    song.SetPatternPosLenght(header.length);
    // Few writers mean a position by the restart byte; most leave a constant there.
    song.SetPatternPosRestart(0);
}

std::unique_ptr<Pattern> LoadPattern(Reader& in, int channels, std::vector<std::uint8_t>& bytes) {
    auto pattern = std::make_unique<Pattern>();
    in.Bytes(bytes);
    std::span<const std::uint8_t> rest(bytes);
    for (int row = 0; row < kModRows; ++row)
        for (int channel = 0; channel < channels; ++channel) {
            pattern->Write(row, channel, ReadModCell(rest.first<kModCellBytes>()));
            rest = rest.subspan(kModCellBytes);
        }
    return pattern;
}

// The highest pattern of all orders, those behind the song's end included, is the last one of the file.
void LoadPatterns(Reader& in, const ModHeader& header, int channels, Song& song, LoadReport& report) {
    const int last = *std::max_element(header.orders.begin(), header.orders.end());
    DebugOutput("\t- num. patterns: %i\n", last);
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(kModRows * channels) * kModCellBytes);
    for (int i = 0; i <= last; ++i) {
        const bool wasWhole = !in.Truncated();
        song.AddPattern(LoadPattern(in, channels, bytes));
        if (wasWhole && in.Truncated())
            report.Add("The file ends in pattern %i: what follows is empty, and all samples are missing.", i);
    }
}

std::uint32_t WordsToBytes(std::uint16_t words) { return words * kModWordBytes; }

void LoadLoop(const ModSample& record, SampleData& data) {
    const std::uint32_t start = WordsToBytes(record.loopStart), length = WordsToBytes(record.loopLength);
    data.loopStart = start;
    data.loopEnd = start + length;
    if (length > kModWordBytes) data.loopType = VTSAMPLE_LOOP_FORDWARD;
}

// What the file has of the next wave, in whole words: it is saved again as it was loaded.
std::uint32_t HeldBytes(const Reader& in, const ModSample& record) {
    return static_cast<std::uint32_t>(
        std::min<std::int64_t>(WordsToBytes(record.length), in.Remaining() / kModWordBytes * kModWordBytes));
}

std::unique_ptr<Instrument> MakeInstrument(Reader& in, const ModSample& record) {
    auto sample = std::make_unique<Sample>();
    const std::uint32_t held = HeldBytes(in, record);
    if (held > 0) ReadWaveValues<std::int8_t>(in, sample->Allocate(held, 1));
    LoadLoop(record, *sample->data);
    if (held < WordsToBytes(record.length)) CutLoop(*sample);
    sample->volume = static_cast<std::uint8_t>(2 * std::min(record.volume, kModVolume));
    sample->fineTune = static_cast<std::int8_t>(record.fineTune * 16);

    auto instrument = std::make_unique<Instrument>();
    instrument->MapAllKeys();
    instrument->SetName(record.name);
    instrument->AddSample(std::move(sample));
    return instrument;
}

// Waves stand one behind the other, so in a file that is cut all behind the cut are gone.
void LoadInstruments(Reader& in, const ModHeader& header, Song& song, LoadReport& report) {
    int missing = 0;
    for (const ModSample& record : header.samples) {
        const std::uint32_t size = WordsToBytes(record.length), held = HeldBytes(in, record);
        song.AddInstrument(MakeInstrument(in, record));
        if (held == size || in.Truncated()) continue;
        if (held > 0)
            report.Add("The file ends in the sample of instrument %i \"%s\": it has %i of its %i frames.",
                       song.numInstruments, record.name.c_str(), static_cast<int>(held), static_cast<int>(size));
        else
            ++missing;
    }
    if (missing > 0) report.Add("The file ends early: the samples of %i instruments are missing.", missing);
}

}  // namespace

bool LoaderMOD::Check(FileStream& stream) {
    ModTag tag;
    return stream.Seek(kModTagOffset, kFromStart) && stream.Read(tag.data(), tag.size(), 1) == 1 &&
           IsModTag(tag);
}

std::unique_ptr<Song> LoaderMOD::Load(FileStream& stream, LoadReport& report) {
    DebugOutput("* Loading MOD...\n");
    Reader in(stream);
    ModReader record(in);
    ModHeader header;
    ModHeaderRecord(record, header);
    const int channels = ModTagChannels(header.tag);
    DebugOutput("\t- format ID: (%.4s)\n", reinterpret_cast<const char*>(header.tag.data()));
    if (channels == 0 || in.Truncated()) {
        DebugOutput("\t- format not supported or corrupt file\n");
        report.Fail("the file does not say how many channels it has");
        return nullptr;
    }
    DebugOutput("\t- num channels: %i\n", channels);
    if (channels > kMaxChannels)
        report.Add("The file has %i channels: the last %i are dropped.", channels, channels - kMaxChannels);

    auto song = std::make_unique<Song>();
    LoadHeader(header, channels, *song);
    DebugOutput("\t- song lenght: %i\n", header.length);
    LoadPatterns(in, header, channels, *song, report);
    LoadInstruments(in, header, *song, report);
    song->SetComments(CommentsFromNames(*song));
    DebugOutput("\t- song loaded correctly\n");
    return song;
}

}  // namespace vonta
