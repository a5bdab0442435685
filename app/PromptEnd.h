// The end of work on files by Ctrl+C, SIGTERM or SIGHUP, however deep it is in something that asks nobody.
#pragma once

#include <condition_variable>
#include <mutex>
#include <thread>

namespace vonta {

// While it lives, an interrupted process has a moment to end by itself. Then its unfinished files are removed and it ends
// where it stands. Signals that follow the first change nothing: terminals and shells send several.
class PromptEnd {
public:
    PromptEnd();
    PromptEnd(const PromptEnd&) = delete;
    PromptEnd& operator=(const PromptEnd&) = delete;
    ~PromptEnd();

private:
    void Watch();
    bool WaitForEnd(int milliseconds);               // true if the work is done

    std::mutex lock_;
    std::condition_variable changed_;
    bool done_ = false;
    std::thread watch_;
};

}  // namespace vonta
