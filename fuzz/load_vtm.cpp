// A native song of any bytes: what loads must save, load again, and save to the same bytes.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <vector>

#include "formats/LoaderVTM.h"
#include "formats/SaverVTM.h"

namespace {

using namespace vonta;

std::unique_ptr<Song> Load(const std::vector<std::uint8_t>& bytes) {
    MemoryStream stream(bytes);
    LoaderNative loader;
    if (!loader.Check(stream)) return nullptr;
    stream.Seek(0, kFromStart);
    LoadReport report;
    auto song = loader.Load(stream, report);
    if (song) song->Validate();
    return song;
}

std::vector<std::uint8_t> Save(Song& song) {
    MemoryStream stream;
    if (SaveModule(stream, song, {}) != 0) std::abort();
    return stream.Bytes();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto song = Load({data, data + size});
    if (!song) return 0;
    const auto saved = Save(*song);
    const auto again = Load(saved);
    if (!again || Save(*again) != saved) std::abort();
    return 0;
}
