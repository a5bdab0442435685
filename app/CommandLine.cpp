#include "app/CommandLine.h"

#include <CLI/CLI.hpp>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <exception>
#include <functional>
#include <new>
#include <string>
#include <vector>

#include "app/Check.h"
#include "app/Convert.h"
#include "app/Devices.h"
#include "app/Info.h"
#include "app/Interrupt.h"
#include "app/Messages.h"
#include "app/Play.h"
#include "app/Render.h"
#include "platform/Debug.h"

namespace vonta {
namespace {

constexpr const char* kVersionText = "Vonta Tracker beta " VONTA_VERSION;

// A sub-command that has been chosen: what it will do once all arguments are read.
using Command = std::function<int()>;

using AddCommand = void (*)(CLI::App& app, Command& chosen);

// One row a sub-command.
constexpr struct {
    const char *name, *help;
    AddCommand add;
} kCommands[] = {
    {"render", "Render a song to WAV files, faster than it plays", AddRenderCommand},
    {"convert", "Write a song, an instrument or a sample in another format", AddConvertCommand},
    {"info", "Tell what a song, an instrument or a sample holds", AddInfoCommand},
    {"check", "Tell whether files are sound", AddCheckCommand},
    {"play", "Play a song in real time", AddPlayCommand},
    {"devices", "List the devices", AddDevicesCommand},
};

void SendLogToErrorOutput() {
    SetDebugSink([](std::string_view line) {
        const std::string text = Printable(line, Layout::Keep);
        std::fwrite(text.data(), 1, text.size(), stderr);
    });
}

void BuildCommands(CLI::App& app, Command& chosen) {
    app.set_version_flag("--version", kVersionText);
    app.require_subcommand(1);
    for (const auto& row : kCommands) {
        CLI::App& command = *app.add_subcommand(row.name, row.help);
        command.set_version_flag("--version", kVersionText);
        command.add_flag_callback("--log", SendLogToErrorOutput, "Print the debug lines to the error output");
        row.add(command, chosen);
    }
}

// An unknown word in the place of a sub-command counts as none for the parser.
void TellUsageError(const CLI::App& app, const CLI::ParseError& error) {
    const std::vector<std::string> unknown = app.remaining();
    if (app.get_subcommands().empty() && !unknown.empty()) Complain("unknown sub-command or option", unknown.front());
    else Complain(error.what());
    std::fputs("Run 'vonta --help' for the way to use it.\n", stderr);
}

// What was printed may have met a full disk only when the buffer is written out.
int FlushOutput(int status) {
    if (std::fflush(stdout) == 0 && !std::ferror(stdout)) return status;
    Complain("standard output", std::strerror(errno));
    return status == kDone ? kFailed : status;
}

int RunChosen(const Command& chosen) {
    try {
        return chosen();
    } catch (const std::bad_alloc&) {
        Complain("out of memory");
    } catch (const std::exception& error) {
        Complain(error.what());
    }
    return kFailed;
}

}  // namespace

int RunCommandLine(int argc, char** argv) {
    CLI::App app("Vonta Tracker: plays, renders, converts and describes tracker songs.", "vonta");
    Command chosen;
    BuildCommands(app, chosen);
    try {
        app.parse(argc, argv);
    } catch (const CLI::Success& request) {          // --help or --version
        app.exit(request);
        return FlushOutput(kDone);
    } catch (const CLI::ParseError& error) {
        TellUsageError(app, error);
        return kWrongUsage;
    }
    WatchInterrupt();
    return FlushOutput(RunChosen(chosen));
}

}  // namespace vonta
