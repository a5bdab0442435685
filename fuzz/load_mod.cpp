// Any bytes as a module of 31 instruments: loaded, saved natively or as it came, loaded again as the same, and played.
#include <algorithm>

#include "formats/mod/LoaderMOD.h"
#include "fuzz/SavedForms.h"
#include "fuzz/Small.h"

namespace {

using namespace vonta;

constexpr auto kSavedAsMod = SavedAsForeign<SaveMOD>;

// A loop that the end of its wave cuts to one word is none when it is read again.
Bytes WithoutLoops(Bytes bytes) {
    for (std::size_t at = 46; at < 950; at += 30) std::fill_n(bytes.begin() + static_cast<std::ptrdiff_t>(at), 4, 0);
    return bytes;
}

void RequireModSurvives(const Song& song) {
    const Bytes saved = kSavedAsMod(song);
    const auto again = LoadSong<LoaderMOD>(saved);
    Require(again && WithoutLoops(kSavedAsMod(*again)) == WithoutLoops(saved));
}

Bytes MostlySmall(Bytes bytes) {
    SmallInput small(bytes, 0);
    for (std::size_t order = 952; order < 1080; ++order) small.Keep(order, 3);
    for (std::size_t waveLength = 42; waveLength < 950; waveLength += 30) small.Keep(waveLength, 0);
    return bytes;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    auto song = LoadSong<LoaderMOD>(MostlySmall({data, data + size}));
    if (!song) return 0;
    if (song->title.size() % 2 == 0) {               // one way or the other: 31 instruments make both of them slow
        RequireModSurvives(*song);
    } else {
        for (int i = 2; i < 30; ++i) song->SetInstrument(i, nullptr);   // one is as good as another
        RequireSongSurvives(*song);
    }
    PlayMoment(std::move(song));
    return 0;
}
