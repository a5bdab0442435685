#include "app/PromptEnd.h"

#include <unistd.h>

#include <chrono>

#include "app/CommandLine.h"
#include "app/Interrupt.h"
#include "formats/streams/PartFile.h"

namespace vonta {
namespace {

constexpr int kLookEveryMs = 20;
constexpr int kClosingMs = 1500;                     // after work that came to its own end

}  // namespace

PromptEnd::PromptEnd(int graceMs) : graceMs_(graceMs) {
    WatchInterrupt(InterruptWatch::UntilTheEnd);
    watch_ = std::thread([this] { Watch(); });
}

PromptEnd::~PromptEnd() {
    {
        const std::lock_guard guard(lock_);
        done_ = true;
    }
    changed_.notify_one();
    watch_.join();
}

bool PromptEnd::WaitForEnd(int milliseconds) {
    std::unique_lock guard(lock_);
    return changed_.wait_for(guard, std::chrono::milliseconds(milliseconds), [this] { return done_; });
}

void PromptEnd::Watch() {
    while (!Interrupted() && status_ == kAtWork)
        if (WaitForEnd(kLookEveryMs)) return;
    if (WaitForEnd(Interrupted() ? graceMs_ : kClosingMs)) return;
    PartFile::RemoveAllForGood();
    ::_exit(status_ == kAtWork ? kInterrupted : status_.load());
}

}  // namespace vonta
