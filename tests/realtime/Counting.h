// Counts what the audio side may not do: this program stands in for the C library's allocations and locks, and has a
// process killed at its first system call.
#pragma once

#include <functional>

namespace vonta {

struct Counts { int allocations = 0, locks = 0; };

// Of this thread.
Counts CountDuring(const std::function<void()>& work);

// Runs `prepare` in a process of its own, and then the work that it returns, on the same thread, in which every system
// call but to read the clock is fatal.
void ExpectNoSystemCall(const std::function<std::function<void()>()>& prepare);

}  // namespace vonta
