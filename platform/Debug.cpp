#include "platform/Debug.h"

#include <cstdarg>
#include <cstdio>
#include <string>
#include <utility>

namespace vonta {
namespace {
DebugSink g_sink;
}

void SetDebugSink(DebugSink sink) { g_sink = std::move(sink); }

void DebugOutput(const char* format, ...) {
    if (!g_sink) return;
    std::va_list arguments, again;
    va_start(arguments, format);
    va_copy(again, arguments);
    const int length = std::vsnprintf(nullptr, 0, format, arguments);
    va_end(arguments);
    if (length >= 0) {
        std::string line(static_cast<std::size_t>(length) + 1, '\0');
        std::vsnprintf(line.data(), line.size(), format, again);
        line.pop_back();
        g_sink(line);
    }
    va_end(again);
}

}  // namespace vonta
