// Any bytes offered as a song: refused with a reason, or loaded and played.
#include <cstdint>
#include <cstdlib>

#include "formats/Loaders.h"
#include "fuzz/PlayOneSecond.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    vonta::MemoryStream stream({data, data + size});
    vonta::LoadReport report;
    bool unknown = false;
    auto song = vonta::LoadModule(stream, unknown, report);
    if ((song == nullptr) == report.error.empty()) std::abort();
    if (song) vonta::PlayOneSecond(std::move(song));
    return 0;
}
