#include "engine/PositionNotice.h"

#include <chrono>

namespace vonta {

// A token may be left from flags that were taken without waiting, so a token only says: look again.
bool PositionNotice::Wait(int ms) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(ms);
    while (!closed_) {
        if (flags_ != 0) return true;
        if (!event_.try_acquire_until(deadline)) return flags_ != 0 && !closed_;
        signalled_ = false;                          // before the next look: a report after it signals again
    }
    return false;
}

void PositionNotice::Close() {
    if (!closed_.exchange(true)) event_.release();
}

}  // namespace vonta
