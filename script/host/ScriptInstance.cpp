#include "script/host/ScriptInstance.h"

#include <algorithm>
#include <array>
#include <lua.hpp>
#include <vector>

#include "script/binding/ScriptObject.h"
#include "script/host/Nesting.h"
#include "script/host/Patterns.h"
#include "script/host/Reporting.h"
#include "script/host/ScriptHost.h"
#include "script/host/Watch.h"

namespace vonta {
namespace {

constexpr std::size_t kReadBytes = 4096;
constexpr char kPrecompiledMark = LUA_SIGNATURE[0];
constexpr const char* kStartUpName = "vttrackerinstance";

std::vector<ScriptInstance*>& Instances() {
    static std::vector<ScriptInstance*> instances;
    return instances;
}

ScriptInstance* g_last = nullptr;                    // whose method was called last: as a rule the next one's too

// Runs `work` so that an error in it ends here; true if there was none. Its message is left on the stack else.
template <class Work>
bool Protected(lua_State* L, Work work) {
    const auto run = [](lua_State* state) {
        (*static_cast<Work*>(lua_touserdata(state, 1)))();
        return 0;
    };
    return lua_cpcall(L, run, &work) == 0;
}

std::string TakeMessage(lua_State* L) {
    const char* const text = lua_tostring(L, -1);
    std::string message = text ? text : "unknown error";
    lua_pop(L, 1);
    return message;
}

struct TextBlock {
    const std::string& text;
    bool read = false;
};

const char* ReadText(lua_State*, void* data, std::size_t* size) {
    TextBlock& block = *static_cast<TextBlock*>(data);
    *size = block.read ? 0 : block.text.size();
    block.read = true;
    return block.text.data();
}

struct FileBlocks {
    ScriptFile& file;
    bool first = true;
    std::array<char, kReadBytes> buffer{};
};

// A chunk that is compiled already is not checked by Lua and could break the process.
const char* ReadFile(lua_State* L, void* data, std::size_t* size) {
    FileBlocks& blocks = *static_cast<FileBlocks*>(data);
    *size = blocks.file.Read(blocks.buffer.data(), 1, blocks.buffer.size());
    if (StopAsked()) luaL_error(L, "interrupted");
    if (blocks.first && *size > 0 && blocks.buffer[0] == kPrecompiledMark)
        luaL_error(L, "a precompiled chunk is not run");
    blocks.first = false;
    return blocks.buffer.data();
}

int NextNumber() {
    static int number = 0;
    return ++number;
}

}  // namespace

// Lua of this instance runs while it lives, and is in no method of ours.
class ScriptInstance::Running {
public:
    explicit Running(ScriptInstance& instance) : instance_(instance) { instance_.Use(); }
    ~Running() { instance_.Release(); }
    Running(const Running&) = delete;
    Running& operator=(const Running&) = delete;

private:
    ScriptInstance& instance_;
    InMethod inLua_{false};
    Nesting nesting_;
};

ScriptInstance::ScriptInstance() : number_(NextNumber()) {}

ScriptInstance::~ScriptInstance() { Destroy(); }

void ScriptInstance::Destroy() {
    if (vm_) vm_->Close();                           // collects what the state holds, by way of the list
    vm_.reset();
    std::erase(Instances(), this);
    if (g_last == this) g_last = nullptr;
    file_.reset();
    path_.clear();
    initialised_ = false;
}

bool ScriptInstance::Init(std::unique_ptr<ScriptFile> file, ScriptHost* host) {
    Destroy();
    vm_ = std::make_unique<LuaVM>();
    Instances().push_back(this);
    file_ = std::move(file);
    lua_State* const L = vm_->State();
    path_ = FileName().substr(0, FileName().rfind('/') + 1);
    const Running running(*this);
    const bool loaded = Protected(L, [&] { OpenLibraries(host); }) && Load(host);
    if (!loaded) ScriptError(L, "%s", TakeMessage(L).c_str());
    initialised_ = true;
    return loaded;
}

// Nothing else than table, string and math: a script has only what the host gives it.
void ScriptInstance::OpenLibraries(ScriptHost* host) {
    lua_State* const L = vm_->State();
    for (const lua_CFunction open : {luaopen_table, luaopen_string, luaopen_math}) {
        lua_pushcfunction(L, open);
        lua_call(L, 0, 0);
    }
    GuardPatterns(*vm_);
    for (const ScriptClass* scriptClass : LibraryClasses()) scriptClass->Register(L);
    if (host) host->RegisterClasses(L);
}

std::string ScriptInstance::StartUpText(ScriptHost* host) const {
    std::string text = "vtScript = VTScript(" + std::to_string(number_) + ")\n";
    for (const ScriptClass* scriptClass : LibraryTexts()) AppendInitText(text, *scriptClass);
    if (host) host->GetInitText(text);
    return text;
}

// Errors of what runs here do not stop the load: a script may still have its functions.
bool ScriptInstance::Load(ScriptHost* host) {
    lua_State* const L = vm_->State();
    const std::string text = StartUpText(host);
    TextBlock block{text};
    if (lua_load(L, ReadText, &block, kStartUpName) != 0) return false;
    lua_pcall(L, 0, LUA_MULTRET, 0);
    lua_settop(L, 0);
    FileBlocks blocks{*file_};
    if (lua_load(L, ReadFile, &blocks, "") != 0) return false;
    WatchState(L);
    if (lua_pcall(L, 0, LUA_MULTRET, 0) != 0) topLevelError_ = TakeMessage(L);
    lua_settop(L, 0);
    return true;
}

bool ScriptInstance::HasFunction(const char* name) {
    lua_State* const L = vm_->State();
    bool found = false;
    const bool looked = Protected(L, [&] {
        lua_getglobal(L, name);
        found = lua_isfunction(L, -1);
    });
    if (!looked) lua_pop(L, 1);
    return found;
}

bool ScriptInstance::Execute(const char* name, ScriptObject* argument1, ScriptObject* argument2) {
    lua_State* const L = vm_->State();
    if (StopAsked()) return false;                   // else whoever calls it again and again would never be asked
    if (Nesting::IsDeep() || !lua_checkstack(L, LUA_MINSTACK)) {
        ScriptError(L, "scripts call each other too deeply");
        return false;
    }
    const Running running(*this);
    const bool done = Protected(L, [&] {
        lua_getglobal(L, name);
        int count = 0;
        for (ScriptObject* argument : {argument1, argument2}) {
            if (!argument) continue;
            argument->AddRef();
            argument->Class().Push(L, argument);
            ++count;
        }
        lua_call(L, count, 0);
    });
    if (!done) ScriptError(L, "%s", TakeMessage(L).c_str());
    return done;
}

ScriptInstance* InstanceOf(lua_State* L) {
    if (g_last && g_last->Vm()->State() == L) return g_last;
    for (ScriptInstance* instance : Instances())
        if (instance->Vm()->State() == L) return g_last = instance;
    return nullptr;
}

ScriptInstance* FindInstance(int number) {
    for (ScriptInstance* instance : Instances())
        if (instance->Number() == number) return instance;
    return nullptr;
}

LuaVM& VmOf(lua_State* L) { return *InstanceOf(L)->Vm(); }

}  // namespace vonta
