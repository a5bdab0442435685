// The gate at the head of the block cycle: held shut for the moment in which another thread exchanges parts of the
// song.
//
// The audio side never waits here: a call that finds the gate shut is left out, and the next one makes up for it from
// where the device stands by then. Whoever holds it waits instead, for the end of a cycle that is inside; and so that
// no call has to be left out, nobody shuts the gate when the next call is due: then that one is let by first.
#pragma once

#include <atomic>
#include <cstdint>

#include "platform/Shared.h"

namespace vonta {

// One while the block cycle runs, in the whole process.
extern std::atomic<std::uint8_t> inCallback;

class CycleGate {
public:
    // Audio side, around each cycle. False: it is shut, and nothing may be touched.
    bool Enter();
    void Leave();
    void Lose() { lost_ = true; }                  // the cycle was cut short by a fault: inCallback stays set

    // Never on the audio side. When Hold returns, no cycle is inside, and none comes in before as many Releases.
    void Hold();
    void Release() { --holds_; }
    void AwaitOutside() const;                     // the end of the cycle that is inside, if one is

private:
    void AwaitMoment() const;

    std::atomic<int> holds_{0};
    std::atomic<bool> lost_{false};
    // Of the cycles, nanoseconds: when the last one ended, and how long after the one before it came.
    Relaxed<std::int64_t> left_{0}, interval_{0};
};

}  // namespace vonta
