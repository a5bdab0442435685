// The "timer" of a device whose driver sets the pace: turns the calls of the driver's thread into ticks while it is
// started. Start and Stop return when the driver's thread has followed, which is at its next call.
//
// A driver that is lost, or calls no more, is left for good, and nobody waits for it: a real timer takes its place.
// The handover is the main thread's, which makes all calls but those that say otherwise.
//
// A tick is what the device does for one piece of a block, under a fault guard of its own; it gives true to end.
#pragma once

#include <atomic>
#include <cstdint>

#include "platform/AsioDriver.h"
#include "platform/MultimediaTimer.h"

namespace vonta {

class AsioStarter final : public MultimediaTimer {
public:
    AsioStarter() = default;
    ~AsioStarter() override { Close(); }

    void Open(TickHandler* onClock);                          // what ticks once the driver is lost; nothing runs yet
    void Start(int periodMs) override;                        // the period is the driver's own
    void Stop() override;                                     // never from within a tick
    bool IsRunning() const override;                          // any thread

    // From when on a driver that is waited for and does not call is lost.
    void SetPatience(int ms) { patienceMs_ = ms; }

    // Driver's thread, once for each piece of a block: ticks, if started.
    template <class Work>
    void Tick(Work work) {
        Gate expected = Gate::Free;
        if (!gate_.compare_exchange_strong(expected, Gate::Ticking)) return;
        if (running_ && Loss() == AsioLoss::None && work()) wanted_ = false;
        running_ = wanted_.load();
        gate_ = Gate::Free;
    }

    void Lose(AsioLoss loss);                                 // any thread; the first one stands
    AsioLoss Loss() const { return loss_; }
    // True if the driver is lost; then the handover is done.
    bool IsLost();

    // No tick is under way when this returns, and none follows before the next Open, whatever the driver does.
    void Close();

private:
    void Follow();
    void LeaveDriver();

    // Who may tick: the driver's thread; it is doing so; it may not any more.
    enum class Gate : std::uint8_t { Free, Ticking, Left };

    int patienceMs_ = 2000;
    std::atomic<bool> wanted_{false}, running_{false};        // running follows wanted at the end of each piece
    std::atomic<AsioLoss> loss_{AsioLoss::None};
    std::atomic<Gate> gate_{Gate::Left};
};

}  // namespace vonta
