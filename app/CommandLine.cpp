#include "app/CommandLine.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <exception>
#include <filesystem>
#include <functional>
#include <new>
#include <string>
#include <vector>

#include "app/Check.h"
#include "app/Convert.h"
#include "app/Devices.h"
#include "app/Edit.h"
#include "app/Info.h"
#include "app/Interrupt.h"
#include "app/Messages.h"
#include "app/Play.h"
#include "app/Render.h"
#include "app/Script.h"
#include "platform/Debug.h"

namespace vonta {
namespace {


constexpr const char* kTrackerCommand = "edit";

// A sub-command that has been chosen: what it will do once all arguments are read.
using Command = std::function<int()>;

using AddCommand = void (*)(CLI::App& app, Command& chosen);

// One row a sub-command.
constexpr struct {
    const char *name, *help;
    AddCommand add;
} kCommands[] = {
    {kTrackerCommand, "Open the tracker; also what a file without a sub-command does", AddEditCommand},
    {"render", "Render a song to WAV files, faster than it plays", AddRenderCommand},
    {"convert", "Write a song, an instrument or a sample in another format", AddConvertCommand},
    {"info", "Tell what a song, an instrument or a sample holds", AddInfoCommand},
    {"check", "Tell whether files are sound", AddCheckCommand},
    {"play", "Play a song in real time", AddPlayCommand},
    {"devices", "List the devices", AddDevicesCommand},
    {"script", "Run a script", AddScriptCommand},
};

void SendLogToErrorOutput() {
    SetDebugSink([](std::string_view line) {
        const std::string text = Printable(line, Layout::Keep);
        std::fwrite(text.data(), 1, text.size(), stderr);
    });
}

void BuildCommands(CLI::App& app, Command& chosen) {
    app.set_version_flag("--version", kProgramTitle);
    app.require_subcommand(1);
    for (const auto& row : kCommands) {
        CLI::App& command = *app.add_subcommand(row.name, row.help);
        command.set_version_flag("--version", kProgramTitle);
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

// Nothing, or a file as a desktop passes it: the tracker opens.
bool MeansTracker(const std::vector<std::string>& arguments) {
    if (arguments.empty()) return true;
    const std::string& first = arguments.front();
    for (const auto& row : kCommands)
        if (first == row.name) return false;
    std::error_code failed;
    return std::filesystem::is_regular_file(first, failed);
}

}  // namespace

int RunCommandLine(int argc, char** argv) {
    CLI::App app("Vonta Tracker: writes, plays, renders, converts and describes tracker songs.", "vonta");
    Command chosen;
    BuildCommands(app, chosen);
    std::vector<std::string> arguments(argv + std::min(argc, 1), argv + argc);
    if (MeansTracker(arguments)) arguments.insert(arguments.begin(), kTrackerCommand);
    std::reverse(arguments.begin(), arguments.end());   // as the parser takes them
    try {
        app.parse(std::move(arguments));
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
