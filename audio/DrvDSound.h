// The device whose ring is a buffer of the sound system's: the first plane writes into the device's primary buffer, the
// second into a secondary buffer of 0.2 s that the system mixes.
//
// The position that the player sees is the write cursor, so `latency` counts from where writing is safe. A new latency
// holds from the next block on.
#pragma once

#include <memory>
#include <vector>

#include "audio/DrvSound.h"
#include "audio/RingWriter.h"
#include "platform/DirectSound.h"

namespace vonta {

class DrvDSound final : public DrvSound {
public:
    static constexpr std::size_t kMaxDevices = 255;

    explicit DrvDSound(std::unique_ptr<DirectSound> system);
    ~DrvDSound() override;

    int Init(void* windowHandle, int plane, int deviceIndex, Mixer& mixer, TickHandler* tickHandler) override;
    void WriteBlock(float* const* outputs, int frames, std::uint32_t byteOffset) override;
    int GetPosition(std::uint32_t* bytes) override;
    std::uint32_t GetBufferSize() const override;
    std::uint8_t GetNumDevices() override { return static_cast<std::uint8_t>(devices_.size()); }
    std::string GetDeviceName(int index) override;
    std::string GetCurrentDeviceName() override { return GetDeviceName(current_); }
    std::uint32_t SetLatency(std::uint32_t bytes) override;
    std::uint32_t GetLatency() const override { return latency_; }
    bool IsLost() override;
    bool Restore() override;
    std::uint32_t GetUnderruns() const override { return writer_.Underruns(); }
    MultimediaTimer* GetTimer() override { return &timer_; }

private:
    enum class Mode { None, Primary, Secondary };

    bool StartFirstPlane(void* window, std::uint32_t sampleRate);
    bool StartSecondPlane(void* window, std::uint32_t sampleRate);
    bool OpenDevice();
    bool LogCaps();
    bool Cooperate(void* window, CooperativeLevel level);
    bool CreatePrimary(std::uint32_t sampleRate);
    SoundBuffer* UsedBuffer() const;               // null with no mode

    const std::unique_ptr<DirectSound> system_;
    std::vector<SoundDeviceInfo> devices_;
    int current_ = -1;                             // the open one of devices_
    Mode mode_ = Mode::None;
    std::unique_ptr<SoundDevice> dsound_;
    std::unique_ptr<SoundBuffer> primary_, secondary_;
    std::uint32_t primarySize_ = 0, secondarySize_ = 0;    // bytes
    Relaxed<std::uint32_t> latency_{0}, wantedLatency_{0}; // bytes behind the write cursor: at the last block, at the next
    RingWriter writer_;
    MultimediaTimer timer_;
};

}  // namespace vonta
