// Ctrl+C, and the end of the session, as a question that work asks now and then: it can then tidy up behind itself.
#pragma once

namespace vonta {

enum class InterruptWatch { Once, UntilTheEnd };

// From here on Ctrl+C (or SIGTERM, SIGHUP) is noted: each only once, so that a second one ends the process as usual, or
// as often as it comes.
void WatchInterrupt(InterruptWatch watch = InterruptWatch::Once);
bool Interrupted();

}  // namespace vonta
