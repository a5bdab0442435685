// The device whose driver sets the pace: the block cycle runs inside the driver's call, on the driver's thread, and as
// many output pairs are heard as the driver has. The rate is the driver's.
//
// A driver's block is filled in pieces of at most kMaxBlockFrames. For each piece the block cycle is made to ask for
// just its frames: the device pretends to have moved on by more, and to be a ring of that size.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <memory>
#include <vector>

#include "audio/AsioStarter.h"
#include "audio/DrvSound.h"
#include "engine/mix/Mixer.h"
#include "platform/AsioDriver.h"

namespace vonta {

// A driver that is lost leaves the player running in silence, by the clock.
class DrvASIO final : public DrvSound, private AsioHost {
public:
    explicit DrvASIO(const std::vector<AsioDriverRecord>& drivers = AsioDriverList()) : drivers_(drivers) {}
    ~DrvASIO() override { Close(); }

    int Init(void* windowHandle, int plane, int deviceIndex, Mixer& mixer, TickHandler* tickHandler) override;
    void WriteBlock(float* const* outputs, int frames, std::uint32_t byteOffset) override;
    int GetPosition(std::uint32_t* bytes) override;
    std::uint32_t GetBufferSize() const override { return static_cast<std::uint32_t>(framesLeft_) * kDeviceFrameBytes; }
    std::uint8_t GetNumDevices() override { return 1; }
    std::string GetDeviceName(int) override { return "ASIO"; }
    std::string GetCurrentDeviceName() override { return "ASIO"; }
    bool IsLost() override;
    bool Restore() override;                         // the mixer's rate may be another one afterwards
    std::uint32_t GetUnderruns() const override { return driver_ ? driver_->GetUnderruns() : 0; }
    MultimediaTimer* GetTimer() override { return &starter_; }

    // A driver opens even if its samples are of a type that cannot be written, and is silent then.
    bool IsSupported() const { return writeSide_ != nullptr; }
    std::int32_t GetSampleType() const { return sampleType_; }   // of output 0

private:
    // Writes one side of interleaved frames as the driver's values, from frame `at` of its buffer on.
    using SideWriter = void (*)(const float* side, int frames, void* buffer, int at);

    // What Init was given.
    struct Place {
        void* windowHandle = nullptr;
        int deviceIndex = 0;
        Mixer* mixer = nullptr;
        TickHandler* tickHandler = nullptr;
    };

    // Ticks for the frames that the clock asks for, and throws them away.
    class SilentPace final : public TickHandler {
    public:
        explicit SilentPace(DrvASIO& device) : device_(device) {}
        bool OnTick() override;
    private:
        DrvASIO& device_;
        std::uint32_t last_ = 0;                     // milliseconds
    };

    bool Open();
    const char* OpenDriver();
    void Close();
    void BufferSwitch(int index) override;
    void ResetRequest(AsioLoss loss) override { starter_.Lose(loss); }
    bool RunCycle(int frames);
    void Deliver(int index, int at, int frames, bool silent);
    std::size_t Pairs() const { return std::min<std::size_t>(bufferInfos_.size() / 2, kOutputPairs); }

    const std::vector<AsioDriverRecord>& drivers_;
    Place place_;
    std::unique_ptr<AsioDriver> driver_;
    bool driverStarted_ = false, lossTold_ = false;
    std::vector<AsioBufferInfo> bufferInfos_;        // one for each output
    int bufferSize_ = 0;                             // frames of a driver's block
    std::int32_t sampleType_ = 0;
    SideWriter writeSide_ = nullptr;

    // Inside a tick; framesLeft_ and position_ the main thread's too while nothing ticks.
    std::array<StereoBuffer, kOutputPairs> outputs_{};
    int framesTaken_ = 0;                            // of the present piece
    int framesLeft_ = 0;                             // that it still wants; 0 outside a tick
    std::uint32_t position_ = 0;                     // bytes; runs round

    SilentPace silentPace_{*this};
    AsioStarter starter_;                            // the last: its ticks use the rest
};

}  // namespace vonta
