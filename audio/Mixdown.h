// The song rendered to WAV files, as fast as it can be: one stereo file, or one for each part of the signal path.
//
// On the calling thread, with the device stopped. A block is 1024 frames, and the last is written whole, so a file
// holds up to 1023 frames behind the song's end. Files appear under their names when they are complete; a mixdown
// that is cancelled or fails leaves none.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "engine/SndPlayer.h"
#include "formats/Loaders.h"

namespace vonta {

constexpr std::uint32_t kMinMixdownRate = 8000, kMaxMixdownRate = 192000;   // Hz

// How much of a song that has no end, or is to sound more than once.
struct MixdownLimits {
    int loops = 1;                                   // times through the song, 1 or more
    double maxMinutes = 60.0;                        // of sound, above 0
};

struct MixdownState {
    std::uint64_t frames = 0;                        // written so far
    double seconds = 0;                              // of sound
    int position = 0;                                // in the song's pattern list
    int loop = 1;                                    // which time through the song
};

class MixdownProgress {
public:
    virtual ~MixdownProgress() = default;
    virtual bool OnBlock(const MixdownState& state) = 0;   // after each block; false cancels
};

enum class MixdownEnd {
    SongEnd,
    JumpedBack,       // the song runs in a circle: a jump entered a row that had been performed before
    TimeLimit,
    Cancelled,
    Failed,
};

struct MixdownResult {
    bool ok = false;                                 // the files hold what was asked for
    MixdownEnd end = MixdownEnd::Failed;
    std::string error;                               // one line if not ok
    std::uint64_t frames = 0;                        // in each file
    std::vector<std::string> files;                  // that are complete
    std::vector<std::string> dropped;                // parts whose file could not be opened
};

// `base` is the name without extension; the mixdown's own names are appended to it. The player stops where it was
// playing, and has its rate and tempo back afterwards. `progress` may be null.
MixdownResult Mixdown(SndPlayer& player, const std::string& base, const MixdownOptions& options,
                      const MixdownLimits& limits = {}, MixdownProgress* progress = nullptr);

}  // namespace vonta
