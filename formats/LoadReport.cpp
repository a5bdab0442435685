#include <algorithm>
#include <cstdarg>
#include <cstdio>

#include "formats/Loaders.h"

namespace vonta {
namespace {

// One line of the report: names from files come here, so whatever could break the line reads as a blank.
[[gnu::format(printf, 1, 0)]] std::string FormatLine(const char* format, std::va_list arguments) {
    std::string line(LoadReport::kMaxLineLength + 1, '\0');
    const int length = std::vsnprintf(line.data(), line.size(), format, arguments);
    line.resize(static_cast<std::size_t>(std::clamp(length, 0, static_cast<int>(LoadReport::kMaxLineLength))));
    std::replace_if(line.begin(), line.end(), [](char c) { return static_cast<unsigned char>(c) < ' '; }, ' ');
    return line;
}

}  // namespace

void LoadReport::Add(const char* format, ...) {
    if (lines.size() >= maxLines) return;
    std::va_list arguments;
    va_start(arguments, format);
    lines.push_back(FormatLine(format, arguments));
    va_end(arguments);
}

void LoadReport::Fail(const char* format, ...) {
    if (!error.empty()) return;
    std::va_list arguments;
    va_start(arguments, format);
    error = FormatLine(format, arguments);
    va_end(arguments);
}

}  // namespace vonta
