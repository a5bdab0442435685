// Makes sure that a program which is told to end does: its main thread may be held by a sound server that does not
// answer, by a message box or by a display that is gone, or another thread may have failed for good.
//
// One at a time. It runs on a thread of its own, and wakes for signals and for who calls it.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <optional>
#include <thread>

namespace vonta {

class EndWatch {
public:
    // Saves what is to be saved, on the watch's thread, unless somebody else has begun to: the status to end with, or
    // nothing while that one is still at work.
    using Rescue = std::function<std::optional<int>()>;

    static constexpr int kPatienceMs = 1000;         // for the program to end by itself, from the signal on
    static constexpr int kTidyUpMs = 800;            // for what is taken down after all is saved

    explicit EndWatch(Rescue rescue);
    ~EndWatch();
    EndWatch(const EndWatch&) = delete;
    EndWatch& operator=(const EndWatch&) = delete;

    // All is saved, and the program takes itself down: should that last, it ends as it stands.
    void TidyUpBegins(int status);

private:
    void Watch();
    int NextLook() const;                            // milliseconds; -1: nothing to wait for
    void Look();

    Rescue rescue_;
    std::atomic<bool> gone_{false};
    std::atomic<int> status_{0};
    std::atomic<std::uint64_t> tidiedBy_{0};         // Nanoseconds; 0 before TidyUpBegins
    std::uint64_t rescueAt_ = 0;                     // likewise; 0 before a signal
    std::thread thread_;
};

}  // namespace vonta
