#include "formats/xm/LoaderXM.h"

#include <algorithm>
#include <array>

#include "formats/Comments.h"
#include "formats/streams/Record.h"
#include "formats/xm/XmFormat.h"
#include "formats/xm/XmInstrument.h"
#include "formats/xm/XmPatterns.h"
#include "platform/Debug.h"

namespace vonta {
namespace {

// The header's size is believed when a pattern stands where it points; most files have 276, and some lie.
void SeekPastHeader(FileStream& stream, XmHeader& header) {
    const std::int64_t usual = static_cast<std::int64_t>(kXmHeaderBytes);
    const std::int64_t told = std::int64_t{kXmHeaderSizeAt} + header.headerSize;
    const auto fixedPart = static_cast<std::uint32_t>(kXmHeaderSize - header.order.size());
    if (header.headerSize > fixedPart && header.headerSize <= kXmMaxRecordBytes && told != usual &&
        stream.Seek(told, kFromStart) && IsXmPatternHere(stream)) {
        if (told < usual)                            // a short order table: what follows it is no order
            std::fill(header.order.begin() + (header.headerSize - fixedPart), header.order.end(), std::uint8_t{0});
        return;
    }
    stream.Seek(usual, kFromStart);
}

bool ReadHeader(Reader& in, XmHeader& header, Song& song, LoadReport& report) {
    RecordReader record(in);
    XmHeaderRecord(record, header);
    if (in.Truncated()) {
        report.Fail("the file is cut short in its header");
        return false;
    }
    SeekPastHeader(in.Stream(), header);
    song.SetBPM(header.bpm);
    song.SetTempo(header.tempo);
    song.numChannels = std::min<int>(header.channels, kMaxChannels);   // one channel stays one
    song.SetPatternList(header.order);
    song.SetPatternPosLenght(header.length);
    song.SetPatternPosRestart(header.restart);
    song.SetTitle(header.title);
    DebugOutput("\t- num. channels: %i\n", header.channels);
    DebugOutput("\t- num. patterns: %i\n", header.patterns);
    return true;
}

// Moves behind what an instrument's size counts. A size that cannot be is replaced by the `usual` one.
void SeekPastInstrument(FileStream& stream, std::int64_t start, std::uint32_t size, std::uint32_t usual) {
    if (start + size <= stream.Tell()) return;
    if (size > kXmMaxRecordBytes || !stream.Seek(start + size, kFromStart))
        stream.Seek(std::min(start + usual, stream.Size()), kFromStart);
}

XmSamplesEnd ReadInstrument(Reader& in, const XmInstrumentHeader& header, std::int64_t start, Instrument& instrument,
                    int number, LoadReport& report) {
    if (header.numSamples == 0) {
        SeekPastInstrument(in.Stream(), start, header.size, kXmInstrumentHeaderBytes);
        return XmSamplesEnd::Whole;
    }
    const std::uint32_t sampleHeaderSize = in.U32();
    XmInstrumentBody body;
    RecordReader record(in);
    XmInstrumentBodyRecord(record, body);
    if (in.Truncated()) {
        report.Add("The file ends in instrument %i: its samples are missing.", number);
        return XmSamplesEnd::Cut;
    }
    DebugOutput("\tnumvolp: %i\n", body.volume.numPoints);
    ApplyXmBody(body, instrument);
    SeekPastInstrument(in.Stream(), start, header.size, kXmUsualInstrumentBytes);
    return ReadXmSamples(in, header.numSamples, sampleHeaderSize, instrument, number, report);
}

// In a file that ends early, those that it has: the last one with as much of its samples as is there.
void ReadInstruments(Reader& in, int count, Song& song, LoadReport& report) {
    DebugOutput("\t- num. instruments %i\n", count);
    auto end = XmSamplesEnd::Whole;
    for (int i = 0; i < std::min(count, kMaxInstruments) && end == XmSamplesEnd::Whole; ++i) {
        DebugOutput("\t\t- loading instrument... %i\n", i);
        const std::int64_t start = in.Stream().Tell();
        XmInstrumentHeader header;
        RecordReader record(in);
        XmInstrumentHeaderRecord(record, header);
        if (in.Truncated()) break;
        auto instrument = std::make_unique<Instrument>();
        instrument->SetName(header.name);
        DebugOutput("\t\t\t- num. samples %i\n", header.numSamples);
        end = ReadInstrument(in, header, start, *instrument, i + 1, report);
        song.AddInstrument(std::move(instrument));
    }
    if (const int missing = std::min(count, kMaxInstruments) - song.numInstruments; missing > 0)
        report.Add("The file ends early: the last %i of its %i instruments are missing.", missing, count);
    if (count > kMaxInstruments)
        report.Add("The file has %i instruments: the last %i are dropped.", count, count - kMaxInstruments);
    DebugOutput("\t- all instruments ok\n");
}

}  // namespace

bool LoaderXM::Check(FileStream& stream) {
    std::array<char, kXmSignature.size()> signature{};
    return stream.Read(signature.data(), signature.size(), 1) == 1 &&
           std::string_view(signature.data(), signature.size()) == kXmSignature;
}

std::unique_ptr<Song> LoaderXM::Load(FileStream& stream, LoadReport& report) {
    DebugOutput("* Loading XM...\n");
    auto song = std::make_unique<Song>();
    Reader in(stream);
    XmHeader header;
    if (!ReadHeader(in, header, *song, report)) return nullptr;
    const XmPatternsEnd patterns = ReadXmPatterns(in, header, *song, report);
    if (patterns == XmPatternsEnd::Damaged) return nullptr;
    if (patterns == XmPatternsEnd::Whole) ReadInstruments(in, header.instruments, *song, report);
    song->SetComments(CommentsFromNames(*song));
    DebugOutput("\t- song loaded correctly\n");
    return song;
}

}  // namespace vonta
