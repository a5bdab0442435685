// Builds Extended Instruments byte by byte.
#pragma once

#include "tests/support/XmBuilder.h"

namespace vonta::test {

inline std::vector<std::uint8_t> BuildXi(const XmInstrumentRecipe& instrument) {
    ByteBuilder out;
    out.Text("Extended Instrument:").U8(7).FixedText(instrument.name, 22).U8(0x1A).FixedText("a test", 20).U16(0x0102);
    XmBuilder::AddBody(out, instrument);
    out.Zeros(22).U16(instrument.numSamples.value_or(static_cast<unsigned>(instrument.samples.size())));
    XmBuilder::AddSamples(out, instrument);
    return out.bytes;
}

}  // namespace vonta::test
