// Any bytes as an Extended Module: refused with a reason; or loaded, saved natively and as it came, loaded from both
// again as the same, and played.
#include "formats/xm/LoaderXM.h"
#include "fuzz/SavedForms.h"
#include "fuzz/Small.h"

namespace {

using namespace vonta;

constexpr auto kSavedAsXm = SavedAsForeign<SaveXM>;

// The first save may lose something; what it wrote must come back whole.
void RequireXmSurvives(const Song& song) {
    const Bytes saved = kSavedAsXm(song);
    const auto again = LoadSong<LoaderXM>(saved);
    Require(again && kSavedAsXm(*again) == saved);
}

Bytes MostlySmall(Bytes bytes) {
    SmallInput small(bytes, 17);
    small.Keep(70, 7);                               // patterns
    small.Keep(71, 0);
    return bytes;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    auto song = LoadSong<LoaderXM>(MostlySmall({data, data + size}));
    if (!song) return 0;
    RequireXmSurvives(*song);
    RequireSongSurvives(*song);
    PlayMoment(std::move(song));
    return 0;
}
