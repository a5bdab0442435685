// The device on the system's wave output: one ring of 0.2 s, prepared and written once, which the system plays round
// and round while the block cycle overwrites it ahead of the play position.
#pragma once

#include <memory>
#include <vector>

#include "audio/DrvSound.h"
#include "audio/RingWriter.h"
#include "platform/WaveOut.h"

namespace vonta {

class DrvWaveOut final : public DrvSound, private WaveListener {
public:
    explicit DrvWaveOut(std::unique_ptr<WaveOut> system) : system_(std::move(system)) {}
    ~DrvWaveOut() override;

    int Init(void* windowHandle, int plane, int deviceIndex, Mixer& mixer, TickHandler* tickHandler) override;
    void WriteBlock(float* const* outputs, int frames, std::uint32_t byteOffset) override;
    int GetPosition(std::uint32_t* bytes) override;
    std::uint32_t GetBufferSize() const override { return size_; }
    std::uint8_t GetNumDevices() override { return 1; }
    std::string GetDeviceName(int) override { return "Wave Out"; }
    std::string GetCurrentDeviceName() override { return "Wave Out"; }
    std::uint32_t SetLatency(std::uint32_t bytes) override;
    std::uint32_t GetLatency() const override { return latency_; }
    float GetVolume() override;
    void SetVolume(float volume) override;
    bool IsLost() override { return handle_ && handle_->IsLost(); }
    bool Restore() override;
    std::uint32_t GetUnderruns() const override { return writer_.Underruns(); }
    MultimediaTimer* GetTimer() override { return &timer_; }

private:
    static constexpr float kNoVolume = -1.0f;      // none to restore

    bool LogCaps(std::uint32_t device);
    bool StartRing(std::uint32_t device, std::uint32_t sampleRate);
    bool PrepareHeader();
    bool WriteHeader();
    void OnWaveDone() override;

    const std::unique_ptr<WaveOut> system_;
    std::vector<std::int16_t> ring_;               // left and right by turns
    WaveHeader header_;                            // of ring_
    std::unique_ptr<WaveHandle> handle_;           // plays ring_: goes first
    std::uint32_t size_ = 0;                       // bytes of the ring
    Relaxed<std::uint32_t> latency_{35000};        // bytes ahead of the position; may go round the ring
    float savedVolume_ = kNoVolume;                // the system's at start
    std::uint32_t position_ = 0;                   // bytes, as last read
    RingWriter writer_;
    MultimediaTimer timer_;
};

}  // namespace vonta
