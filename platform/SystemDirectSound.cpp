#include <algorithm>
#include <optional>

#include "platform/DirectSound.h"
#include "platform/SoundRing.h"

namespace vonta {
namespace {

constexpr std::uint32_t kFrameBytes = 4;
constexpr std::uint32_t kPrimaryBytes = 0x8000;    // up to 48000 Hz, 0.17 s there

class RingBuffer final : public SoundBuffer {
public:
    explicit RingBuffer(std::string device) : device_(std::move(device)) {}

    bool SetFormat(std::uint32_t sampleRate) override {
        Allocate(kPrimaryBytes * RateScale(sampleRate), sampleRate);
        return true;
    }
    void Allocate(std::uint32_t bytes, std::uint32_t sampleRate) {
        ring_.reset();
        values_.assign(bytes / kFrameBytes * 2, 0);
        ring_.emplace(values_, sampleRate);
    }
    std::uint32_t GetSize() const override { return Frames() * kFrameBytes; }
    bool Play() override { return ring_ && Frames() > 0 && ring_->Play(device_); }
    SoundCursors GetCurrentPosition() const override {
        const std::uint64_t played = ring_->FramesPlayed();
        return {InRing(played), InRing(played + ring_->ChunkFrames()), played};
    }
    std::span<std::int16_t> Lock() override { return values_; }
    void Unlock(std::uint32_t) override {}         // the ring is plain memory, and what is stored is heard
    bool IsLost() const override { return ring_ && ring_->IsLost(); }
    bool Restore() override { return Play(); }

private:
    std::uint32_t Frames() const { return static_cast<std::uint32_t>(values_.size() / 2); }
    std::uint32_t InRing(std::uint64_t frame) const { return static_cast<std::uint32_t>(frame % Frames()) * kFrameBytes; }

    const std::string device_;
    std::vector<std::int16_t> values_;
    std::optional<SoundRing> ring_;                // of values_
};

class RingDevice final : public SoundDevice {
public:
    explicit RingDevice(std::string name) : name_(std::move(name)) {}

    bool GetCaps(SoundCaps& caps) override {
        caps = {SoundCaps::PrimaryStereo | SoundCaps::Primary16Bit | SoundCaps::ContinuousRate |
                    SoundCaps::SecondaryStereo | SoundCaps::Secondary16Bit,
                1, 0};
        return true;
    }
    // Every program here has the device for itself, as far as it can tell.
    CooperativeResult SetCooperativeLevel(void*, CooperativeLevel) override { return CooperativeResult::Ok; }
    std::unique_ptr<SoundBuffer> CreatePrimaryBuffer() override { return std::make_unique<RingBuffer>(name_); }
    std::unique_ptr<SoundBuffer> CreateSecondaryBuffer(std::uint32_t bytes, std::uint32_t sampleRate) override {
        auto buffer = std::make_unique<RingBuffer>(name_);
        buffer->Allocate(bytes, sampleRate);
        return buffer;
    }

private:
    const std::string name_;
};

class SdlDirectSound final : public DirectSound {
public:
    std::vector<SoundDeviceInfo> Enumerate() override {
        std::vector<SoundDeviceInfo> devices;
        for (const std::string& name : SdlAudio().DeviceNames()) devices.push_back({name, ShownName(name), "SDL"});
        return devices;
    }
    std::unique_ptr<SoundDevice> Create(const std::string& guid) override {
        const auto names = SdlAudio().DeviceNames();
        const bool there = std::find(names.begin(), names.end(), guid) != names.end();
        return there ? std::make_unique<RingDevice>(guid) : nullptr;
    }
};

}  // namespace

std::unique_ptr<DirectSound> CreateSystemDirectSound() { return std::make_unique<SdlDirectSound>(); }

}  // namespace vonta
