// A native song of any bytes: what loads must save, load again, save to the same bytes, and play.
#include "fuzz/SavedForms.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    auto song = vonta::LoadSong<vonta::LoaderNative>({data, data + size});
    if (!song) return 0;
    vonta::RequireSongSurvives(*song);
    vonta::PlayMoment(std::move(song));
    return 0;
}
