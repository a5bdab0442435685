// Any bytes as an Extended Instrument: refused with a reason, or loaded and played.
#include <cstdint>
#include <cstdlib>

#include "formats/LoaderXI.h"
#include "fuzz/PlayOneSecond.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    vonta::MemoryStream stream({data, data + size});
    vonta::LoadReport report;
    auto instrument = vonta::LoaderXI().Load(stream, report);
    if ((instrument == nullptr) == report.error.empty()) std::abort();
    if (!instrument) return 0;
    instrument->Validate();
    vonta::PlayInstrument(std::move(instrument));
    return 0;
}
