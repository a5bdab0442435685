// A short text made as printf does.
#pragma once

#include <string>

namespace vonta {

[[gnu::format(printf, 1, 2)]] std::string Formatted(const char* format, ...);   // cut to 511 bytes

}  // namespace vonta
