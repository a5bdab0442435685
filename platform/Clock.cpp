#include "platform/Clock.h"

#include <chrono>

namespace vonta {

std::uint64_t Nanoseconds() {
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return static_cast<std::uint64_t>(std::chrono::duration_cast<std::chrono::nanoseconds>(now).count());
}

std::uint32_t Milliseconds() { return static_cast<std::uint32_t>(Nanoseconds() / 1'000'000); }

}  // namespace vonta
