#include "script/classes/VTDebug.h"

#include <mutex>
#include <string>

#include "script/binding/ScriptCall.h"
#include "script/classes/HostClasses.h"
#include "script/classes/VTDictionary.h"
#include "script/host/Actions.h"

namespace vonta {
namespace {

// Empty: no hook. Read by whatever thread prints.
struct Hook {
    std::mutex lock;
    std::string action;
} g_hook;

std::string HookAction() {
    const std::lock_guard lock(g_hook.lock);
    return g_hook.action;
}

void SetHookAction(std::string action) {
    const std::lock_guard lock(g_hook.lock);
    g_hook.action = std::move(action);
}

void ForgetHook() { SetHookAction({}); }

int Construct(ScriptCall& call) { return call.GiveNone(); }

int Ods(ScriptCall& call) {
    Print("%s", call.Text(0));
    return 0;
}

int Warning(ScriptCall& call) {
    Print("WARNING:%s", call.Text(0));
    return 0;
}

int SetOdsHook(ScriptCall& call) {
    SetHookAction(call.Text(0));
    return 0;
}

constexpr const char* kExample = R"(vtDebug:ODS("rendered 4 patterns")
vtDebug:WARNING(" pattern 5 is empty")
)";

}  // namespace

void HookSink::Print(const char* text) {
    if (print_) print_(text);
    const std::string action = HookAction();
    if (action.empty() || hookRuns_.exchange(true)) return;
    const auto line = MakeObject<VTDictionary>();
    line->SetString("Text", text);
    ExecuteActionNow(action, line.Get(), nullptr);
    hookRuns_ = false;
}

const ScriptClass& VTDebugClass() {
    static const ScriptClass scriptClass(
        "VTDebug", {"The log. `vtDebug` is there in every script.", kExample, "vtDebug = VTDebug()"},
        {"VTDebug", {}, "VTDebug", "Another handle on the log.", Construct},
        {
            {"ODS", {Text("text")}, nullptr, "Prints the text.", Ods},
            {"WARNING", {Text("text")}, nullptr, "Prints \"WARNING:\" and, directly behind it, the text.", Warning},
            {"SetODSHook", {Text("action")}, nullptr,
             "From now on each line of the log also calls the action, with a dictionary that holds it as \"Text\"; not "
             "while the action itself runs. An empty name ends it.",
             SetOdsHook},
        },
        {ForgetHook, ForgetHook});
    return scriptClass;
}

}  // namespace vonta
