#include <string_view>

#include "script/binary/BinaryClasses.h"
#include "script/binding/ScriptCall.h"

namespace vonta {
namespace {

struct Split {
    std::string_view name, extension;                // around the last "."
};

Split SplitName(std::string_view file) {
    const std::size_t dot = file.rfind('.');
    if (dot == std::string_view::npos) return {file, {}};
    return {file.substr(0, dot), file.substr(dot + 1)};
}

std::string Joined(std::string_view name, std::string_view extension) {
    return std::string(name) + "." + std::string(extension);
}

int Construct(ScriptCall& call) { return call.GiveNone(); }
int GetName(ScriptCall& call) { return call.GiveText(SplitName(call.Text(0)).name); }
int SetName(ScriptCall& call) { return call.GiveText(Joined(call.Text(1), SplitName(call.Text(0)).extension)); }
int GetExtension(ScriptCall& call) { return call.GiveText(SplitName(call.Text(0)).extension); }
int SetExtension(ScriptCall& call) { return call.GiveText(Joined(SplitName(call.Text(0)).name, call.Text(1))); }

}  // namespace

const ScriptClass& VTFileUtilsClass() {
    static const ScriptClass scriptClass(
        "VTFileUtils",
        {"Takes file names apart at their last \".\"; it knows nothing of directories. `vtFileUtils` is there in every "
         "script.",
         "vtDebug:ODS(vtFileUtils:SetExtension(\"drive.xm\", \"vtm\"))\n", "vtFileUtils = VTFileUtils()"},
        {"VTFileUtils", {}, "VTFileUtils", "Another handle on it.", Construct},
        {
            {"GetName", {Text("file")}, "string", "The text before the last \".\", or all of it.", GetName},
            {"SetName", {Text("file"), Text("name")}, "string", "The new name, \".\" and the file's extension.", SetName},
            {"GetExtension", {Text("file")}, "string", "The text behind the last \".\", or an empty one.", GetExtension},
            {"SetExtension", {Text("file"), Text("extension")}, "string",
             "The text before the last \".\", \".\" and the new extension.", SetExtension},
        });
    return scriptClass;
}

}  // namespace vonta
