// A ring of 16-bit stereo frames that the system plays round and round: the floor under all devices of this kind.
//
// The values belong to the caller, who writes them with Store while they play. The system's thread takes a chunk at a
// time: it allocates nothing, waits for nothing and knows nobody's lock but the system's own. Everything else is called
// on the main thread, FramesPlayed on any.
//
// A device that vanishes takes the sound with it and not the pace: the frames go on being played, in silence.
#pragma once

#include <atomic>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "platform/SdlAudio.h"
#include "platform/Shared.h"

namespace vonta {

class SoundRing {
public:
    // values: left and right by turns.
    SoundRing(std::span<std::int16_t> values, std::uint32_t sampleRate);
    ~SoundRing();
    SoundRing(const SoundRing&) = delete;
    SoundRing& operator=(const SoundRing&) = delete;

    // Opens the device of this name, empty for the system's choice, and plays from where the ring stands. False if it
    // cannot be opened; what was open before is closed then too.
    bool Play(const std::string& device);
    bool IsLost() const;                           // has played, and the device is gone
    std::uint64_t FramesPlayed() const;            // since the first Play
    std::uint32_t ChunkFrames() const { return chunkFrames_; }   // what the system takes at a time
    void SetVolume(std::uint32_t volume) { volume_ = volume; }   // 0 to 65535 each: left low, right high

    // The next frames of the ring, for the system's thread.
    void Take(std::span<std::int16_t> out);

private:
    void Close();

    const std::span<std::int16_t> values_;
    const std::uint32_t sampleRate_, chunkFrames_;
    Relaxed<std::uint32_t> volume_{0xFFFFFFFF};
    std::atomic<std::uint64_t> played_{0};         // frames taken by a device
    std::atomic<std::uint64_t> silentSince_{0};    // nanoseconds, while none takes any though one did; else 0
    std::optional<SdlAudio> audio_;
    std::uint32_t device_ = 0;                     // SDL's number; 0 is none
};

// Rings and chunks hold the same time, more or less, whatever the rate: 1, 2 or 4 times what they do up to 48000 Hz.
constexpr std::uint32_t RateScale(std::uint32_t sampleRate) {
    return sampleRate <= 50000 ? 1 : sampleRate <= 100000 ? 2 : 4;
}

}  // namespace vonta
