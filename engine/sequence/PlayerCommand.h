// The record that passes from other threads to the block cycle, and the list that carries it.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <mutex>

namespace vonta {

struct PlayerCommand {
    enum class Type : std::uint32_t { KillChannel = 0, Play = 1, Stop = 2 };
    Type type = Type::Stop;
    std::uint32_t channel = 0;             // of a kill
    std::uint8_t playFlags = 0;            // bit 0: repeat the pattern; bit 1: start from the current position
    std::uint8_t stopKeepPlaying = 0;      // a stop that does not touch `playing`
    std::uint32_t stopImmediate = 0;       // silences at once
};

constexpr std::uint8_t kPlayPattern = 1;
constexpr std::uint8_t kPlayFromHere = 2;

// In the order posted. The lock is held to append or to take over the records, never while mixing; room is fixed, so
// that neither side allocates.
class CommandList {
public:
    static constexpr std::size_t kCapacity = 512;

    // When nobody has drained the list for long and it is full, a kill is dropped, and a play or stop takes the place of
    // the last record: the newest wish always gets through.
    void Post(const PlayerCommand& command) {
        const std::lock_guard lock(commandLock_);
        if (count_ < kCapacity) {
            commands_[count_++] = command;
        } else if (command.type != PlayerCommand::Type::KillChannel) {
            commands_[kCapacity - 1] = command;
        }
    }

    // Audio thread: hands each record to `perform` after the lock is released.
    template <class Perform>
    void Drain(Perform perform) {
        std::size_t taken;
        {
            const std::lock_guard lock(commandLock_);
            taken = count_;
            for (std::size_t i = 0; i < taken; ++i) draining_[i] = commands_[i];
            count_ = 0;
        }
        for (std::size_t i = 0; i < taken; ++i) perform(draining_[i]);
    }

private:
    std::mutex commandLock_;
    std::array<PlayerCommand, kCapacity> commands_, draining_;
    std::size_t count_ = 0;                        // guarded by commandLock_
};

}  // namespace vonta
