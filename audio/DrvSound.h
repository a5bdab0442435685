// The sound device that the mixer owns: it says when and how much sound it wants, the player fills it.
//
// Positions, sizes and latencies are bytes of the device's ring at four bytes a stereo frame, whatever the real
// format is. Samples are interleaved stereo floats at the scale of 16 bits (full scale 32768).
#pragma once

#include <cstdint>
#include <string>

#include "midi/DrvMIDIIN.h"
#include "platform/MultimediaTimer.h"

namespace vonta {

struct Mixer;

constexpr int kOutputPairs = 16;
constexpr std::uint32_t kDeviceFrameBytes = 4;
constexpr int kTimerPeriodMs = 10;

class DrvSound {
public:
    DrvSound() = default;
    DrvSound(const DrvSound&) = delete;
    DrvSound& operator=(const DrvSound&) = delete;
    virtual ~DrvSound() = default;

    // Opens device `deviceIndex`; plane 1 is a secondary buffer. The rate is the mixer's. Nonzero on success.
    virtual int Init(void* /*windowHandle*/, int /*plane*/, int /*deviceIndex*/, Mixer& /*mixer*/,
                     TickHandler* /*tickHandler*/) { return 1; }
    // Audio thread. `outputs` is 16 stereo buffers; a two-channel device takes the first. byteOffset may lie beyond
    // the ring; the device wraps it.
    virtual void WriteBlock(float* const* /*outputs*/, int /*frames*/, std::uint32_t /*byteOffset*/) {}
    virtual int GetPosition(std::uint32_t* /*bytes*/) { return 0; }     // position in the ring
    virtual std::uint32_t GetBufferSize() const { return 0; }
    virtual std::uint8_t GetNumDevices() { return 0; }
    virtual std::string GetDeviceName(int /*index*/) { return {}; }
    virtual std::string GetCurrentDeviceName() { return {}; }
    virtual std::uint32_t SetLatency(std::uint32_t /*bytes*/) { return 0; }   // the latency taken
    virtual std::uint32_t GetLatency() const { return 0; }
    virtual float GetVolume() { return 1.0f; }                          // 0 to 1
    virtual void SetVolume(float) {}
    virtual void Shutdown() {}                                          // once, when the player stops for good

    // A device that can vanish while it plays goes on in silence then, at its pace. These are the main thread's.
    virtual bool IsLost() { return false; }
    virtual bool Restore() { return true; }                             // with the mixer off: see RestoreDevice
    virtual std::uint32_t GetUnderruns() const { return 0; }            // blocks that came too late; any thread
    virtual std::string GetFailure() const { return {}; }               // why sound is lost for good; any thread

    // A device led by an outside host answers these; see SndPlayer's sync step.
    virtual double GetSyncTime() { return 0.0; }                        // the host's position since the song's start
    virtual int ReleaseSyncTime() { return 0; }                         // after GetSyncTime; nonzero: it may be used
    virtual float GetSyncTempo() { return 0.0f; }                       // BPM; 0 or less is unknown
    virtual bool IsSynced() { return false; }
    virtual void SyncCommand(int) {}
    virtual bool IsSyncPlaying() { return false; }
    virtual DrvMIDIIN* GetSyncMidiIn() { return nullptr; }              // becomes MIDI input 0; the device keeps it
    virtual std::uint32_t GetSyncSampleRate() { return 0; }

    virtual MultimediaTimer* GetTimer() = 0;                            // null for a device without one
};

}  // namespace vonta
