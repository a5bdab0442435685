// The system's wave output: a header names a buffer of 16-bit stereo frames, and the device plays it again and again.
//
// Called on the main thread but for GetPosition, which the audio thread calls; it neither waits nor allocates.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>

namespace vonta {

enum class WaveResult { Ok, BadDeviceId, Allocated, InvalidHandle, NoDriver, NoMemory, BadFormat, Sync, Unprepared };

// The first two loops bits of a buffer that is the start and the end of the loop at once.
constexpr std::uint32_t kWaveBeginLoop = 4, kWaveEndLoop = 8;
constexpr std::uint32_t kWaveEndless = 0xFFFFFFFF;

// A buffer to be played. Stays where it is, as do its values, until it is unprepared; they are written with Store.
struct WaveHeader {
    std::span<std::int16_t> values;                // left and right by turns
    std::uint32_t flags = 0;
    std::uint32_t loops = 0;
};

enum class WaveTimeType { Samples, Bytes, Milliseconds };

struct WaveTime {
    WaveTimeType type = WaveTimeType::Samples;
    std::uint64_t value = 0;                       // since the start; never goes round
};

class WaveListener {
public:
    virtual ~WaveListener() = default;
    virtual void OnWaveDone() = 0;                 // the system has ended the loop; on the thread of Restore
};

// An open device; closed when destroyed, in whatever state.
class WaveHandle {
public:
    virtual ~WaveHandle() = default;
    virtual WaveResult PrepareHeader(WaveHeader& header) = 0;
    virtual WaveResult UnprepareHeader(WaveHeader& header) = 0;
    virtual WaveResult Write(WaveHeader& header) = 0;         // begins to play
    virtual WaveResult GetPosition(WaveTime& time) const = 0;
    virtual WaveResult GetVolume(std::uint32_t& volume) const = 0;   // 0 to 65535 each: left low, right high
    virtual WaveResult SetVolume(std::uint32_t volume) = 0;
    virtual bool IsLost() const = 0;               // the device is gone; the position goes on, nothing is heard
    virtual void Restore() = 0;                    // ends the loop, so that the listener may write it anew
};

struct WaveCaps {
    std::string name;
    std::uint32_t formats = 0;                     // bit 0 is 11.025 kHz mono 8 bit; kWaveFormatNames
};

class WaveOut {
public:
    virtual ~WaveOut() = default;
    virtual std::uint32_t GetNumDevs() = 0;
    virtual bool GetDevCaps(std::uint32_t device, WaveCaps& caps) = 0;
    // The listener outlives the handle.
    virtual WaveResult Open(std::uint32_t device, std::uint32_t sampleRate, WaveListener& listener,
                            std::unique_ptr<WaveHandle>& handle) = 0;
};

// On SDL's audio devices.
std::unique_ptr<WaveOut> CreateSystemWaveOut();

}  // namespace vonta
