// How deep scripts have called scripts: each level takes its part of the process's stack, which Lua does not watch
// from one state to the next.
#pragma once

#include <cstddef>
#include <cstdint>

namespace vonta {

class Nesting {
public:
    Nesting() { if (depth_++ == 0) base_ = Here(); }
    ~Nesting() { --depth_; }
    Nesting(const Nesting&) = delete;
    Nesting& operator=(const Nesting&) = delete;

    // Another level is not to be entered.
    static bool IsDeep() {
        return depth_ >= kMaxDepth || (depth_ > 0 && base_ > Here() && base_ - Here() > kMaxStackBytes);
    }

private:
    static constexpr int kMaxDepth = 100;
    static constexpr std::uintptr_t kMaxStackBytes = std::uintptr_t{3} << 20;   // of the usual 8 MiB

    static std::uintptr_t Here() { return reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0)); }

    static inline int depth_ = 0;
    static inline std::uintptr_t base_ = 0;          // where the outermost began
};

}  // namespace vonta
