// A sound driver that sets the pace: whenever it wants a block it calls its host on a thread of its own, and the host
// fills one half of a double buffer for each output channel. Drivers are found by name through a list.
//
// A driver is made and used on the main thread, in the order of its verbs. A verb that fails gives false or less than
// it was asked for, and says why in GetErrorMessage.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace vonta {

// How one value of a channel is stored; the numbers are the interface's own.
enum AsioSampleType : std::int32_t { kAsioInt16LSB = 16, kAsioInt24LSB = 17, kAsioInt32LSB = 18 };

// One output channel and the two halves of its buffer, which CreateBuffers fills in; the driver owns them.
struct AsioBufferInfo {
    int channel = 0;
    void* buffers[2] = {};
};

// Why a driver can go on no more. It stays silent from then on, and has to be opened anew.
enum class AsioLoss : std::uint8_t { None, DriverGone, RateChanged, BlockSizeChanged, NotCalling };

class AsioHost {
public:
    virtual ~AsioHost() = default;
    virtual void BufferSwitch(int index) = 0;        // driver's thread: fill buffers[index] of every channel
    virtual void ResetRequest(AsioLoss loss) = 0;    // any thread, any number of times; may only set a mark
};

class AsioDriver {
public:
    virtual ~AsioDriver() = default;                 // after Stop and DisposeBuffers, as far as they were due

    virtual bool Init(void* sysRef) = 0;             // sysRef: the window, for drivers that show one
    virtual std::string GetErrorMessage() = 0;
    virtual int GetNumOutputs() = 0;
    virtual int GetPreferredSize() = 0;              // frames of one half buffer; fixed while the driver is open
    virtual double GetSampleRate() = 0;              // Hz
    virtual std::int32_t GetSampleType(int channel) = 0;
    // Both `channels` and `host` must outlive DisposeBuffers.
    virtual bool CreateBuffers(std::span<AsioBufferInfo> channels, int frames, AsioHost& host) = 0;
    virtual void DisposeBuffers() = 0;
    virtual bool Start() = 0;                        // the calls begin, perhaps before this returns
    virtual void Stop() = 0;                         // no call is under way when this returns, and none follows
    virtual std::uint32_t GetUnderruns() const = 0;  // blocks that came too late since Init; any thread
};

struct AsioDriverRecord {
    std::string name;                                // at most 32 characters
    std::function<std::unique_ptr<AsioDriver>()> open;
};

// The drivers of this system.
const std::vector<AsioDriverRecord>& AsioDriverList();

}  // namespace vonta
