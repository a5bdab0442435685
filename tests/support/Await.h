// For what happens on another thread or in another program.
#pragma once

#include <chrono>
#include <functional>
#include <thread>

namespace vonta::test {

// True as soon as `done` is; false if it is not within some seconds, even on a busy machine.
inline bool Await(const std::function<bool()>& done, int seconds = 30) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(seconds);
    while (!done()) {
        if (std::chrono::steady_clock::now() > end) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    return true;
}

}  // namespace vonta::test
