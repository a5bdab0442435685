// Following a host that has a transport of its own: tempo, start and stop, and position by up to one tick without an
// audible jump. Its lines reach the debug output while a sink is attached, and cost nothing otherwise.
#pragma once

#include <atomic>
#include <cstdint>

#include "engine/sequence/Requests.h"
#include "engine/sequence/Sequencer.h"
#include "platform/Shared.h"

namespace vonta {

class HostSync {
public:
    HostSync(Mixer& mixer, Sequencer& sequencer, Requests& requests)
        : mixer_(mixer), sequencer_(sequencer), requests_(requests) {}

    void Follow();                                 // audio side, once a block of a device that is synced
    void Forgive() { desynced_ = 0; }

    // Any thread.
    bool IsDesynced() const { return desynced_; }  // the host's position is not ours any more, or cannot be had
    bool TakePositionJump() { return positionJumped_.exchange(false); }   // the host moved us: redraw

private:
    struct Place {
        std::uint32_t tick = 0, row = 0;           // since the song's start
        double fraction = 0;                       // of the tick
        bool usable = false;
    };

    Place ReadPlace();
    void FollowPosition();

    Mixer& mixer_;
    Sequencer& sequencer_;
    Requests& requests_;
    std::atomic<bool> positionJumped_{false};
    Relaxed<std::uint8_t> desynced_{0};
};

}  // namespace vonta
