// Any bytes as an Extended Instrument.
#include "formats/instruments/LoaderXI.h"
#include "fuzz/SavedForms.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    return vonta::LoadAnyInstrument<vonta::LoaderXI>({data, data + size});
}
