// An output port of the system. Messages wait in a queue until the output's delay has passed, which brings a hardware
// synthesizer into line with the latency of the sound.
//
// The audio side alone sends and flushes. Delay and last time are shared with the interface. A port that is not open
// keeps queueing; nothing leaves it.
#pragma once

#include <array>
#include <cstddef>
#include <memory>

#include "midi/DrvMIDIOUT.h"
#include "platform/MidiService.h"
#include "platform/Shared.h"

namespace vonta {

class DrvMIDIOUTSystem final : public DrvMIDIOUT {
public:
    static constexpr std::size_t kQueueEntries = 2048;

    // All ports share the service: the last to go ends it.
    explicit DrvMIDIOUTSystem(std::shared_ptr<MidiService> service);

    int Open(int device) override;                 // 1 if it is open already or cannot be opened
    std::string GetName() const override { return name_; }

    void NoteOn(int note, int channel, int velocity, std::uint32_t time) override;
    void NoteOff(int note, int channel, std::uint32_t time) override;
    void ProgramChange(int channel, int program, std::uint32_t time) override;
    void ControlChange(int channel, int controller, int value, std::uint32_t time) override;

    // Sends what has a time of at most now - delay, in the order of the array and not of the times. Unsigned: with a
    // delay above `now` all is due.
    void Flush(std::uint32_t now) override;
    std::uint32_t GetDelay() const override { return delay_; }
    void SetDelay(std::uint32_t ms) override { delay_ = ms; }
    std::uint32_t GetLastTime() const override { return lastTime_; }

private:
    // A full queue overwrites its oldest entry.
    void Put(int status, int data1, int data2, std::uint32_t time);

    std::shared_ptr<MidiService> service_;
    std::unique_ptr<MidiOutPort> port_;            // null until open
    std::string name_;
    std::array<std::uint32_t, kQueueEntries> messages_{};
    std::array<std::uint32_t, kQueueEntries> times_;   // apart from the messages, since every block scans them all
    std::size_t writeIndex_ = 0;
    Relaxed<std::uint32_t> delay_{0}, lastTime_{0};    // milliseconds
};

}  // namespace vonta
