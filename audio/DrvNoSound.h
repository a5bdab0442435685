// The device that discards the mix: the player runs in real time and nothing is heard.
#pragma once

#include "audio/ClockPosition.h"
#include "audio/DrvSound.h"

namespace vonta {

class DrvNoSound final : public DrvSound {
public:
    explicit DrvNoSound(MillisecondClock clock = Milliseconds) : position_(clock, kRingBytes - 1) {}

    int Init(void* windowHandle, int plane, int deviceIndex, Mixer& mixer, TickHandler* tickHandler) override;
    int GetPosition(std::uint32_t* bytes) override;
    std::uint32_t GetBufferSize() const override { return kRingBytes; }
    std::uint32_t GetLatency() const override { return kRingBytes; }
    std::uint8_t GetNumDevices() override { return 1; }
    std::string GetDeviceName(int) override { return "No Sound"; }
    std::string GetCurrentDeviceName() override { return "No Sound"; }
    MultimediaTimer* GetTimer() override { return &timer_; }

private:
    static constexpr std::uint32_t kRingBytes = 0x10000;

    ClockPosition position_;
    MultimediaTimer timer_;
};

}  // namespace vonta
