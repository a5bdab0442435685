// Opens all MIDI devices at the start, into tables that their owner keeps: device i becomes entry i.
#pragma once

#include <memory>
#include <span>

#include "midi/DrvMIDIIN.h"
#include "midi/DrvMIDIOUT.h"
#include "platform/MidiService.h"

namespace vonta {

using MidiOutTable = std::span<std::unique_ptr<DrvMIDIOUT>>;
using MidiInTable = std::span<std::unique_ptr<DrvMIDIIN>>;

// Opens every device of the service, and tells of each in the log. A device that cannot be opened keeps its entry.
// Devices beyond a table's end are left out.
void OpenMidi(const std::shared_ptr<MidiService>& service, MidiOutTable outputs, MidiInTable inputs);

// The same with the system's devices, after what the tables held is closed: it would be found among them.
void OpenSystemMidi(MidiOutTable outputs, MidiInTable inputs);

}  // namespace vonta
