#include "midi/DrvMIDIINSystem.h"

#include <utility>

#include "platform/Clock.h"
#include "platform/Debug.h"

namespace vonta {

DrvMIDIINSystem::DrvMIDIINSystem(std::shared_ptr<MidiService> service) : service_(std::move(service)) {}

// Closing still calls back.
DrvMIDIINSystem::~DrvMIDIINSystem() { port_.reset(); }

int DrvMIDIINSystem::Open(int device) {
    if (port_) return 1;
    DebugOutput("\t\t- Trying to init MIDI In device: %i\n", device);
    port_ = service_->OpenInput(device, *this);
    if (!port_) {
        DebugOutput("*ERROR: can't init MIDI In device: %i\n", device);
        return 1;
    }
    if (!port_->Start()) {
        DebugOutput("*ERROR: can't start MIDI In device: %i\n", device);
        port_.reset();
        return 1;
    }
    name_ = service_->InputName(device);
    DebugOutput("\t\t- MIDI In device (%i) initialized\n", device);
    return 0;
}

int DrvMIDIINSystem::Read(std::uint32_t* message) {
    const std::size_t at = readIndex_.load(std::memory_order_relaxed);
    if (at == writeIndex_.load(std::memory_order_acquire)) return 0;
    *message = ring_[at].load(std::memory_order_relaxed);
    readIndex_.store((at + 1) % kRingEntries, std::memory_order_relaxed);
    return 1;
}

void DrvMIDIINSystem::OnMidiIn(MidiInEvent event, std::uint32_t message) {
    switch (event) {
        case MidiInEvent::Opened: DebugOutput("\t\t\t- MIDI In Procedure Opened.\n"); break;
        case MidiInEvent::Closed: DebugOutput("\t\t\t- MIDI In Procedure Closed.\n"); break;
        case MidiInEvent::Message: {
            const std::size_t at = writeIndex_.load(std::memory_order_relaxed);
            ring_[at].store(message, std::memory_order_relaxed);   // atomic: a lapped reader may be at this entry
            writeIndex_.store((at + 1) % kRingEntries, std::memory_order_release);
            lastTime_ = Milliseconds();
        }
    }
}

}  // namespace vonta
