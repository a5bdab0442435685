#include "app/Devices.h"

#include <CLI/CLI.hpp>
#include <cstdio>

#include "app/CommandLine.h"
#include "app/Messages.h"
#include "app/SoundKinds.h"
#include "audio/ListDevices.h"

namespace vonta {
namespace {

// KIND  NUMBER  NAME, as --device and --device-number take the first two.
void ListSoundDevices() {
    std::puts("Sound devices:");
    for (const SoundKind& row : kSoundKinds) {
        int number = 0;
        for (const std::string& name : ListDevices(row.kind))
            std::printf("  %-12s %3d  %s\n", row.name, number++, Printable(name).c_str());
    }
}

int List() {
    ListSoundDevices();
    return kDone;
}

}  // namespace

void AddDevicesCommand(CLI::App& command, std::function<int()>& chosen) {
    command.callback([&chosen] { chosen = List; });
}

}  // namespace vonta
