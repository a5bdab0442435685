#include <strings.h>

#include <algorithm>
#include <filesystem>
#include <set>
#include <vector>

#include "script/Scripting.h"
#include "script/binding/ScriptCall.h"
#include "script/classes/HostClasses.h"
#include "script/classes/VTDictionary.h"
#include "script/classes/VTScript.h"
#include "script/host/ScriptInstance.h"

namespace vonta {
namespace {

namespace fs = std::filesystem;

constexpr const char* kScriptExtension = ".vtc";
constexpr const char* kRegisteredBefore = "Can't register the script, it was registered before with the name (%s)";
constexpr const char* kScriptGone = "This script does not exist";
constexpr const char* kActionExists = "Registering an existent action (%s)";
constexpr const char* kActionFailed = "Error executing Action(%s)";
constexpr const char* kDictionaryExists = "Can't create the dictionary (%s) because another one with this name exist";
constexpr const char* kNoDictionary = "Dictionary (%s) does not exist";

Scripting& Host() { return *Scripting::Current(); }

int Construct(ScriptCall& call) { return call.GiveNone(); }

int Run(ScriptCall&) {
    Host().Run();
    return 0;
}

bool IsScriptName(const std::string& name) {
    const std::size_t dot = name.rfind('.');
    return dot != std::string::npos && strcasecmp(name.c_str() + dot, kScriptExtension) == 0;
}

// Depth first, by name, and no directory twice, whatever links lead back to it.
void FindScripts(const fs::path& directory, std::set<fs::path>& seen, std::vector<std::string>& found) {
    std::error_code failed;
    if (!seen.insert(fs::canonical(directory, failed)).second || failed) return;
    std::vector<fs::directory_entry> entries;
    for (fs::directory_iterator i(directory, failed); !failed && i != fs::directory_iterator(); i.increment(failed))
        entries.push_back(*i);
    std::ranges::sort(entries);
    for (const fs::directory_entry& entry : entries) {
        std::error_code ignored;
        if (entry.is_directory(ignored)) FindScripts(entry.path(), seen, found);
        else if (IsScriptName(entry.path().filename())) found.push_back(entry.path());
    }
}

int ExecuteDir(ScriptCall& call) {
    std::set<fs::path> seen;
    std::vector<std::string> found;
    std::error_code failed;
    // Names that hold whatever directory a script changes to.
    FindScripts(fs::absolute(call.Text(0), failed), seen, found);
    for (const std::string& file : found) {
        if (StopAsked()) break;
        ExecuteScriptFile(call.State(), file, call.Text(1), call.Object(2), false);
    }
    return 0;
}

int ExecuteScript(ScriptCall& call) {
    return call.GiveTruth(ExecuteScriptFile(call.State(), call.Text(0), call.Text(1), call.Object(2), true));
}

int Quit(ScriptCall&) {
    Host().Quit();
    return 0;
}

int RegisterScript(ScriptCall& call) {
    const ScriptInstance* const instance = call.As<VTScript>(1).Instance();
    if (!instance) return call.Warn(kScriptGone);
    if (const std::string* name = Host().NameOfScript(*instance)) return call.Warn(kRegisteredBefore, name->c_str());
    Host().RegisterScript(call.Text(0), ScriptRef<VTScript>::Share(&call.As<VTScript>(1)));
    return 0;
}

int RegisterAction(ScriptCall& call) {
    const bool isNew = Host().Actions().Register(call.Text(0), call.Text(1), call.Text(2));
    return isNew || call.Truth(3) ? 0 : call.Warn(kActionExists, call.Text(0));
}

int ExecuteAction(ScriptCall& call) {
    return ExecuteActionNow(call.Text(0), call.Object(1), call.Object(2)) ? 0 : call.Warn(kActionFailed, call.Text(0));
}

int CreateDictionary(ScriptCall& call) {
    return Host().CreateDictionary(call.Text(0)) ? 0 : call.Warn(kDictionaryExists, call.Text(0));
}

int GetDictionary(ScriptCall& call) {
    VTDictionary* const dictionary = Host().GetDictionary(call.Text(0));
    if (!dictionary) return call.Warn(kNoDictionary, call.Text(0));
    return call.GiveObject(ScriptRef<VTDictionary>::Share(dictionary));
}

constexpr const char* kExample = R"(function Greet(who)
    vtDebug:ODS("hello, " .. who:Get("name"))
end

vtApp:RegisterScript("greeter", vtScript)
vtApp:RegisterAction("greet", "greeter", "Greet", true)
who = VTDictionary()
who:Set("name", "Anna")
vtApp:ExecuteAction("greet", who)
)";

}  // namespace

const ScriptClass& VTAppClass() {
    const Parameter dictionary = Optional(Object("dictionary", "VTDictionary"));
    static const ScriptClass scriptClass(
        "VTApp",
        {"Runs scripts, keeps them alive under a name, binds names of actions to their functions, and keeps the "
         "dictionaries that all scripts share. `vtApp` is there in every script.",
         kExample, "vtApp = VTApp()"},
        {"VTApp", {}, "VTApp", "Another handle on it.", Construct},
        {
            {"Run", {}, nullptr,
             "Waits, and calls the actions of the player's messages and of other threads, until Quit or Ctrl+C.", Run},
            {"ExecuteDir", {Text("directory"), Text("function"), dictionary}, nullptr,
             "Runs each script file (`.vtc`) below the directory by name, and then its function with the dictionary. "
             "Files without the function are run too; one that fails stops none of the others.",
             ExecuteDir},
            {"ExecuteScript", {Text("file"), Text("function"), dictionary}, "boolean",
             "Runs a script file and then its function with the dictionary. False if the file cannot be loaded or "
             "the function fails.",
             ExecuteScript},
            {"Quit", {}, nullptr, "Ends Run, now or whenever it is called.", Quit},
            {"RegisterScript", {Text("name"), Object("script", "VTScript")}, nullptr,
             "Keeps the script alive under the name, in the place of one that had it.", RegisterScript,
             {kRegisteredBefore, kScriptGone}},
            {"RegisterAction", {Text("action"), Text("script"), Text("function"), Optional(Truth("replace"))}, nullptr,
             "Binds the action to a function of the script of that name. One that is bound is bound anew; "
             "without `replace` that is warned of.",
             RegisterAction, {kActionExists}},
            {"ExecuteAction", {Text("action"), Optional(AnyObject("first")), Optional(AnyObject("second"))}, nullptr,
             "Calls the action's function with the objects.", ExecuteAction, {kActionFailed}},
            {"CreateDictionary", {Text("name")}, nullptr, "Makes an empty dictionary that all scripts share.",
             CreateDictionary, {kDictionaryExists}},
            {"GetDictionary", {Text("name")}, "VTDictionary", "The shared dictionary of this name.", GetDictionary,
             {kNoDictionary}},
        });
    return scriptClass;
}

}  // namespace vonta
