// Looks after a device that may vanish while it plays, and opens it anew when it is back. The song goes on meanwhile, in
// silence.
#pragma once

#include <cstdint>

#include "engine/SndPlayer.h"
#include "platform/Clock.h"

namespace vonta {

// On the interface thread, which alone may stop the mixer; once a frame is often enough.
class DeviceWatch {
public:
    enum class Event { None, Gone, Back };           // each is told once

    explicit DeviceWatch(SndPlayer& player) : player_(player) {}

    // Tries to open a device that has gone once a second, which may take some milliseconds.
    Event Look() {
        DrvSound* device = player_.GetDevice();
        if (!device) return Event::None;
        const std::uint32_t now = Milliseconds();
        if (!lost_) {
            lost_ = device->IsLost();
            lastTry_ = now;
            return lost_ ? Event::Gone : Event::None;
        }
        if (now - lastTry_ < kReopenPeriodMs) return Event::None;
        lost_ = !player_.RestoreDevice();
        lastTry_ = Milliseconds();
        return lost_ ? Event::None : Event::Back;
    }

private:
    static constexpr std::uint32_t kReopenPeriodMs = 1000;

    SndPlayer& player_;
    bool lost_ = false;
    std::uint32_t lastTry_ = 0;
};

}  // namespace vonta
