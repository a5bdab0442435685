// A script class: its table of methods, how one is made, and what the start-up text says of it. The class's name is a
// global function that makes an object; its methods are called as object:Method(...).
//
// Every table opens with Help and GetType, which the constructor here puts there. To add a class, write its rows and a
// function that returns the one static ScriptClass, and name it where classes are registered.
#pragma once

#include <atomic>
#include <functional>
#include <string>
#include <vector>

#include "script/binding/LuaVM.h"
#include "script/binding/MethodRow.h"
#include "script/binding/ScriptObject.h"

namespace vonta {

constexpr std::size_t kCommonMethods = 2;            // at the head of each table

struct ScriptClassText {
    const char* about;                               // for docs/scripting.md
    const char* example;                             // runs as it stands
    const char* init = "";                           // of the start-up text; the global that it makes
};

// Called when the first object of a class comes and when the last one has gone, counted over all states.
struct SharedState {
    void (*create)() = nullptr;
    void (*destroy)() = nullptr;
};

class ScriptClass final : public ScriptClassDesc {
public:
    // `constructor` pushes the new object; its name is not looked at.
    ScriptClass(const char* name, const ScriptClassText& text, MethodRow constructor, std::vector<MethodRow> methods,
                SharedState shared = {});

    void Register(lua_State* L) const;
    void Push(lua_State* L, ScriptObject* object) const override;
    bool IsType(const char* name) const override;

    const char* Name() const { return name_; }
    const ScriptClassText& Text() const { return text_; }
    const MethodRow& Constructor() const { return constructor_; }
    const std::vector<MethodRow>& Methods() const { return methods_; }

private:
    static int CallMethod(lua_State* L, std::size_t number);
    static int CallConstructor(lua_State* L);
    static int Collect(lua_State* L);
    template <std::size_t number>
    static int Entry(lua_State* L) { return CallMethod(L, number); }
    template <std::size_t... numbers>
    static LuaFunction EntryOf(std::size_t number, std::index_sequence<numbers...>);

    const char* name_;
    ScriptClassText text_;
    MethodRow constructor_;
    std::vector<MethodRow> methods_;
    SharedState shared_;
    std::vector<LuaEntry> entries_;
    mutable std::atomic<int> live_{0};               // userdata of this class
};

// The object of a userdata of exactly this class, or no return.
ScriptObject* CheckObject(LuaVM& vm, int index, const char* className);
// The object of a userdata of any class.
ScriptObject* CheckAnyObject(LuaVM& vm, int index);
template <class T>
T& CheckObject(LuaVM& vm, const ScriptClass& scriptClass, int index) {
    return static_cast<T&>(*CheckObject(vm, index, scriptClass.Name()));
}

// "name, other [, third]".
std::string ParameterNames(const MethodRow& row);

}  // namespace vonta
