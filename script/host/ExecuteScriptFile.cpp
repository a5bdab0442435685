#include "script/Scripting.h"
#include "script/host/Nesting.h"
#include "script/host/Reporting.h"
#include "script/host/ScriptHost.h"
#include "script/host/ScriptInstance.h"

namespace vonta {
namespace {

constexpr const char* kCannotOpen = "Can't open (%s) script file";
constexpr const char* kCannotInit = "Can't init (%s) script file";
constexpr const char* kNoFunction = "The script function (%s) in script (%s) does not exist";
constexpr const char* kFunctionFailed = "Error executing script function (%s) in script (%s)";

// Lets the instance go, unless it has got a name in the meantime. Until then nobody else does, whatever name it loses.
struct DeleteUnnamed {
    void operator()(ScriptInstance* instance) const {
        instance->Release();
        Scripting* const scripting = Scripting::Current();
        if (scripting && scripting->NameOfScript(*instance)) return;
        if (scripting) scripting->Forget(instance);
        delete instance;
    }
};

}  // namespace

ScriptResult RunScriptFile(lua_State* L, const std::string& fileName, const std::string& functionName,
                           ScriptObject* firstArgument, bool warnIfMissing) {
    ScriptResult result;
    if (StopAsked()) return result;
    std::unique_ptr<ScriptFile> file = Nesting::IsDeep() ? nullptr : ScriptFile::Open(fileName, "r");
    if (!file) {
        ScriptWarning(L, kCannotOpen, fileName.c_str());
        return result;
    }
    const std::unique_ptr<ScriptInstance, DeleteUnnamed> instance(new ScriptInstance);
    instance->Use();
    if (!instance->Init(std::move(file), &ApplicationHost())) {
        ScriptWarning(L, kCannotInit, fileName.c_str());
        return result;
    }
    instance->CloseFile();
    result.topLevelError = instance->TopLevelError();
    result.hadFunction = instance->HasFunction(functionName.c_str());
    result.done = !result.hadFunction || instance->Execute(functionName.c_str(), firstArgument, nullptr);
    if (!result.hadFunction && warnIfMissing) ScriptWarning(L, kNoFunction, functionName.c_str(), fileName.c_str());
    if (!result.done) ScriptWarning(L, kFunctionFailed, functionName.c_str(), fileName.c_str());
    return result;
}

bool ExecuteScriptFile(lua_State* L, const std::string& fileName, const std::string& functionName,
                       ScriptObject* firstArgument, bool warnIfMissing) {
    return RunScriptFile(L, fileName, functionName, firstArgument, warnIfMissing).done;
}

}  // namespace vonta
