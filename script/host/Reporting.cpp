#include "script/host/Reporting.h"

#include <atomic>
#include <cstdio>
#include <cstring>
#include <lua.hpp>

#include "script/host/ScriptInstance.h"

namespace vonta {
namespace {

constexpr const char* kErrorForm = "ERROR: %s:%s";
constexpr const char* kWarningForm = "WARNING: %s:[%s %s]:%i: %s";
constexpr const char* kPlainWarningForm = "WARNING: %s";

std::atomic<OutputSink*> g_sink{nullptr};

const char* OrNothing(const char* text) { return text ? text : ""; }

const char* FileOf(lua_State* L) {
    const ScriptInstance* const instance = L ? InstanceOf(L) : nullptr;
    return instance ? instance->FileName().c_str() : "";
}

}  // namespace

void SetOutputSink(OutputSink* sink) { g_sink = sink; }

std::string FormatList(const char* format, std::va_list arguments) {
    std::va_list counted;
    va_copy(counted, arguments);
    const int length = std::vsnprintf(nullptr, 0, format, counted);
    va_end(counted);
    if (length <= 0) return {};
    std::string text(static_cast<std::size_t>(length), '\0');
    std::vsnprintf(text.data(), text.size() + 1, format, arguments);
    return text;
}

std::string FormatOne(const char* format, int value) {
    std::string text = format;
    if (const std::size_t place = text.find("%i"); place != std::string::npos)
        text.replace(place, std::strlen("%i"), std::to_string(value));
    return text;
}

void Print(const char* format, ...) {
    OutputSink* const sink = g_sink;
    if (!sink) return;
    std::va_list arguments;
    va_start(arguments, format);
    const std::string text = FormatList(format, arguments);
    va_end(arguments);
    sink->Print(text.c_str());
}

void ScriptError(lua_State* L, const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    const std::string message = FormatList(format, arguments);
    va_end(arguments);
    Print(kErrorForm, FileOf(L), message.c_str());
}

void ScriptWarning(lua_State* L, const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    const std::string message = FormatList(format, arguments);
    va_end(arguments);
    LogWarning(L, message);
}

// Level 0 is the method, level 1 the function of the script that called it.
void LogWarning(lua_State* L, const std::string& message) {
    lua_Debug caller, method;
    if (!L || !lua_getstack(L, 1, &caller) || !lua_getstack(L, 0, &method)) {
        Print(kPlainWarningForm, message.c_str());
        return;
    }
    lua_getinfo(L, "nSl", &caller);
    Print(kWarningForm, FileOf(L), OrNothing(caller.namewhat), OrNothing(caller.name), caller.currentline,
          message.c_str());
}

}  // namespace vonta
