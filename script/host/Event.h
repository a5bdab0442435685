// An event that one waiter takes.
#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>

namespace vonta {

class Event {
public:
    // Notified under the lock: the waiter may destroy the event as soon as it has it.
    void Signal() {
        const std::lock_guard lock(mutex_);
        signalled_ = true;
        changed_.notify_one();
    }
    void Wait() {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [this] { return signalled_; });
        signalled_ = false;
    }
    bool WaitFor(int ms) {                           // false if it was not signalled in time
        std::unique_lock lock(mutex_);
        const bool signalled = changed_.wait_for(lock, std::chrono::milliseconds(ms), [this] { return signalled_; });
        if (signalled) signalled_ = false;
        return signalled;
    }

private:
    std::mutex mutex_;
    std::condition_variable changed_;
    bool signalled_ = false;
};

}  // namespace vonta
