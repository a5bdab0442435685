// Sound devices whose buffers are rings in memory: the device's own, the primary one, or secondary ones that the system
// mixes. A buffer holds 16-bit stereo frames of four bytes.
//
// Called on the main thread but for a playing buffer's Lock, Unlock and GetCurrentPosition, which the audio thread calls;
// these neither wait nor allocate.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace vonta {

// Positions in the ring, bytes.
struct SoundCursors {
    std::uint32_t play = 0;
    std::uint32_t write = 0;                       // from here on it is safe to write: play's next chunk is spoken for
    std::uint64_t framesPlayed = 0;                // play, with all rounds counted
};

// Released when destroyed.
class SoundBuffer {
public:
    virtual ~SoundBuffer() = default;
    virtual bool SetFormat(std::uint32_t sampleRate) = 0;     // of a primary buffer
    virtual std::uint32_t GetSize() const = 0;     // bytes, a multiple of four
    virtual bool Play() = 0;                       // round and round
    virtual SoundCursors GetCurrentPosition() const = 0;
    // The whole ring, left and right by turns; empty if it cannot be had. Values are written with Store.
    virtual std::span<std::int16_t> Lock() = 0;
    virtual void Unlock(std::uint32_t bytes) = 0;  // as many were written
    virtual bool IsLost() const = 0;               // the device is gone; the cursors go on, nothing is heard
    virtual bool Restore() = 0;                    // plays again on the device if it is back; with no audio thread
};

enum class CooperativeLevel { Priority = 2, WritePrimary = 4 };

enum class CooperativeResult { Ok, InvalidParameter, Unsupported, Allocated, Uninitialized, Undefined };

struct SoundCaps {
    enum Flag : std::uint32_t {
        PrimaryStereo = 0x02,
        Primary16Bit = 0x08,
        ContinuousRate = 0x10,
        Emulated = 0x20,
        SecondaryStereo = 0x200,
        Secondary16Bit = 0x800,
    };
    std::uint32_t flags = 0;
    int primaryBuffers = 0;
    int mixedBuffers = 0;                          // secondary ones that hardware mixes
};

// Outlives its buffers. Null and false are failures.
class SoundDevice {
public:
    virtual ~SoundDevice() = default;
    virtual bool GetCaps(SoundCaps& caps) = 0;
    virtual CooperativeResult SetCooperativeLevel(void* window, CooperativeLevel level) = 0;
    virtual std::unique_ptr<SoundBuffer> CreatePrimaryBuffer() = 0;
    virtual std::unique_ptr<SoundBuffer> CreateSecondaryBuffer(std::uint32_t bytes, std::uint32_t sampleRate) = 0;
};

struct SoundDeviceInfo {
    std::string guid;                              // what Create takes; empty is the system's choice
    std::string name, module;
};

class DirectSound {
public:
    virtual ~DirectSound() = default;
    virtual std::vector<SoundDeviceInfo> Enumerate() = 0;
    virtual std::unique_ptr<SoundDevice> Create(const std::string& guid) = 0;
};

// On SDL's audio devices.
std::unique_ptr<DirectSound> CreateSystemDirectSound();

}  // namespace vonta
