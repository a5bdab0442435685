// Any bytes as a module of 31 instruments: loaded, saved, and loaded again as the same.
#include <algorithm>
#include <cstdlib>

#include "formats/ForeignSavers.h"
#include "formats/LoaderMOD.h"

namespace {

std::unique_ptr<vonta::Song> Load(std::vector<std::uint8_t> bytes) {
    vonta::MemoryStream stream(std::move(bytes));
    vonta::LoaderMOD loader;
    const bool known = loader.Check(stream);
    stream.Seek(0, vonta::kFromStart);
    vonta::LoadReport report;
    auto song = loader.Load(stream, report);
    if (song && !known) std::abort();
    if (song) song->Validate();
    return song;
}

template <int (*save)(vonta::FileStream&, const vonta::Song&, vonta::LoadReport*)>
std::vector<std::uint8_t> Save(const vonta::Song& song) {
    vonta::MemoryStream stream;
    vonta::LoadReport report;
    save(stream, song, &report);
    return stream.Bytes();
}

// A loop that the end of its wave cuts to one word is none when it is read again.
std::vector<std::uint8_t> WithoutLoops(std::vector<std::uint8_t> bytes) {
    for (std::size_t at = 46; at < 950; at += 30) std::fill_n(bytes.begin() + static_cast<std::ptrdiff_t>(at), 4, 0);
    return bytes;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto song = Load({data, data + size});
    if (!song) return 0;
    Save<vonta::SaveXM>(*song);
    const auto saved = Save<vonta::SaveMOD>(*song);
    const auto again = Load(saved);
    if (!again || WithoutLoops(Save<vonta::SaveMOD>(*again)) != WithoutLoops(saved)) std::abort();
    return 0;
}
