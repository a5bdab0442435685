#include "interface/widgets/Formatted.h"

#include <algorithm>
#include <array>
#include <cstdarg>
#include <cstdio>

namespace vonta {

std::string Formatted(const char* format, ...) {
    std::array<char, 512> text{};
    std::va_list arguments;
    va_start(arguments, format);
    const int length = std::vsnprintf(text.data(), text.size(), format, arguments);
    va_end(arguments);
    return {text.data(), static_cast<std::size_t>(std::clamp(length, 0, static_cast<int>(text.size()) - 1))};
}

}  // namespace vonta
