#include "engine/sequence/PositionNotice.h"

#include <cerrno>
#include <ctime>

namespace vonta {
namespace {

timespec Deadline(int ms) {
    constexpr long kNanoseconds = 1'000'000'000;
    timespec at{};
    clock_gettime(CLOCK_MONOTONIC, &at);
    at.tv_nsec += ms % 1000 * 1'000'000L;
    at.tv_sec += ms / 1000 + at.tv_nsec / kNanoseconds;
    at.tv_nsec %= kNanoseconds;
    return at;
}

}  // namespace

// A token may be left from flags that were taken without waiting, so a token only says: look again.
bool PositionNotice::Wait(int ms) {
    const timespec deadline = Deadline(ms);
    while (!closed_) {
        if (flags_ != 0) return true;
        if (sem_clockwait(&event_, CLOCK_MONOTONIC, &deadline) != 0) {
            if (errno == EINTR) continue;
            return flags_ != 0 && !closed_;
        }
        signalled_ = false;                          // before the next look: a report after it signals again
    }
    return false;
}

void PositionNotice::Close() {
    if (!closed_.exchange(true)) sem_post(&event_);
}

}  // namespace vonta
