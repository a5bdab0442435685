// A run: frames of one voice during which nothing but the position and, in some runs, the gains change. The mix loop
// cuts its block into runs; here is the one loop that they all share, stamped out for every variant.
#pragma once

#include "engine/channels/Voice.h"
#include "engine/mix/MixLoop.h"

namespace vonta {

enum class Write { Store, Add };
enum class Travel { Forward, Backward, Held };    // Held: the fraction moves on, the position does not
enum class GainKind { Steady, Changing };

struct GainChange {                               // per frame, added before the frame is made
    float left = 0, right = 0;
};

// Writes `frames` stereo frames from the voice's position on. Changes of the voice only its gains; the position is
// the caller's. No frame may start 16384 frames or more away from the position.
using MixRun = void (*)(Voice& voice, float* out, int frames, GainChange change);

constexpr int kRunReach = 16383;                  // frames of the source that one run may span

MixRun FindMixRun(bool stereo, Interpolation interpolation, Write write, Travel travel, GainKind gain);

}  // namespace vonta
