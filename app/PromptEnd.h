// The end of work by Ctrl+C, SIGTERM or SIGHUP, however deep it is in something that asks nobody: a loader, or a sound
// server that hangs and holds whoever opens or closes a device of its.
#pragma once

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <thread>

namespace vonta {

// While it lives, an interrupted process has a moment to end by itself. Then its unfinished files are removed and it ends
// where it stands. Signals that follow the first change nothing: terminals and shells send several.
class PromptEnd {
public:
    static constexpr int kGraceMs = 250;             // more than a block of a mixdown takes

    explicit PromptEnd(int graceMs = kGraceMs);
    PromptEnd(const PromptEnd&) = delete;
    PromptEnd& operator=(const PromptEnd&) = delete;
    ~PromptEnd();

    // The work is done with this status; what is left may take a little longer than a moment.
    void Finish(int status) { status_ = status; }

private:
    static constexpr int kAtWork = -1;
    void Watch();
    bool WaitForEnd(int milliseconds);               // true if the work is done

    const int graceMs_;
    std::atomic<int> status_{kAtWork};
    std::mutex lock_;
    std::condition_variable changed_;
    bool done_ = false;
    std::thread watch_;
};

}  // namespace vonta
