#include "midi/OpenMidi.h"

#include <algorithm>
#include <new>

#include "midi/DrvMIDIINSystem.h"
#include "midi/DrvMIDIOUTSystem.h"
#include "platform/Debug.h"

namespace vonta {
namespace {

// Lines of the log; each takes the device's number, `started` its name too.
struct Lines {
    const char *started, *failed, *noMemory;
};
constexpr Lines kOutputLines{"\t\t- MIDIOut started (%i): %s\n", "* ERROR: Starting MIDIOut (%i)\n",
                             "* ERROR: creating object MIDIOut (%i)\n"};
constexpr Lines kInputLines{"\t\t- MIDIIn started(%i): %s\n", "* ERROR: Starting MIDI In (%i)\n",
                            "* ERROR: creating object MIDI In (%i)\n"};

template <class Device, class Table>
void OpenAll(const std::shared_ptr<MidiService>& service, int count, Table table, const Lines& lines) {
    count = std::min(count, static_cast<int>(table.size()));
    for (int i = 0; i < count; ++i) {
        auto& place = table[static_cast<std::size_t>(i)];
        place.reset(new (std::nothrow) Device(service));
        if (!place)
            DebugOutput(lines.noMemory, i);
        else if (place->Open(i) != 0)
            DebugOutput(lines.failed, i);
        else
            DebugOutput(lines.started, i, place->GetName().c_str());
    }
}

}  // namespace

void OpenMidi(const std::shared_ptr<MidiService>& service, MidiOutTable outputs, MidiInTable inputs) {
    OpenAll<DrvMIDIOUTSystem>(service, service->OutputCount(), outputs, kOutputLines);
    DebugOutput("\t- Starting MIDI IN\n");
    OpenAll<DrvMIDIINSystem>(service, service->InputCount(), inputs, kInputLines);
}

void OpenSystemMidi(MidiOutTable outputs, MidiInTable inputs) {
    for (auto& output : outputs) output.reset();
    for (auto& input : inputs) input.reset();
    OpenMidi(CreateSystemMidi(), outputs, inputs);
}

}  // namespace vonta
