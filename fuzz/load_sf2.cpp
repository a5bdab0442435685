// Any bytes as a SoundFont.
#include "formats/instruments/LoaderSF2.h"
#include "fuzz/SavedForms.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    return vonta::LoadAnyInstrument<vonta::LoaderSF2>({data, data + size});
}
