// One call of a method or a constructor, with its arguments checked as its row says.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "script/binding/LuaVM.h"
#include "script/binding/MethodRow.h"
#include "script/binding/ScriptClass.h"

namespace vonta {

class ScriptCall {
public:
    // Arguments begin at `first` of the stack.
    ScriptCall(lua_State* state, LuaVM& vm, const ScriptClass& scriptClass, const MethodRow& row, ScriptObject* self,
               int first);

    // Checks types, then ranges, and does the call: how many results are on the stack.
    int Perform();

    lua_State* State() const { return state_; }
    LuaVM& Vm() const { return vm_; }
    const ScriptClass& Class() const { return class_; }
    template <class T>
    T& Self() const { return static_cast<T&>(*self_); }

    // The arguments, from 0.
    int Count() const { return count_; }
    bool Has(int number) const { return number < count_; }
    int Index(int number) const { return first_ + number; }             // on the stack
    double Number(int number) const { return At(number).number; }
    int Integer(int number) const;                                       // without its fraction, at the bounds of int
    const char* Text(int number) const { return At(number).text; }
    bool Truth(int number) const { return At(number).number != 0; }
    ScriptObject* Object(int number) const { return At(number).object; } // null for a class without state
    template <class T>
    T& As(int number) const { return static_cast<T&>(*Object(number)); }

    // Results; each tells how many it has pushed.
    int GiveNumber(double value);
    int GiveNumbers(std::initializer_list<double> values);
    int GiveTruth(bool value);
    int GiveText(std::string_view text);
    int GiveObject(ScriptRef<ScriptObject> object);
    int GiveNone();                                  // an object of this class, which has no native state

    // Logs, and gives what the method gives after a failure: nothing as a rule.
    [[gnu::format(printf, 2, 3)]] int Warn(const char* format, ...);

private:
    struct Value {
        double number = 0;
        const char* text = "";
        ScriptObject* object = nullptr;
    };

    const Value& At(int number) const { return values_[static_cast<std::size_t>(number)]; }
    void Read(const Parameter& parameter, int number);
    bool IsInRange(const Parameter& parameter, int number) const;
    int Fail();

    lua_State* state_;
    LuaVM& vm_;
    const ScriptClass& class_;
    const MethodRow& row_;
    ScriptObject* self_;
    int first_, count_;
    std::array<Value, kMaxParameters> values_;
};

// Towards zero, at the bounds of the type; no number is its least.
int WholeNumber(double value);

}  // namespace vonta
