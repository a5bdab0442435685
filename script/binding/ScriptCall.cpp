#include "script/binding/ScriptCall.h"

#include <cmath>
#include <cstdarg>
#include <limits>
#include <string>

#include "script/host/Reporting.h"

namespace vonta {

int WholeNumber(double value) {
    constexpr double least = std::numeric_limits<int>::min(), most = std::numeric_limits<int>::max();
    if (!(value > least)) return std::numeric_limits<int>::min();
    return value < most ? static_cast<int>(value) : std::numeric_limits<int>::max();
}

ScriptCall::ScriptCall(lua_State* state, LuaVM& vm, const ScriptClass& scriptClass, const MethodRow& row,
                       ScriptObject* self, int first)
    : state_(state), vm_(vm), class_(scriptClass), row_(row), self_(self), first_(first),
      count_(vm.GetTop() - first + 1) {}

int ScriptCall::Integer(int number) const { return WholeNumber(Number(number)); }

void ScriptCall::Read(const Parameter& parameter, int number) {
    Value& value = values_[static_cast<std::size_t>(number)];
    const int index = Index(number);
    switch (parameter.kind) {
        case Kind::Number: value.number = vm_.CheckNumber(index); break;
        case Kind::Text: value.text = vm_.CheckString(index); break;
        case Kind::Truth: value.number = vm_.CheckBoolean(index); break;
        case Kind::Object: value.object = CheckObject(vm_, index, parameter.detail); break;
        case Kind::AnyObject: value.object = CheckAnyObject(vm_, index); break;
        case Kind::Any: case Kind::Rest: break;
    }
}

bool ScriptCall::IsInRange(const Parameter& parameter, int number) const {
    if (!parameter.message || !Has(number)) return true;
    const double value = std::trunc(Number(number));
    return value >= parameter.least && value <= parameter.most;
}

int ScriptCall::Perform() {
    int number = 0;
    for (const Parameter& parameter : row_.parameters) {
        if (!parameter.optional || Has(number)) Read(parameter, number);
        ++number;
    }
    if (const char* const reason = row_.refuse ? row_.refuse() : nullptr) return Warn("%s", reason);
    number = 0;
    for (const Parameter& parameter : row_.parameters) {
        if (!IsInRange(parameter, number)) {
            LogWarning(state_, FormatOne(parameter.message, Integer(number)));
            return Fail();
        }
        ++number;
    }
    return row_.call(*this);
}

int ScriptCall::Fail() { return row_.failure ? GiveNumber(*row_.failure) : 0; }

int ScriptCall::GiveNumber(double value) {
    vm_.PushNumber(value);
    return 1;
}

int ScriptCall::GiveNumbers(std::initializer_list<double> values) {
    for (const double value : values) vm_.PushNumber(value);
    return static_cast<int>(values.size());
}

int ScriptCall::GiveTruth(bool value) {
    vm_.PushBoolean(value);
    return 1;
}

int ScriptCall::GiveText(std::string_view text) {
    vm_.PushText(text);
    return 1;
}

int ScriptCall::GiveObject(ScriptRef<ScriptObject> object) {
    PushObject(state_, std::move(object));
    return 1;
}

int ScriptCall::GiveNone() {
    class_.Push(state_, nullptr);
    return 1;
}

int ScriptCall::Warn(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    const std::string text = FormatList(format, arguments);
    va_end(arguments);
    LogWarning(state_, text);
    return Fail();
}

}  // namespace vonta
