// Notes of the keyboard on their way to the next tick. Any thread puts them in; the audio side takes them out and
// never waits for those who put.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <mutex>

namespace vonta {

struct JamNote {
    std::uint32_t instrument = 0, note = 0, channel = 0;
    std::uint8_t volume = 0;                       // 255: the sample's own
    // A stretch of one sample, at its own pitch and whatever the keys say; -1: what the note's key plays.
    std::int32_t sample = -1;
    std::uint32_t from = 0, to = 0;                // floats; to is exclusive
};

class JamQueue {
public:
    static constexpr std::uint32_t kCapacity = 32;

    bool Put(const JamNote& note) {                // false when 32 wait
        const std::lock_guard lock(writers_);
        const std::uint32_t at = written_.load(std::memory_order_relaxed);
        if (at - read_.load(std::memory_order_acquire) == kCapacity) return false;
        notes_[at % kCapacity] = note;
        written_.store(at + 1, std::memory_order_release);
        return true;
    }

    bool Take(JamNote& note) {                     // audio side; false when none waits
        const std::uint32_t at = read_.load(std::memory_order_relaxed);
        if (at == written_.load(std::memory_order_acquire)) return false;
        note = notes_[at % kCapacity];
        read_.store(at + 1, std::memory_order_release);
        return true;
    }

private:
    std::mutex writers_;                           // among those who put
    std::array<JamNote, kCapacity> notes_;
    std::atomic<std::uint32_t> written_{0}, read_{0};
};

}  // namespace vonta
