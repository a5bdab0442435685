#include "midi/DrvMIDIOUTSystem.h"

#include <algorithm>
#include <utility>

#include "platform/Clock.h"
#include "platform/Debug.h"

namespace vonta {
namespace {

constexpr std::uint32_t kFree = 0xFFFFFFFF;        // the time of an entry that holds nothing

enum Status { kNoteOff = 0x80, kNoteOn = 0x90, kControlChange = 0xB0, kProgramChange = 0xC0 };

std::uint32_t DataByte(int value) { return static_cast<std::uint32_t>(MidiData(value)); }

}  // namespace

DrvMIDIOUTSystem::DrvMIDIOUTSystem(std::shared_ptr<MidiService> service) : service_(std::move(service)) {
    times_.fill(kFree);
}

int DrvMIDIOUTSystem::Open(int device) {
    if (port_) return 1;
    port_ = service_->OpenOutput(device);
    if (!port_) {
        DebugOutput("* ERROR: no se pudo inicializar DrvMIDIOUT (%i)\n", device);
        return 1;
    }
    name_ = service_->OutputName(device);
    return 0;
}

void DrvMIDIOUTSystem::NoteOn(int note, int channel, int velocity, std::uint32_t time) {
    Put(kNoteOn | channel, note, velocity, time);
}

void DrvMIDIOUTSystem::NoteOff(int note, int channel, std::uint32_t time) { Put(kNoteOff | channel, note, 0, time); }

void DrvMIDIOUTSystem::ProgramChange(int channel, int program, std::uint32_t time) {
    Put(kProgramChange | channel, program, 0, time);
}

void DrvMIDIOUTSystem::ControlChange(int channel, int controller, int value, std::uint32_t time) {
    DebugOutput("midi controller(%i) channel(%i) parm(%i)\n", controller, channel, value);
    Put(kControlChange | channel, controller, value, time);
}

void DrvMIDIOUTSystem::Put(int status, int data1, int data2, std::uint32_t time) {
    messages_[writeIndex_] = static_cast<std::uint32_t>(status & 0xFF) | DataByte(data1) << 8 | DataByte(data2) << 16;
    times_[writeIndex_] = std::min(time, kFree - 1);
    writeIndex_ = (writeIndex_ + 1) % kQueueEntries;
}

void DrvMIDIOUTSystem::Flush(std::uint32_t now) {
    if (!port_) return;
    const std::uint32_t due = std::min(now - delay_, kFree - 1);
    bool sent = false;
    for (std::size_t i = 0; i < kQueueEntries; ++i) {
        if (times_[i] > due) continue;
        if (!port_->Send(messages_[i])) break;       // the port is stuck: the rest waits for the next block
        times_[i] = kFree;
        sent = true;
    }
    if (sent) lastTime_ = Milliseconds();
}

}  // namespace vonta
