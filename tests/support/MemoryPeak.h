// How much memory the process takes beyond what it had, at its highest.
#pragma once

#include <malloc.h>

#include <cstdint>
#include <fstream>
#include <string>

namespace vonta::test {

class MemoryPeak {
public:
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    static constexpr bool kExact = false;                // the checkers keep shadows and freed blocks
#else
    static constexpr bool kExact = true;
#endif

    MemoryPeak() {
        malloc_trim(0);                                  // what was freed must not hide what is taken
        std::ofstream("/proc/self/clear_refs") << 5;     // the peak starts anew
        start_ = Read("VmRSS:");
    }
    std::int64_t Bytes() const { return Read("VmHWM:") - start_; }

private:
    static std::int64_t Read(const std::string& field) {
        std::ifstream status("/proc/self/status");
        for (std::string word; status >> word;)
            if (word == field) {
                std::int64_t kilobytes = 0;
                status >> kilobytes;
                return kilobytes * 1024;
            }
        return 0;
    }

    std::int64_t start_ = 0;
};

}  // namespace vonta::test
