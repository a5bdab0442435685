#include <optional>
#include <vector>

#include "platform/SoundRing.h"
#include "platform/WaveOut.h"

namespace vonta {
namespace {

constexpr std::uint32_t kStereo16Bit = 0x888;      // at all three rates

// The ring is made by Prepare, and kept by Unprepare for its count of frames, which must go on.
class RingHandle final : public WaveHandle {
public:
    RingHandle(std::string device, std::uint32_t sampleRate, WaveListener& listener)
        : device_(std::move(device)), sampleRate_(sampleRate), listener_(listener) {}

    WaveResult PrepareHeader(WaveHeader& header) override {
        if (header.values.size() < 2) return WaveResult::NoMemory;
        if (!ring_) ring_.emplace(header.values, sampleRate_);
        prepared_ = &header;
        return SetVolume(volume_);
    }
    WaveResult UnprepareHeader(WaveHeader& header) override {
        if (prepared_ != &header) return WaveResult::InvalidHandle;
        prepared_ = nullptr;
        return WaveResult::Ok;
    }
    WaveResult Write(WaveHeader& header) override {
        if (prepared_ != &header) return WaveResult::Unprepared;
        return ring_->Play(device_) ? WaveResult::Ok : WaveResult::NoDriver;
    }
    WaveResult GetPosition(WaveTime& time) const override {
        time = {WaveTimeType::Samples, ring_ ? ring_->FramesPlayed() : 0};
        return WaveResult::Ok;
    }
    WaveResult GetVolume(std::uint32_t& volume) const override {
        volume = volume_;
        return WaveResult::Ok;
    }
    WaveResult SetVolume(std::uint32_t volume) override {
        volume_ = volume;
        if (ring_) ring_->SetVolume(volume);
        return WaveResult::Ok;
    }
    bool IsLost() const override { return ring_ && ring_->IsLost(); }
    void Restore() override { listener_.OnWaveDone(); }

private:
    const std::string device_;
    const std::uint32_t sampleRate_;
    WaveListener& listener_;
    WaveHeader* prepared_ = nullptr;
    std::uint32_t volume_ = 0xFFFFFFFF;
    std::optional<SoundRing> ring_;
};

class SdlWaveOut final : public WaveOut {
public:
    std::uint32_t GetNumDevs() override { return static_cast<std::uint32_t>(SdlAudio().DeviceNames().size()); }
    bool GetDevCaps(std::uint32_t device, WaveCaps& caps) override {
        const auto names = SdlAudio().DeviceNames();
        if (device >= names.size()) return false;
        caps = {ShownName(names[device]), kStereo16Bit};
        return true;
    }
    WaveResult Open(std::uint32_t device, std::uint32_t sampleRate, WaveListener& listener,
                    std::unique_ptr<WaveHandle>& handle) override {
        const auto names = SdlAudio().DeviceNames();
        if (device >= names.size()) return WaveResult::BadDeviceId;
        handle = std::make_unique<RingHandle>(names[device], sampleRate, listener);
        return WaveResult::Ok;
    }
};

}  // namespace

std::unique_ptr<WaveOut> CreateSystemWaveOut() { return std::make_unique<SdlWaveOut>(); }

}  // namespace vonta
