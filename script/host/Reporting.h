// How scripts and the host tell something: lines, handed to one sink of the process.
#pragma once

#include <cstdarg>
#include <string>

struct lua_State;

namespace vonta {

class OutputSink {
public:
    virtual ~OutputSink() = default;
    virtual void Print(const char* text) = 0;
};

void SetOutputSink(OutputSink* sink);                // null: lines are dropped

[[gnu::format(printf, 1, 2)]] void Print(const char* format, ...);

// "ERROR: file:message", and "WARNING: file:[what name]:line: message" of the script that made the call which runs. A
// state that is null or no script's leaves out what is not known.
[[gnu::format(printf, 2, 3)]] void ScriptError(lua_State* L, const char* format, ...);
[[gnu::format(printf, 2, 3)]] void ScriptWarning(lua_State* L, const char* format, ...);
void LogWarning(lua_State* L, const std::string& message);

std::string FormatList(const char* format, std::va_list arguments);
// Of a format out of a table, which has one %i at most.
std::string FormatOne(const char* format, int value);

}  // namespace vonta
