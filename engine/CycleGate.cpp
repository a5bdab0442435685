#include "engine/CycleGate.h"

#include <chrono>
#include <thread>

namespace vonta {
namespace {

constexpr std::chrono::microseconds kLook{100};

std::int64_t Nanoseconds() {
    const auto since = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::nanoseconds>(since).count();
}

}  // namespace

std::atomic<std::uint8_t> inCallback{0};

// Each side first tells that it is there and then looks for the other, so that one of them always sees the other.
bool CycleGate::Enter() {
    inCallback = 1;
    if (holds_ > 0) {
        inCallback = 0;
        return false;
    }
    interval_ = Nanoseconds() - left_;
    return true;
}

void CycleGate::Leave() {
    left_ = Nanoseconds();
    inCallback = 0;
}

void CycleGate::Hold() {
    if (holds_ == 0) AwaitMoment();
    ++holds_;
    AwaitOutside();
}

void CycleGate::AwaitOutside() const {
    while (inCallback && !lost_) std::this_thread::yield();
}

// A call is due from three quarters of the interval on. One that does not come, within another quarter, is not waited
// for: the device stands still.
void CycleGate::AwaitMoment() const {
    for (;;) {
        const std::int64_t interval = interval_, since = Nanoseconds() - left_;
        if (since < interval * 3 / 4 || since > interval * 5 / 4) return;
        std::this_thread::sleep_for(kLook);
    }
}

}  // namespace vonta
