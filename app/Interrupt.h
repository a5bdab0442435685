// Ctrl+C as a question that work asks now and then: it can then tidy up behind itself.
#pragma once

namespace vonta {

// From here on the first Ctrl+C is noted, and a second one ends the process as usual.
void WatchInterrupt();
bool Interrupted();

}  // namespace vonta
