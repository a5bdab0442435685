#include <strings.h>
#include <unistd.h>

#include <algorithm>
#include <ctime>
#include <filesystem>

#include "script/binding/ScriptCall.h"
#include "script/classes/HostClasses.h"
#include "script/classes/VTDictionary.h"

namespace vonta {
namespace {

namespace fs = std::filesystem;

int Construct(ScriptCall& call) { return call.GiveNone(); }

int GetCurrentDir(ScriptCall& call) {
    std::error_code failed;
    std::string path = fs::current_path(failed).string();
    std::ranges::replace(path, '\\', '/');
    return call.GiveText(path);
}

int SetCurrentDir(ScriptCall& call) {
    std::error_code ignored;
    fs::current_path(call.Text(0), ignored);
    return 0;
}

std::string ExtensionOf(const std::string& name) {
    const std::size_t dot = name.rfind('.');
    return dot == std::string::npos ? std::string() : name.substr(dot + 1);
}

bool Accepts(const VTDictionary& filter, const std::string& name) {
    const std::string extension = ExtensionOf(name);
    for (int i = 0; i < filter.GetCount(); ++i)
        if (strcasecmp(filter.GetItemName(i)->c_str(), extension.c_str()) == 0) return true;
    return false;
}

// A directory that cannot be entered is as if nobody had gone there.
int GetFilesInDir(ScriptCall& call) {
    const VTDictionary* const filter = call.Has(1) ? &call.As<VTDictionary>(1) : nullptr;
    auto result = MakeObject<VTDictionary>();
    std::error_code failed;
    fs::directory_iterator entries(call.Text(0), failed);
    if (failed) entries = fs::directory_iterator(".", failed);
    for (const char* name : {".", ".."}) result->SetString(name, "Dir");
    for (; !failed && entries != fs::directory_iterator(); entries.increment(failed)) {
        const std::string name = entries->path().filename().string();
        std::error_code ignored;
        if (entries->is_directory(ignored)) result->SetString(name, "Dir");
        else if (!filter || Accepts(*filter, name)) result->SetString(name, "File");
    }
    return call.GiveObject(std::move(result));
}

// Not opened: a pipe would wait for whoever writes to it.
int ExistFile(ScriptCall& call) {
    std::error_code failed;
    const fs::file_status status = fs::status(call.Text(0), failed);
    const bool there = !failed && fs::exists(status) && !fs::is_directory(status);
    return call.GiveTruth(there && ::access(call.Text(0), R_OK) == 0);
}

int GetSystemTime(ScriptCall& call) {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    return call.GiveNumbers({static_cast<double>(local.tm_hour), static_cast<double>(local.tm_min),
                             static_cast<double>(local.tm_sec)});
}

// One tree holds all disks here.
int GetDiskDrives(ScriptCall& call) {
    auto result = MakeObject<VTDictionary>();
    result->SetString("/", "");
    return call.GiveObject(std::move(result));
}

constexpr const char* kExample = R"(modules = VTDictionary()
modules:Set("xm", "")
modules:Set("mod", "")
files = vtSystem:GetFilesInDir(vtSystem:GetCurrentDir(), modules)
for i = 0, files:GetNumItems() - 1 do
    local name = files:GetItemName(i)
    if files:Get(name) == "File" then vtDebug:ODS(name) end
end
)";

}  // namespace

const ScriptClass& VTSystemClass() {
    static const ScriptClass scriptClass(
        "VTSystem",
        {"The directory, files and the clock. `vtSystem` is there in every script.", kExample,
         "vtSystem = VTSystem()"},
        {"VTSystem", {}, "VTSystem", "Another handle on them.", Construct},
        {
            {"GetCurrentDir", {}, "string", "The directory that file names begin from, with forward slashes.",
             GetCurrentDir},
            {"SetCurrentDir", {Text("path")}, nullptr, "Changes it; where that cannot be done it stays.", SetCurrentDir},
            {"GetFilesInDir", {Text("directory"), Optional(Object("filter", "VTDictionary"))}, "VTDictionary",
             "What lies in the directory, by name: \"Dir\" or \"File\". With a filter, of files only those whose "
             "extension is the name of one of its items, in capital or small letters. A directory that cannot be "
             "entered gives the current one.",
             GetFilesInDir},
            {"ExistFile", {Text("name")}, "boolean", "Whether there is a file that can be read.", ExistFile},
            {"GetSystemTime", {}, "three numbers", "Hour, minute and second by the local clock.", GetSystemTime},
            {"GetDiskDrives", {}, "VTDictionary", "Where file systems begin, as names: \"/\" alone.", GetDiskDrives},
        });
    return scriptClass;
}

}  // namespace vonta
