#include "app/Interrupt.h"

#include <atomic>
#include <csignal>

namespace vonta {
namespace {

std::atomic<bool> g_interrupted{false};
static_assert(std::atomic<bool>::is_always_lock_free);   // else a signal handler may not touch it

void Note(int) { g_interrupted = true; }

}  // namespace

void WatchInterrupt(InterruptWatch watch) {
    struct sigaction action {};
    action.sa_handler = Note;
    action.sa_flags = watch == InterruptWatch::Once ? static_cast<int>(SA_RESETHAND) : SA_RESTART;
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) sigaction(signal, &action, nullptr);
}

bool Interrupted() { return g_interrupted; }

}  // namespace vonta
