#include "platform/MultimediaTimer.h"

#include <sched.h>

#include <algorithm>
#include <chrono>
#include <system_error>

#include "platform/Debug.h"
#include "platform/FaultGuard.h"
#include "platform/FlushToZero.h"

namespace vonta {
namespace {

// Sound goes before what keeps the machine busy, where this user may have it so. Threads that a plug-in starts from
// here run as usual.
void HastenThisThread() {
    const sched_param lowest{.sched_priority = 1};
    sched_setscheduler(0, SCHED_RR | SCHED_RESET_ON_FORK, &lowest);
}

}  // namespace

MultimediaTimer::~MultimediaTimer() { MultimediaTimer::Stop(); }

void MultimediaTimer::Init(TickHandler* handler, int periodMs) {
    const std::lock_guard lock(mutex_);
    handler_ = handler;
    periodMs_ = std::max(periodMs, 1);
}

void MultimediaTimer::Start(int periodMs) {
    const std::lock_guard lock(mutex_);
    if (running_ || !handler_) return;
    if (thread_.joinable()) thread_.join();          // its handler asked to end; it needs the lock no more
    periodMs_ = std::max(periodMs, 1);
    stopAsked_ = false;
    try {
        thread_ = std::thread(&MultimediaTimer::Run, this);
        running_ = true;
    } catch (const std::system_error& error) {
        DebugOutput("\t- ERROR: timer: %s\n", error.what());
    }
}

void MultimediaTimer::Stop() {
    std::unique_lock lock(mutex_);
    stopAsked_ = true;
    wake_.notify_all();
    wake_.wait(lock, [this] { return !running_; });
    if (thread_.joinable()) thread_.join();
}

bool MultimediaTimer::IsRunning() const {
    const std::lock_guard lock(mutex_);
    return running_;
}

void MultimediaTimer::Run() {
    const FlushToZero denormalsOff;
    HastenThisThread();
    InstallFaultHandlers();                          // here, so that no tick pays for it
    std::unique_lock lock(mutex_);
    while (!wake_.wait_for(lock, std::chrono::milliseconds(periodMs_), [this] { return stopAsked_; })) {
        TickHandler* handler = handler_;
        lock.unlock();
        const bool finished = handler->OnTick();
        lock.lock();
        if (finished) break;
    }
    running_ = false;
    wake_.notify_all();
}

}  // namespace vonta
