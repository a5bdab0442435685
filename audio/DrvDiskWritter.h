// The device that streams the mix, in real time, to "diskwritter.raw" in the working directory: signed 16-bit
// little-endian stereo at the mixer's rate, left first, no header.
//
// Writing the file on the block cycle's thread is what this device is for: one write and one flush a block. If the
// file cannot be opened the device runs without it.
#pragma once

#include <cstdio>
#include <memory>

#include "audio/ClockPosition.h"
#include "audio/DrvSound.h"
#include "platform/Shared.h"

namespace vonta {

class DrvDiskWritter final : public DrvSound {
public:
    static constexpr const char* kFileName = "diskwritter.raw";

    explicit DrvDiskWritter(MillisecondClock clock = Milliseconds) : position_(clock, kRingBytes) {}

    int Init(void* windowHandle, int plane, int deviceIndex, Mixer& mixer, TickHandler* tickHandler) override;
    // Values beyond 16 bits wrap; nothing clips here.
    void WriteBlock(float* const* outputs, int frames, std::uint32_t byteOffset) override;
    int GetPosition(std::uint32_t* bytes) override;
    std::uint32_t GetBufferSize() const override { return kRingBytes; }
    std::uint32_t GetLatency() const override { return kRingBytes; }
    std::uint8_t GetNumDevices() override { return 1; }
    std::string GetDeviceName(int) override { return "Disk Writter"; }
    std::string GetCurrentDeviceName() override { return "DiskWritter"; }
    std::string GetFailure() const override;         // the file's, which is left as it is from then on
    MultimediaTimer* GetTimer() override { return &timer_; }

private:
    static constexpr std::uint32_t kRingBytes = 0xFFFFF;   // one less than the positions: as it always was

    struct CloseFile { void operator()(std::FILE* file) const { std::fclose(file); } };

    void Check(bool done);

    ClockPosition position_;
    Relaxed<int> error_{0};                          // errno of what failed first
    std::unique_ptr<std::FILE, CloseFile> file_;
    MultimediaTimer timer_;                          // last: stops before the file closes
};

}  // namespace vonta
