// An input port of the system: its messages wait in a ring until the interface reads them.
//
// The system's thread alone writes, the interface alone reads; neither waits for the other. Nothing tests for a full
// ring: a writer that laps the reader makes it look empty again, and those 256 messages are lost.
#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <memory>

#include "midi/DrvMIDIIN.h"
#include "platform/MidiService.h"
#include "platform/Shared.h"

namespace vonta {

class DrvMIDIINSystem final : public DrvMIDIIN, private MidiInListener {
public:
    static constexpr std::size_t kRingEntries = 256;

    // All ports share the service: the last to go ends it.
    explicit DrvMIDIINSystem(std::shared_ptr<MidiService> service);
    ~DrvMIDIINSystem() override;

    int Open(int device) override;                 // 1 if it is open already, cannot be opened or not be started
    std::string GetName() const override { return name_; }
    int Read(std::uint32_t* message) override;
    std::uint32_t GetLastTime() const override { return lastTime_; }

private:
    void OnMidiIn(MidiInEvent event, std::uint32_t message) override;

    std::shared_ptr<MidiService> service_;
    std::string name_;
    std::array<std::atomic<std::uint32_t>, kRingEntries> ring_{};
    std::atomic<std::size_t> writeIndex_{0};       // stored by the system's thread alone
    std::atomic<std::size_t> readIndex_{0};        // stored by the interface alone
    Relaxed<std::uint32_t> lastTime_{0};           // milliseconds
    std::unique_ptr<MidiInPort> port_;             // null until open
};

}  // namespace vonta
