// One loaded script file and the Lua state that belongs to it alone.
//
// States share no Lua data. All instances stand in one list of the process, by which a method finds the LuaVM of the
// state that called it. An instance must not go while its state runs: see Scripting::DropAbandoned.
#pragma once

#include <memory>
#include <string>

#include "script/binding/LuaVM.h"
#include "script/host/ScriptFile.h"

namespace vonta {

class ScriptHost;
class ScriptObject;

class ScriptInstance {
public:
    ScriptInstance();
    ~ScriptInstance();
    ScriptInstance(const ScriptInstance&) = delete;
    ScriptInstance& operator=(const ScriptInstance&) = delete;

    // Runs the start-up text and the file's top level. False if the file is no Lua text, which has been told.
    bool Init(std::unique_ptr<ScriptFile> file, ScriptHost* host);
    void CloseFile() { file_->Close(); }             // its name stays
    bool HasFunction(const char* name);              // the global of this name is a function
    // Calls it with the arguments that are not null. False if it fails, which has been told.
    bool Execute(const char* name, ScriptObject* argument1, ScriptObject* argument2);

    const std::string& Path() const { return path_; }      // up to and with the last "/" of the file's name
    const std::string& FileName() const { return file_->GetName(); }
    // What ended the file's top level, if it was an error; nobody has been told.
    const std::string& TopLevelError() const { return topLevelError_; }
    int Number() const { return number_; }           // of this instance alone in the process
    bool IsInUse() const { return uses_ > 0; }
    void Use() { ++uses_; }                          // it must not go until as many Releases
    void Release() { --uses_; }
    LuaVM* Vm() const { return vm_.get(); }

private:
    class Running;

    void Destroy();
    void OpenLibraries(ScriptHost* host);
    bool Load(ScriptHost* host);
    bool LoadFile();
    std::string StartUpText(ScriptHost* host) const;

    bool initialised_ = false;
    std::unique_ptr<LuaVM> vm_;
    std::unique_ptr<ScriptFile> file_;
    std::string path_, topLevelError_;
    int number_;
    int uses_ = 0;                                   // calls into the state, and who else needs it
};

ScriptInstance* InstanceOf(lua_State* L);            // null if it is no script's
ScriptInstance* FindInstance(int number);            // null if it has gone
LuaVM& VmOf(lua_State* L);

}  // namespace vonta
