// Any bytes as a WAV file and as a raw one: refused with a reason, or a sample of whole frames that came from them.
#include <cstdint>
#include <cstdlib>

#include "formats/LoaderRaw.h"
#include "formats/LoaderWAV.h"

namespace {

template <class Loader>
void Load(const std::uint8_t* data, std::size_t size) {
    vonta::MemoryStream stream({data, data + size});
    vonta::LoadReport report;
    Loader loader;
    const auto sample = loader.Load(stream, report);
    if ((sample == nullptr) == report.error.empty()) std::abort();
    if (!sample) return;
    if (sample->Count() > size || sample->Count() % static_cast<unsigned>(sample->Channels()) != 0) std::abort();
    if (!sample->IsSixteenBit()) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Load<vonta::LoaderWAV>(data, size);
    Load<vonta::LoaderRaw>(data, size);
    return 0;
}
