#include "script/binding/ScriptClass.h"

#include <cstring>
#include <exception>
#include <utility>

#include "script/binding/ScriptCall.h"
#include "script/host/Reporting.h"
#include "script/host/ScriptInstance.h"
#include "script/host/Watch.h"

namespace vonta {
namespace {

constexpr std::size_t kMaxMethods = 48;              // of one class

int Help(ScriptCall& call) {
    for (const MethodRow& row : call.Class().Methods())
        if (std::strcmp(row.name, "GetType") != 0) Print("    %s(%s)", row.name, ParameterNames(row).c_str());
    return 0;
}

int GetType(ScriptCall& call) { return call.GiveText(call.Class().Name()); }

std::vector<MethodRow> WithCommonRows(std::vector<MethodRow> methods) {
    const MethodRow common[] = {
        {"Help", {}, nullptr, "Prints a line for each method of the class: its name and what it takes.", Help},
        {"GetType", {}, "string", "The name of the class.", GetType},
    };
    methods.insert(methods.begin(), std::begin(common), std::end(common));
    return methods;
}

ScriptObject* ObjectIn(void* box) {
    ScriptObject* object;
    std::memcpy(&object, box, sizeof object);
    return object;
}

// What a method throws of its own becomes an error of the script.
int Perform(ScriptCall& call, LuaVM& vm) {
    const InMethod running;
    try {
        return call.Perform();
    } catch (const std::exception& error) {
        vm.RaiseError("%s", error.what());
    }
}

}  // namespace

template <std::size_t... numbers>
LuaFunction ScriptClass::EntryOf(std::size_t number, std::index_sequence<numbers...>) {
    static constexpr LuaFunction kEntries[] = {Entry<numbers>...};
    return kEntries[number];
}

ScriptClass::ScriptClass(const char* name, const ScriptClassText& text, MethodRow constructor,
                         std::vector<MethodRow> methods, SharedState shared)
    : name_(name), text_(text), constructor_(std::move(constructor)), methods_(WithCommonRows(std::move(methods))),
      shared_(shared) {
    for (std::size_t i = 0; i < methods_.size(); ++i)
        entries_.push_back({methods_[i].name, EntryOf(i, std::make_index_sequence<kMaxMethods>())});
    entries_.push_back({nullptr, nullptr});
}

void ScriptClass::Register(lua_State* L) const {
    LuaVM& vm = VmOf(L);
    void* const self = const_cast<ScriptClass*>(this);
    vm.NewTable();
    const int methodTable = vm.GetTop();
    vm.NewMetaTable(name_);
    const int metaTable = vm.GetTop();
    const auto set = [&](const char* key, auto pushValue) {
        vm.PushString(key);
        pushValue();
        vm.SetTable(metaTable);
    };
    // getmetatable shows the method table: the real one stays out of reach.
    set("__metatable", [&] { vm.PushValue(methodTable); });
    set("__gc", [&] {
        vm.PushPointer(self);
        vm.PushCClosure(Collect, 1);
    });
    set("__index", [&] { vm.PushValue(methodTable); });
    vm.SetTop(-2);
    vm.PushPointer(self);
    vm.OpenLib(nullptr, entries_.data(), 1);
    vm.SetTop(-2);
    vm.PushString(name_);
    vm.PushPointer(self);
    vm.PushCClosure(CallConstructor, 1);
    vm.SetTable(vm.GlobalsIndex());
}

void ScriptClass::Push(lua_State* L, ScriptObject* object) const {
    LuaVM& vm = VmOf(L);
    try {
        void* const box = vm.NewUserData(sizeof object);
        std::memcpy(box, &object, sizeof object);
        vm.GetMetaTable(name_);
    } catch (...) {
        if (object) object->Release();
        throw;
    }
    vm.SetMetaTable(-2);
    if (live_++ == 0 && shared_.create) shared_.create();
}

bool ScriptClass::IsType(const char* name) const { return std::strcmp(name, name_) == 0; }

int ScriptClass::Collect(lua_State* L) {
    LuaVM& vm = VmOf(L);
    const auto& self = *static_cast<const ScriptClass*>(vm.ToUserData(vm.UpvalueIndex(1)));
    void* const box = vm.ToUserData(1);
    if (ScriptObject* const object = ObjectIn(box)) object->Release();
    if (--self.live_ == 0 && self.shared_.destroy) self.shared_.destroy();
    return 0;
}

int ScriptClass::CallMethod(lua_State* L, std::size_t number) {
    LuaVM& vm = VmOf(L);
    const auto& self = *static_cast<const ScriptClass*>(vm.ToUserData(vm.UpvalueIndex(1)));
    ScriptObject* const object = CheckObject(vm, 1, self.name_);
    ScriptCall call(L, vm, self, self.methods_[number], object, 2);
    return Perform(call, vm);
}

int ScriptClass::CallConstructor(lua_State* L) {
    LuaVM& vm = VmOf(L);
    const auto& self = *static_cast<const ScriptClass*>(vm.ToUserData(vm.UpvalueIndex(1)));
    ScriptCall call(L, vm, self, self.constructor_, nullptr, 1);
    return Perform(call, vm);
}

ScriptObject* CheckObject(LuaVM& vm, int index, const char* className) {
    vm.CheckType(index, vm.TypeUserData());
    void* const box = vm.CheckUserData(index, className);
    if (!box) vm.TypeError(index, className);
    return ObjectIn(box);
}

// Scripts come by no other userdata than those of the host's classes.
ScriptObject* CheckAnyObject(LuaVM& vm, int index) {
    vm.CheckType(index, vm.TypeUserData());
    return ObjectIn(vm.ToUserData(index));
}

std::string ParameterNames(const MethodRow& row) {
    std::string names;
    int open = 0;
    for (const Parameter& parameter : row.parameters) {
        if (parameter.optional) {
            names += names.empty() ? "[" : " [";
            ++open;
        }
        if (&parameter != row.parameters.data()) names += ", ";
        names += parameter.name;
    }
    return names + std::string(static_cast<std::size_t>(open), ']');
}

}  // namespace vonta
