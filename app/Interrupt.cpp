#include "app/Interrupt.h"

#include <semaphore.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <ctime>
#include <initializer_list>

namespace vonta {
namespace {

std::atomic<bool> g_interrupted{false};
static_assert(std::atomic<bool>::is_always_lock_free);   // else a signal handler may not touch it

// A handler may post it, and a thread may wait for it.
struct Wake {
    Wake() { sem_init(&posts, 0, 0); }
    sem_t posts;
};
Wake g_wake;

void Note(int, siginfo_t*, void*) { InterruptFromWithin(); }

// From the system itself it tells of a write that has failed, which says so too.
void NoteForeign(int, siginfo_t* info, void*) {
    if (info->si_pid != getpid()) InterruptFromWithin();
}

void Handle(std::initializer_list<int> signals, void (*handler)(int, siginfo_t*, void*), unsigned flags) {
    struct sigaction action {};
    action.sa_sigaction = handler;
    action.sa_flags = static_cast<int>(flags | SA_SIGINFO);
    for (const int signal : signals) sigaction(signal, &action, nullptr);
}

}  // namespace

void WatchInterrupt(InterruptWatch watch) {
    Handle({SIGINT, SIGTERM, SIGHUP}, Note, watch == InterruptWatch::Once ? SA_RESETHAND : SA_RESTART);
}

void WatchEveryEnd() {
    Handle({SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGXCPU}, Note, SA_RESTART);
    Handle({SIGXFSZ}, NoteForeign, SA_RESTART);
    std::signal(SIGPIPE, SIG_IGN);
}

bool Interrupted() { return g_interrupted; }

void InterruptFromWithin() {
    const int saved = errno;
    g_interrupted = true;
    sem_post(&g_wake.posts);
    errno = saved;
}

void WaitForInterrupt(int milliseconds) {
    if (milliseconds < 0) {
        sem_wait(&g_wake.posts);
        return;
    }
    timespec until{};
    clock_gettime(CLOCK_MONOTONIC, &until);
    until.tv_sec += milliseconds / 1000;
    until.tv_nsec += milliseconds % 1000 * 1'000'000L;
    if (until.tv_nsec >= 1'000'000'000L) {
        ++until.tv_sec;
        until.tv_nsec -= 1'000'000'000L;
    }
    sem_clockwait(&g_wake.posts, CLOCK_MONOTONIC, &until);
}

void WakeInterruptWait() { sem_post(&g_wake.posts); }

}  // namespace vonta
