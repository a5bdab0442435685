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
    if (in.Truncated()) return XmSamplesEnd::Cut;
    DebugOutput("\tnumvolp: %i\n", body.volume.numPoints);
    ApplyXmBody(body, instrument);
    SeekPastInstrument(in.Stream(), start, header.size, kXmUsualInstrumentBytes);
    return ReadXmSamples(in, header.numSamples, sampleHeaderSize, instrument, number, report);
}

// False if the file ends before the last wave of the last instrument: then it is not the song that it says it is.
bool ReadInstruments(Reader& in, int count, Song& song, LoadReport& report) {
    DebugOutput("\t- num. instruments %i\n", count);
    for (int i = 0; i < std::min(count, kMaxInstruments); ++i) {
        DebugOutput("\t\t- loading instrument... %i\n", i);
        const std::int64_t start = in.Stream().Tell();
        XmInstrumentHeader header;
        RecordReader record(in);
        XmInstrumentHeaderRecord(record, header);
        if (in.Truncated()) {
            report.Fail("the file is cut short before instrument %i", i + 1);
            return false;
        }
        auto instrument = std::make_unique<Instrument>();
        instrument->SetName(header.name);
        DebugOutput("\t\t\t- num. samples %i\n", header.numSamples);
        const XmSamplesEnd end = ReadInstrument(in, header, start, *instrument, i + 1, report);
        if (end == XmSamplesEnd::Cut || (end == XmSamplesEnd::LastIsShort && i + 1 < count)) {
            report.Fail("the file is cut short in instrument %i", i + 1);
            return false;
        }
        song.AddInstrument(std::move(instrument));
    }
    if (count > kMaxInstruments)
        report.Add("The file has %i instruments: the last %i are dropped.", count, count - kMaxInstruments);
    DebugOutput("\t- all instruments ok\n");
    return true;
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
    if (!ReadXmPatterns(in, header, *song, report)) return nullptr;
    if (!ReadInstruments(in, header.instruments, *song, report)) return nullptr;
    song->SetComments(CommentsFromNames(*song));
    DebugOutput("\t- song loaded correctly\n");
    return song;
}

}  // namespace vonta
