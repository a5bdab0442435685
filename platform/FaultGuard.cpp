// Synchronous signals, a jump back, and a stack of its own for each thread: an overflow leaves no room on the other.
#include "platform/FaultGuard.h"

#include <setjmp.h>
#include <signal.h>
#include <xmmintrin.h>

#include <array>
#include <atomic>
#include <cstddef>

namespace vonta {
namespace {

constexpr std::array kFaults{SIGSEGV, SIGBUS, SIGILL, SIGFPE, SIGABRT};
constexpr std::size_t kSignalStackBytes = 16 * 1024;   // the handler only jumps; not so much that small threads lack room

std::array<struct sigaction, kFaults.size()> former;
std::atomic<void (*)()> lastResort{nullptr};

// One RunGuarded in progress. The innermost of a thread stands at the head of its list.
struct Guard {
    Guard();
    ~Guard();
    Guard(const Guard&) = delete;
    Guard& operator=(const Guard&) = delete;

    Guard* outer;
    unsigned floatMode = _mm_getcsr();               // a signal resets it; the renderer's must survive
    sigjmp_buf back;
};

// Atomic for the signal handler of the same thread, as it is the only kind that a handler may read.
thread_local std::atomic<Guard*> innermost{nullptr};

Guard::Guard() : outer(innermost.load(std::memory_order_relaxed)) {}
Guard::~Guard() { innermost.store(outer, std::memory_order_relaxed); }

// Hands the fault to whoever had the signal before. Where nobody had, the default action takes it: a real fault
// meets it when its instruction runs again, a signal that was sent has to be sent again.
void PassOn(int signal, siginfo_t* info, void* context) {
    if (void (*hook)() = lastResort) hook();
    std::size_t index = 0;
    while (kFaults[index] != signal) ++index;
    const struct sigaction& next = former[index];
    if (next.sa_flags & SA_SIGINFO) {
        next.sa_sigaction(signal, info, context);
    } else if (next.sa_handler != SIG_DFL && next.sa_handler != SIG_IGN) {
        next.sa_handler(signal);
    } else {
        sigaction(signal, &next, nullptr);
        if (info->si_code <= 0) raise(signal);
    }
}

void OnFault(int signal, siginfo_t* info, void* context) {
    Guard* guard = innermost.load(std::memory_order_relaxed);
    if (!guard) return PassOn(signal, info, context);
    // The jump saves no mask, so that a guard costs no system call: the interrupted code's comes back here.
    pthread_sigmask(SIG_SETMASK, &static_cast<ucontext_t*>(context)->uc_sigmask, nullptr);
    siglongjmp(guard->back, 1);
}

bool InstallHandlers() {
    struct sigaction ours {};
    ours.sa_sigaction = OnFault;
    ours.sa_flags = SA_SIGINFO | SA_ONSTACK | SA_NODEFER;
    sigemptyset(&ours.sa_mask);
    for (std::size_t i = 0; i < kFaults.size(); ++i) sigaction(kFaults[i], &ours, &former[i]);
    return true;
}

// Where a handler runs if the thread's own stack is full. Part of the thread's storage, so that a thread that nobody
// prepared allocates nothing for it, and it is there as long as the thread.
alignas(16) thread_local std::array<std::byte, kSignalStackBytes> signalStack;

// A stack that is there already belongs to a checker, which takes it back itself.
void TakeSignalStack() {
    stack_t present{};
    if (sigaltstack(nullptr, &present) != 0 || !(present.ss_flags & SS_DISABLE)) return;
    stack_t ours{};
    ours.ss_sp = signalStack.data();
    ours.ss_size = signalStack.size();
    sigaltstack(&ours, nullptr);
}

}  // namespace

void InstallFaultHandlers() {
    [[maybe_unused]] static const bool installed = InstallHandlers();
    thread_local bool prepared = false;
    if (prepared) return;
    prepared = true;
    TakeSignalStack();
}

void SetLastResort(void (*hook)()) { lastResort = hook; }

bool RunGuarded(void (*work)(void*), void* argument) {
    InstallFaultHandlers();
    Guard guard;
    const bool faulted = sigsetjmp(guard.back, 0) != 0;
    if (faulted) {
        _mm_setcsr(guard.floatMode);
    } else {
        innermost.store(&guard, std::memory_order_relaxed);
        work(argument);
    }
    return !faulted;
}

}  // namespace vonta
