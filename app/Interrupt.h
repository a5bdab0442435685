// Ctrl+C, and the end of the session, as a question that work asks now and then: it can then tidy up behind itself.
#pragma once

namespace vonta {

// From here on the first Ctrl+C (or SIGTERM, SIGHUP) is noted, and a second one ends the process as usual.
void WatchInterrupt();
bool Interrupted();

}  // namespace vonta
