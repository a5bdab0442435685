// Any bytes offered as a song: refused with a reason, or loaded and played for a second. Every value that comes out of
// the player must be a number.
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "engine/SndPlayer.h"
#include "formats/Loaders.h"

namespace vonta {
namespace {

constexpr std::uint32_t kSampleRate = 8000;          // Hz; low, so that a second is cheap
constexpr int kBlockFrames = 397;                    // odd, so that ticks fall anywhere in a block

void CheckBlock(const Mixer& mixer, int frames) {
    for (const auto& pair : mixer.finalBuffer)
        for (int i = 0; i < 2 * frames; ++i)
            if (!std::isfinite(pair[static_cast<std::size_t>(i)])) std::abort();
}

void PlayOneSecond(std::unique_ptr<Song> song) {
    static SndPlayer player;
    player.SetSampleRate(kSampleRate);
    player.SetSong(std::move(song));
    player.PerformPlay(0);
    for (int frames = 0; frames < static_cast<int>(kSampleRate); frames += kBlockFrames) {
        player.Render(kBlockFrames);
        CheckBlock(player.GetMixer(), kBlockFrames);
    }
    player.PerformStop(0, 1);
}

}  // namespace
}  // namespace vonta

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    vonta::MemoryStream stream({data, data + size});
    vonta::LoadReport report;
    bool unknown = false;
    auto song = vonta::LoadModule(stream, unknown, report);
    if ((song == nullptr) == report.error.empty()) std::abort();
    if (song) vonta::PlayOneSecond(std::move(song));
    return 0;
}
