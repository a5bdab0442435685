#include "script/Reference.h"

#include <cstdio>
#include <span>

#include "script/classes/HostClasses.h"
#include "script/host/ScriptHost.h"

namespace vonta {
namespace {

constexpr const char* kIntroduction = R"(# Scripting

`vonta script FILE [FUNCTION] [NAME=VALUE...]` runs a script: batch work on songs, generators, converters, analyses. It
runs the file from top to bottom, then calls the function (`Main` if none is named and the file has one) with a
`VTDictionary` of the values. `vonta script -` reads the script from the standard input. What a script and the host print
goes to the standard output. The status is 0, 1 if the file or the function failed, 2 for wrong usage, 130 after Ctrl+C,
which ends a script whatever it does.

    vonta script docs/scripts/statistics.vtc Main file=song.xm

Scripts are Lua 5.1 text, with the libraries `table`, `string` and `math` (`string.gfind`, `math.mod` and `table.getn` are
there too) and nothing else of Lua's: no `print`, `pairs`, `pcall`, `io`, `os` or `require`. All else comes from the
classes below. A script is run only when it is named. Precompiled scripts are refused.

- A method is called with a colon: `song:SetBPM(140)`. A wrong type of argument is an error, which ends the function that
  runs. A wrong value is a warning; the method then gives nothing, unless it says otherwise, and the script goes on.
- A warning tells the file and the line: `WARNING: file:[what name]:line: message`.
- Each script file has a state of its own. They share dictionaries (`VTApp:CreateDictionary`), actions and the player. A
  state ends with its function, unless the script has registered itself (`VTApp:RegisterScript`).
- What a script holds of a song may go: the song is replaced, the instrument dropped. Its methods then warn.
- Scripts may take 512 MiB, arrays 1 GiB, and a pattern of the string library 4096 bytes.

## Examples

| File in `docs/scripts/` | What it does |
|---|---|
| `generate.vtc` | writes a song of chords and drums from tables |
| `statistics.vtc` | counts what a song's patterns use |
| `transpose.vtc` | transposes and tidies the songs of a folder |
| `wav.vtc` | writes a WAV file byte by byte and reads it back |
| `position.vtc` | plays a song and prints the position as it changes |
)";

std::string NumberText(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.0f", value);
    return text;
}

std::string KindText(const Parameter& parameter) {
    switch (parameter.kind) {
        case Kind::Number: return "number";
        case Kind::Text: return "string";
        case Kind::Truth: return "boolean";
        case Kind::AnyObject: return "an object of any class";
        default: return parameter.detail ? parameter.detail : "";
    }
}

void AppendArguments(std::string& text, const MethodRow& row) {
    for (const Parameter& parameter : row.parameters) {
        text += "- `" + std::string(parameter.name) + "`: " + KindText(parameter);
        if (parameter.message) text += ", " + NumberText(parameter.least) + " to " + NumberText(parameter.most);
        if (parameter.optional) text += "; may be left out";
        text += ".\n";
    }
}

void AppendMessages(std::string& text, const MethodRow& row) {
    std::string list;
    const auto add = [&list](const char* message) {
        const std::string quoted = '"' + std::string(message) + '"';
        if (list.find(quoted) == std::string::npos) list += (list.empty() ? "" : ", ") + quoted;
    };
    for (const Parameter& parameter : row.parameters)
        if (parameter.message) add(parameter.message);
    for (const char* message : row.messages) add(message);
    if (!list.empty()) text += "- Says: " + list + ".\n";
}

void AppendRow(std::string& text, const std::string& call, const MethodRow& row) {
    text += "\n### `" + call + "(" + ParameterNames(row) + ")`\n\n";
    text += row.about;
    text += "\n\n";
    AppendArguments(text, row);
    text += "- Gives: " + std::string(row.result ? row.result : "nothing") + ".\n";
    AppendMessages(text, row);
}

// Without those that every class has.
std::span<const MethodRow> Own(const ScriptClass& scriptClass) {
    return std::span(scriptClass.Methods()).subspan(kCommonMethods);
}

void AppendCommon(std::string& text) {
    text += "\n## Every class\n";
    for (const MethodRow& row : std::span(VTAppClass().Methods()).first(kCommonMethods))
        AppendRow(text, std::string("object:") + row.name, row);
}

void AppendClass(std::string& text, const ScriptClass& scriptClass) {
    const std::string name = scriptClass.Name();
    text += "\n## " + name + "\n\n" + scriptClass.Text().about + "\n\n```lua\n" + scriptClass.Text().example + "```\n";
    AppendRow(text, name, scriptClass.Constructor());
    for (const MethodRow& row : Own(scriptClass)) AppendRow(text, name + ":" + row.name, row);
}

}  // namespace

std::string MakeScriptReference() {
    std::string text = kIntroduction;
    AppendCommon(text);
    for (const ScriptClass* scriptClass : LibraryClasses()) AppendClass(text, *scriptClass);
    for (const ScriptClass* scriptClass : ApplicationClasses()) AppendClass(text, *scriptClass);
    return text;
}

}  // namespace vonta
