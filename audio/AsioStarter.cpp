#include "audio/AsioStarter.h"

#include <chrono>
#include <thread>

#include "audio/DrvSound.h"
#include "platform/Clock.h"

namespace vonta {
namespace {

// A poll: the driver's thread must not have to wake anybody.
void LetTheDriverGoOn() { std::this_thread::sleep_for(std::chrono::milliseconds(1)); }

}  // namespace

void AsioStarter::Open(TickHandler* onClock) {
    Init(onClock, kTimerPeriodMs);
    wanted_ = running_ = false;
    loss_ = AsioLoss::None;
    gate_ = Gate::Free;
}

void AsioStarter::Start(int) {
    wanted_ = true;
    Follow();
}

void AsioStarter::Stop() {
    wanted_ = false;
    Follow();
}

bool AsioStarter::IsRunning() const {
    return gate_ == Gate::Left ? MultimediaTimer::IsRunning() : running_.load();
}

void AsioStarter::Follow() {
    const std::uint32_t asked = Milliseconds();
    while (gate_ != Gate::Left && running_ != wanted_ && Loss() == AsioLoss::None) {
        LetTheDriverGoOn();
        // A tick that takes long is no reason to give up: the driver is waiting for us. It may end between two looks.
        if (Milliseconds() - asked > static_cast<std::uint32_t>(patienceMs_) && gate_ == Gate::Free &&
            running_ != wanted_)
            Lose(AsioLoss::NotCalling);
    }
    if (gate_ == Gate::Left || Loss() != AsioLoss::None) LeaveDriver();
}

bool AsioStarter::IsLost() {
    if (Loss() == AsioLoss::None) return false;
    LeaveDriver();
    return true;
}

void AsioStarter::Lose(AsioLoss loss) {
    AsioLoss none = AsioLoss::None;
    loss_.compare_exchange_strong(none, loss);
}

void AsioStarter::LeaveDriver() {
    for (Gate expected = Gate::Free; !gate_.compare_exchange_weak(expected, Gate::Left); expected = Gate::Free) {
        if (expected == Gate::Left) break;
        if (expected == Gate::Ticking) LetTheDriverGoOn();
    }
    if (wanted_) MultimediaTimer::Start(kTimerPeriodMs);
    else MultimediaTimer::Stop();
}

void AsioStarter::Close() {
    wanted_ = false;
    LeaveDriver();
}

}  // namespace vonta
