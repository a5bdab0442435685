// The one way out for progress lines. By default nobody listens and a line costs a test of one pointer; a sink
// is attached by `vonta --log` and by tests. Never called on the audio thread.
#pragma once

#include <functional>
#include <string_view>

namespace vonta {

// Receives each line as written, line feed included.
using DebugSink = std::function<void(std::string_view)>;

// Attaches a sink for the whole process; an empty one detaches. Call it while no other thread logs.
void SetDebugSink(DebugSink sink);

// printf-style. "* " opens a top-level step, tabs and "- " mark nesting.
[[gnu::format(printf, 1, 2)]] void DebugOutput(const char* format, ...);

}  // namespace vonta
