#include "app/Devices.h"

#include <CLI/CLI.hpp>
#include <cstdio>

#include "app/CommandLine.h"
#include "app/Messages.h"
#include "app/SoundKinds.h"
#include "audio/ListDevices.h"
#include "platform/MidiService.h"

namespace vonta {
namespace {

void Show(const char* kind, int number, const std::string& name) {
    std::printf("  %-12s %3d  %s\n", kind, number, Printable(name).c_str());
}

// KIND  NUMBER  NAME, as --device and --device-number take the first two.
void ListSoundDevices() {
    std::puts("Sound devices:");
    for (const SoundKind& row : kSoundKinds) {
        int number = 0;
        for (const std::string& name : ListDevices(row.kind)) Show(row.name, number++, name);
    }
}

// As --midi-out and --midi-in take the number.
void ListMidiPorts() {
    std::puts("MIDI ports:");
    const auto midi = CreateSystemMidi();
    for (int i = 0; i < midi->OutputCount(); ++i) Show("midi-out", i, midi->OutputName(i));
    for (int i = 0; i < midi->InputCount(); ++i) Show("midi-in", i, midi->InputName(i));
}

int List() {
    ListSoundDevices();
    ListMidiPorts();
    return kDone;
}

}  // namespace

void AddDevicesCommand(CLI::App& command, std::function<int()>& chosen) {
    command.callback([&chosen] { chosen = List; });
}

}  // namespace vonta
