// Ctrl+C, and the end of the session, as a question that work asks now and then: it can then tidy up behind itself.
#pragma once

namespace vonta {

enum class InterruptWatch { Once, UntilTheEnd };

// From here on Ctrl+C (or SIGTERM, SIGHUP) is noted: each only once, so that a second one ends the process as usual, or
// as often as it comes.
void WatchInterrupt(InterruptWatch watch = InterruptWatch::Once);
// Likewise for a program that holds unsaved work: every signal by which somebody ends a process, as often as it comes,
// SIGQUIT and SIGXFSZ among them. A file that meets its limit of size, or a reader that has gone, is not the end but a
// failed write.
void WatchEveryEnd();
bool Interrupted();

// As if a signal had come. May be called where a signal handler may.
void InterruptFromWithin();

// Waits until the first interrupt, a WakeInterruptWait, or the milliseconds are over (-1: never). One thread at a time.
void WaitForInterrupt(int milliseconds);
void WakeInterruptWait();

}  // namespace vonta
