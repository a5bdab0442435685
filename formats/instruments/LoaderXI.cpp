#include "formats/instruments/LoaderXI.h"

#include "formats/OpenToLoad.h"
#include "formats/streams/Record.h"
#include "formats/xm/XmFormat.h"
#include "formats/xm/XmInstrument.h"
#include "platform/Debug.h"

namespace vonta {
namespace {

constexpr std::string_view kXiSignature = "Extended Instrument:";
constexpr std::int64_t kXiHeaderBytes = 298;

struct XiHeader {
    std::string name;
    XmInstrumentBody body;
    std::uint16_t numSamples = 0;
};

template <class Io, class Header>
void XiHeaderRecord(Io& io, Header& header) {
    io.ConstFixedText(kXiSignature, kXiSignature.size());
    io.ConstU8(' ');
    io.FixedText(header.name, kXmNameWidth);
    io.ConstU8(0x1A);
    io.ConstFixedText({}, kXmTextWidth);             // tracker
    io.Zeros(2);                                     // version
    XmInstrumentBodyRecord(io, header.body);
    io.Zeros(22);
    io.U16(header.numSamples);
}

}  // namespace

bool LoaderXI::Check(const std::string& path) {
    DiskStream stream;
    return stream.Open(path, "rb") && Check(stream);
}

bool LoaderXI::Check(FileStream& stream) {
    Reader in(stream);
    return in.Remaining() >= kXiHeaderBytes && in.FixedText(kXiSignature.size()) == kXiSignature;
}

std::unique_ptr<Instrument> LoaderXI::Load(const std::string& path, LoadReport& report) {
    DebugOutput("* LOADING XI file (%s)...\n", path.c_str());
    DiskStream stream;
    return OpenToLoad(stream, path, report) ? Load(stream, report) : nullptr;
}

std::unique_ptr<Instrument> LoaderXI::Load(FileStream& stream, LoadReport& report) {
    DebugOutput("\t- file (%s) opened\n", stream.GetPath().c_str());
    Reader in(stream);
    RecordReader record(in);
    XiHeader header;
    XiHeaderRecord(record, header);
    if (in.Truncated()) {
        report.Fail("the file is cut short in its header");
        return nullptr;
    }
    auto instrument = std::make_unique<Instrument>();
    instrument->SetName(header.name);
    DebugOutput("\t\tnumvolp: %i\n", header.body.volume.numPoints);
    ApplyXmBody(header.body, *instrument);
    DebugOutput("\t\t\t- num. samples %i\n", header.numSamples);
    ReadXmSamples(in, header.numSamples, kXmSampleHeaderBytes, *instrument, 1, report);
    DebugOutput("\t- file (%s) closed\n", stream.GetPath().c_str());
    DebugOutput("\t- instrument loaded correctly\n");
    return instrument;
}

}  // namespace vonta
