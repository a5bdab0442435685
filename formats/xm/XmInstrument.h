// Turns the instrument records of an Extended Module or an Extended Instrument into an instrument of the song.
#pragma once

#include <cstdint>

#include "formats/Loaders.h"
#include "formats/streams/FileStream.h"
#include "formats/xm/XmFormat.h"
#include "song/Instrument.h"

namespace vonta {

// Sizes of records that a file may give: above, it is taken for damage. No known writer comes near.
constexpr std::uint32_t kXmMaxRecordBytes = 4096;

// Both envelopes, the fade-out and the samples of the 96 notes.
void ApplyXmBody(const XmInstrumentBody& body, Instrument& instrument);

// All sample headers, then all waves, into `instrument`: the first kUsedSamples of them, the others are passed over. In
// a file that ends early a wave is as long as what is there of it. What was dropped is told in `report`; `number` is
// the instrument's there.
enum class XmSamplesEnd { Whole, Cut };
XmSamplesEnd ReadXmSamples(Reader& in, int count, std::uint32_t headerSize, Instrument& instrument, int number,
                   LoadReport& report);

}  // namespace vonta
