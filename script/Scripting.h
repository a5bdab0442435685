// The host of scripts: what all of them share while the process runs some. A front end makes one, on the thread on
// which scripts and actions are to run, and enters by ExecuteScriptFile.
#pragma once

#include <atomic>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "engine/SndPlayer.h"
#include "script/host/Actions.h"
#include "script/host/Watch.h"
#include "script/host/WindowManager.h"

struct lua_State;

namespace vonta {

class OutputSink;
class ScriptInstance;
class ScriptPlayer;
class VTDictionary;
class VTScript;

struct ScriptingOptions {
    std::function<void(std::string_view)> print;     // each line that scripts and host tell; any thread
    DeviceFactory devices = nullptr;                 // for VTPlayer
    MidiOpener midi = nullptr;
    StopQuestion stop = nullptr;                     // true ends Run, and whatever a script does
};

class Scripting {
public:
    explicit Scripting(ScriptingOptions options);
    ~Scripting();                                    // all scripts and what they hold; those who wait are let go
    Scripting(const Scripting&) = delete;
    Scripting& operator=(const Scripting&) = delete;

    static Scripting* Current();                     // null while there is none
    bool IsMainThread() const { return std::this_thread::get_id() == mainThread_; }

    // The main loop; until Quit, a stop, or *stopFlag is not 0. It may be run by an action that it runs.
    void Run(const std::atomic<std::uint8_t>* stopFlag = nullptr);
    void Quit() { quit_ = 1; }

    ActionTable& Actions() { return actions_; }
    ActionQueue& Queue() { return queue_; }
    ScriptPlayer& Player() { return *player_; }
    void SetWindowManager(WindowManager* manager);   // null: none

    // Scripts that stay alive under a name, in the order of registration.
    ScriptInstance* FindScript(std::string_view name) const;             // null if there is none
    const std::string* NameOfScript(const ScriptInstance& instance) const;   // null if it has none
    void RegisterScript(const std::string& name, ScriptRef<VTScript> script);
    // Deletes scripts that lost their name, as soon as they do not run and nobody else holds their object.
    void DropAbandoned();
    void Forget(ScriptInstance* instance) { std::erase(abandoned_, instance); }

    // Dictionaries that all scripts share by name. Null if the name is there, or is not.
    VTDictionary* CreateDictionary(const std::string& name);
    VTDictionary* GetDictionary(const std::string& name) const;

private:
    struct NamedScript {
        ScriptRef<VTScript> script;
        std::string name;
    };

    ScriptingOptions options_;
    std::thread::id mainThread_ = std::this_thread::get_id();
    std::atomic<std::uint8_t> quit_{0};
    std::vector<NamedScript> scripts_;
    std::vector<ScriptInstance*> abandoned_;
    ActionTable actions_;
    std::map<std::string, ScriptRef<VTDictionary>> dictionaries_;
    ActionQueue queue_;
    WindowManager noWindows_;
    WindowManager* windows_ = &noWindows_;
    std::unique_ptr<ScriptPlayer> player_;
    std::unique_ptr<OutputSink> sink_;
};

// How a script file went.
struct ScriptResult {
    bool done = false;                               // the file could be loaded, and its function, if there, ran to its end
    bool hadFunction = false;
    std::string topLevelError;                       // of the file's top level, which does not count as a failure
};

// Runs the file and then calls its function with the argument, which may be null. The state is gone afterwards unless
// the script has registered itself. L is only used for log lines; it may be null.
ScriptResult RunScriptFile(lua_State* L, const std::string& fileName, const std::string& functionName,
                           ScriptObject* firstArgument, bool warnIfMissing);
bool ExecuteScriptFile(lua_State* L, const std::string& fileName, const std::string& functionName,
                       ScriptObject* firstArgument, bool warnIfMissing);

}  // namespace vonta
