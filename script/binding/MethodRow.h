// What a method takes, gives and says, as one row of its class's table. Registration, the check of arguments, Help,
// docs/scripting.md and the tests read these rows.
#pragma once

#include <initializer_list>
#include <limits>
#include <optional>
#include <vector>

namespace vonta {

class ScriptCall;

enum class Kind { Number, Text, Truth, Object, AnyObject, Any, Rest };   // Rest: the method reads what is left itself

struct Parameter {
    const char* name;
    Kind kind;
    const char* detail = nullptr;                    // an object's class; what else the reader is to know of the rest
    double least = 0, most = 0;                      // with a message: what the whole part of a number must lie in
    const char* message = nullptr;                   // the warning of one that does not; may show the number
    bool optional = false;
};

constexpr Parameter Number(const char* name) { return {name, Kind::Number}; }
constexpr Parameter Number(const char* name, double least, double most, const char* message) {
    return {name, Kind::Number, nullptr, least, most, message};
}
constexpr Parameter Text(const char* name) { return {name, Kind::Text}; }
constexpr Parameter Truth(const char* name) { return {name, Kind::Truth}; }
constexpr Parameter Object(const char* name, const char* className) { return {name, Kind::Object, className}; }
constexpr Parameter AnyObject(const char* name) { return {name, Kind::AnyObject}; }
constexpr Parameter Any(const char* name, const char* detail) { return {name, Kind::Any, detail}; }
constexpr Parameter Rest(const char* name, const char* detail) { return {name, Kind::Rest, detail}; }
constexpr Parameter Optional(Parameter parameter) {
    parameter.optional = true;
    return parameter;
}

constexpr int kMaxParameters = 4;

struct MethodRow {
    const char* name;
    std::vector<Parameter> parameters;
    const char* result;                              // null: none
    const char* about;                               // a sentence for docs/scripting.md
    int (*call)(ScriptCall& call);                   // how many results it has pushed
    std::vector<const char*> messages = {};          // further warnings
    std::optional<double> failure = {};              // pushed when a range is not kept
    const char* (*refuse)() = nullptr;               // why it cannot be called now, or null; asked before ranges
};

}  // namespace vonta
