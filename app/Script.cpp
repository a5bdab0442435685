#include "app/Script.h"

#include <CLI/CLI.hpp>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cmath>
#include <memory>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "app/CommandLine.h"
#include "app/Interrupt.h"
#include "app/Messages.h"
#include "audio/CreateDevice.h"
#include "midi/OpenMidi.h"
#include "script/Scripting.h"
#include "script/classes/VTDictionary.h"

namespace vonta {
namespace {

using namespace std::chrono_literals;

constexpr const char* kDefaultFunction = "Main";
constexpr const char* kStandardInput = "/dev/stdin";
constexpr auto kWatchPeriod = 20ms, kPatience = 400ms;

struct ScriptRequest {
    std::string file;
    std::vector<std::string> words;                  // the function's name, if any, and the values
    std::string function;                            // empty if it was not named
    std::vector<std::pair<std::string, std::string>> values;
};

void PrintLine(std::string_view line) {
    std::string text = Printable(line, Layout::Keep);
    if (!text.ends_with('\n')) text += '\n';
    std::fwrite(text.data(), 1, text.size(), stdout);
}

// Ends the process if Ctrl+C finds a script inside a library function of Lua that goes on and on, such as the search of
// a pattern: there it is not asked whether to stop.
class LastResort {
public:
    LastResort() : thread_([](const std::stop_token& stop) { Watch(stop); }) {}

private:
    static void Watch(const std::stop_token& stop) {
        for (auto waited = 0ms; !stop.stop_requested(); std::this_thread::sleep_for(kWatchPeriod)) {
            if (Interrupted()) waited += kWatchPeriod;
            if (waited < kPatience || g_inMethod) continue;
            std::fflush(stdout);
            std::_Exit(kInterrupted);
        }
    }

    std::jthread thread_;
};

// A value that is a number, and would be written like that, is one for the script.
void SetValue(VTDictionary& dictionary, const std::string& name, const std::string& text) {
    char* end = nullptr;
    const double number = std::strtod(text.c_str(), &end);
    char written[32];
    std::snprintf(written, sizeof written, "%.14g", number);
    if (*end == '\0' && std::isfinite(number) && text == written) dictionary.SetNumber(name, number);
    else dictionary.SetString(name, text);
}

int RunScript(const ScriptRequest& request) {
    std::setvbuf(stdout, nullptr, _IOLBF, BUFSIZ);
    Scripting scripting({PrintLine, CreateDevice, OpenSystemMidi, Interrupted});
    const LastResort lastResort;
    const auto values = MakeObject<VTDictionary>();
    for (const auto& [name, text] : request.values) SetValue(*values, name, text);
    const bool wanted = !request.function.empty() || !request.values.empty();
    const std::string function = request.function.empty() ? kDefaultFunction : request.function;
    const ScriptResult result = RunScriptFile(nullptr, request.file, function, values.Get(), wanted);
    if (Interrupted()) return kInterrupted;
    if (!result.topLevelError.empty()) Complain(request.file, result.topLevelError);
    return result.done && result.topLevelError.empty() && (result.hadFunction || !wanted) ? kDone : kFailed;
}

// What follows the file: a word without "=" is the function, and comes first.
void TakeApart(ScriptRequest& request) {
    if (request.file == "-") request.file = kStandardInput;
    for (const std::string& word : request.words) {
        const std::size_t equals = word.find('=');
        if (equals != std::string::npos && equals > 0) {
            request.values.emplace_back(word.substr(0, equals), word.substr(equals + 1));
        } else if (&word == &request.words.front() && !word.empty()) {
            request.function = word;
        } else {
            throw CLI::ValidationError("NAME=VALUE", word);
        }
    }
}

}  // namespace

void AddScriptCommand(CLI::App& command, std::function<int()>& chosen) {
    const auto request = std::make_shared<ScriptRequest>();
    command.add_option("FILE", request->file, "The script's file, or - for the standard input")
        ->required()
        ->type_name("");
    command.add_option("FUNCTION", request->words,
                       "Its function to call, \"Main\" if not named; then NAME=VALUE for each value of the dictionary that "
                       "it is given")
        ->type_name("[NAME=VALUE...]");
    command.callback([request, &chosen] {
        TakeApart(*request);
        chosen = [request] { return RunScript(*request); };
    });
}

}  // namespace vonta
