#include "script/classes/VTScript.h"

#include <algorithm>
#include <vector>

#include "script/binding/ScriptCall.h"
#include "script/host/ScriptInstance.h"

namespace vonta {
namespace {

constexpr const char* kGone = "This script does not exist";

std::vector<VTScript*>& All() {
    static std::vector<VTScript*> objects;
    return objects;
}

int Construct(ScriptCall& call) {
    if (!FindInstance(call.Integer(0))) return call.Warn(kGone);
    return call.GiveObject(MakeObject<VTScript>(call.Integer(0)));
}

int GetPath(ScriptCall& call) {
    const ScriptInstance* const instance = call.Self<VTScript>().Instance();
    return instance ? call.GiveText(instance->Path()) : call.Warn(kGone);
}

}  // namespace

VTScript::VTScript(int instanceNumber) : ScriptObject(VTScriptClass()), number_(instanceNumber) {
    All().push_back(this);
}

VTScript::~VTScript() { std::erase(All(), this); }

ScriptInstance* VTScript::Instance() const { return FindInstance(number_); }

// The first reference is that of the script's own vtScript.
bool VTScript::IsHeldElsewhere(const ScriptInstance& instance) {
    return std::ranges::any_of(All(), [&](const VTScript* object) {
        return object->number_ == instance.Number() && object->References() > 1;
    });
}

const ScriptClass& VTScriptClass() {
    static const ScriptClass scriptClass(
        "VTScript",
        {"A loaded script file. `vtScript` is the one that runs.",
         "vtDebug:ODS(\"my files lie in \" .. vtScript:GetPath())\n", ""},
        {"VTScript", {Number("script")}, "VTScript",
         "A handle on the script of this number, which only the host knows.", Construct, {kGone}},
        {
            {"GetPath", {}, "string", "The file's name up to and with its last \"/\", or an empty text.", GetPath,
             {kGone}},
        });
    return scriptClass;
}

}  // namespace vonta
