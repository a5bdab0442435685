#include "app/EndWatch.h"

#include <pthread.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <utility>

#include "app/Interrupt.h"
#include "formats/streams/PartFile.h"
#include "platform/Clock.h"
#include "platform/FaultGuard.h"

namespace vonta {
namespace {

constexpr std::uint64_t kMs = 1'000'000;             // nanoseconds
constexpr int kLookPeriodMs = 50;                    // while somebody else saves

std::atomic<bool> g_failed{false};                   // a thread that nobody guards has met a fault

// That thread goes no further: the rest of the process is saved from the watch's.
void HoldFailedThread() {
    g_failed = true;
    InterruptFromWithin();
    while (true) pause();
}

[[noreturn]] void EndNow(int status) {
    std::fflush(nullptr);
    PartFile::RemoveAllForGood();
    std::_Exit(status);
}

// Signals are for the other threads, whose waiting they interrupt.
void BlockSignals() {
    sigset_t all;
    sigfillset(&all);
    for (const int fault : {SIGSEGV, SIGBUS, SIGILL, SIGFPE, SIGABRT}) sigdelset(&all, fault);
    pthread_sigmask(SIG_BLOCK, &all, nullptr);
}

}  // namespace

EndWatch::EndWatch(Rescue rescue) : rescue_(std::move(rescue)), thread_([this] { Watch(); }) {
    InstallFaultHandlers();
    SetLastResort(HoldFailedThread);
}

EndWatch::~EndWatch() {
    SetLastResort(nullptr);
    gone_ = true;
    WakeInterruptWait();
    thread_.join();
}

void EndWatch::TidyUpBegins(int status) {
    status_ = status;
    tidiedBy_ = Nanoseconds() + kTidyUpMs * kMs;
    WakeInterruptWait();
}

void EndWatch::Watch() {
    BlockSignals();
    while (!gone_) {
        WaitForInterrupt(NextLook());
        if (!gone_) Look();
    }
}

int EndWatch::NextLook() const {
    const std::uint64_t due = tidiedBy_ != 0 ? tidiedBy_.load() : rescueAt_;
    if (due == 0) return -1;
    const std::uint64_t now = Nanoseconds();
    return due > now ? static_cast<int>((due - now) / kMs) + 1 : kLookPeriodMs;
}

void EndWatch::Look() {
    if (Interrupted() && rescueAt_ == 0) rescueAt_ = Nanoseconds() + (g_failed ? 0 : kPatienceMs * kMs);
    if (g_failed) rescueAt_ = std::min(rescueAt_, Nanoseconds());
    const std::uint64_t now = Nanoseconds();
    if (tidiedBy_ != 0 && now >= tidiedBy_) EndNow(status_);
    if (tidiedBy_ != 0 || rescueAt_ == 0 || now < rescueAt_) return;
    if (const auto status = rescue_()) EndNow(*status);
}

}  // namespace vonta
