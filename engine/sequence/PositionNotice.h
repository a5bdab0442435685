// Tells a reader on another thread that tempo or position changed, without ever holding up the callback.
#pragma once

#include <semaphore.h>

#include <atomic>
#include <cstdint>

namespace vonta {

class PositionNotice {
public:
    PositionNotice() { sem_init(&event_, 0, 0); }
    ~PositionNotice() { sem_destroy(&event_); }
    PositionNotice(const PositionNotice&) = delete;
    PositionNotice& operator=(const PositionNotice&) = delete;

    enum Flag : std::uint8_t { kBpmChanged = 1, kPositionChanged = 2 };
    struct Values { std::uint32_t bpm = 0, pattern = 0; std::int32_t row = 0; };

    // Audio thread, once a block. Signals the event if a flag is set that was not set before.
    void Report(const Values& now) {
        const auto changed = static_cast<std::uint8_t>((now.bpm != last_.bpm ? kBpmChanged : 0) |
            (now.pattern != last_.pattern || now.row != last_.row ? kPositionChanged : 0));
        if (!changed) return;
        last_ = now;
        if ((flags_.fetch_or(changed) & changed) != changed && !signalled_.exchange(true)) sem_post(&event_);
    }

    // The reader's thread: the flags since the last take, which clears them.
    std::uint8_t TakeFlags() { return flags_.exchange(0); }

    // The reader's thread: waits for a flag; false after `ms` milliseconds or when closed.
    bool Wait(int ms);
    void Close();

private:
    Values last_;                                  // the callback's own
    std::atomic<std::uint8_t> flags_{0};
    std::atomic<bool> signalled_{false}, closed_{false};
    sem_t event_;                                  // posting it never waits
};

}  // namespace vonta
