// A native instrument of any bytes: what loads must save, load again, and save to the same bytes.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <vector>

#include "formats/LoaderVTI.h"
#include "formats/SaverVTI.h"

namespace {

using namespace vonta;

std::unique_ptr<Instrument> Load(const std::vector<std::uint8_t>& bytes) {
    MemoryStream stream(bytes);
    LoadReport report;
    auto instrument = LoadInstrumentNative(stream, report);
    if (instrument) instrument->Validate();
    return instrument;
}

std::vector<std::uint8_t> Save(const Instrument& instrument) {
    MemoryStream stream;
    if (SaveInstrument(stream, instrument) != 0) std::abort();
    return stream.Bytes();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto instrument = Load({data, data + size});
    if (!instrument) return 0;
    const auto saved = Save(*instrument);
    const auto again = Load(saved);
    if (!again || Save(*again) != saved) std::abort();
    return 0;
}
