#include "platform/FaultGuard.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/mman.h>
#include <xmmintrin.h>

#include <cstdlib>
#include <functional>
#include <thread>

#include "platform/FlushToZero.h"
#include "platform/MultimediaTimer.h"

namespace vonta {
namespace {

// Machine instructions, so that no checker of the build sees the fault before the machine does.
void TouchNothing(void*) { asm volatile("movl $0, (%0)" : : "r"(nullptr) : "memory"); }
void DivideByZero(void*) { asm volatile("xorl %%ecx, %%ecx\n\tmovl $1, %%eax\n\tcltd\n\tidivl %%ecx" : : : "eax", "ecx", "edx", "cc"); }
void BadInstruction(void*) { asm volatile("ud2"); }

void TouchBeyondFile(void*) {
    static std::FILE* empty = std::tmpfile();
    void* page = mmap(nullptr, 4096, PROT_READ | PROT_WRITE, MAP_SHARED, fileno(empty), 0);
    asm volatile("movl $0, (%0)" : : "r"(page) : "memory");
}

// Not instrumented, so that the fault is never in the middle of a checker's own bookkeeping.
[[gnu::noinline, gnu::no_sanitize("thread", "address", "undefined")]] int Recurse(int depth) {
    volatile char room[64 * 1024];
    room[0] = static_cast<char>(depth);
    return depth < 0 ? 0 : Recurse(depth + 1) + room[0];
}
void OverflowStack(void*) { Recurse(0); }

void Abort(void*) { std::abort(); }
void Nothing(void*) {}

bool Guarded(std::function<void()> work) {
    return RunGuarded([](void* argument) { (*static_cast<std::function<void()>*>(argument))(); }, &work);
}

struct Fault {
    const char* name;
    void (*cause)(void*);
};
constexpr Fault kFaults[] = {{"BadAccess", TouchNothing}, {"Division", DivideByZero},
                             {"BadInstruction", BadInstruction}, {"BusError", TouchBeyondFile},
                             {"StackOverflow", OverflowStack}, {"Abort", Abort}};

class FaultGuard : public testing::TestWithParam<Fault> {};

INSTANTIATE_TEST_SUITE_P(All, FaultGuard, testing::ValuesIn(kFaults),
                         [](const auto& test) { return std::string(test.param.name); });

TEST_P(FaultGuard, CatchesTheFaultAgainAndAgain) {
    for (int i = 0; i < 5; ++i) EXPECT_FALSE(RunGuarded(GetParam().cause, nullptr));
    EXPECT_TRUE(RunGuarded(Nothing, nullptr));
}

TEST_P(FaultGuard, EachThreadHasItsOwn) {
    bool cutShort[2] = {};
    {
        std::jthread one([&] { for (int i = 0; i < 20; ++i) cutShort[0] = !RunGuarded(GetParam().cause, nullptr); });
        std::jthread two([&] { for (int i = 0; i < 20; ++i) cutShort[1] = !RunGuarded(GetParam().cause, nullptr); });
    }
    EXPECT_TRUE(cutShort[0]);
    EXPECT_TRUE(cutShort[1]);
}

TEST_P(FaultGuard, TheInnerGuardCatchesAndTheOuterGoesOn) {
    bool wentOn = false;
    const bool outer = Guarded([&] {
        EXPECT_FALSE(RunGuarded(GetParam().cause, nullptr));
        wentOn = true;
    });
    EXPECT_TRUE(outer);
    EXPECT_TRUE(wentOn);
    EXPECT_FALSE(Guarded([&] {
        EXPECT_TRUE(RunGuarded(Nothing, nullptr));
        GetParam().cause(nullptr);
    }));
}

TEST_P(FaultGuard, CatchesOnATimersThread) {
    struct Faulty : TickHandler {
        void (*cause)(void*) = nullptr;
        int ticks = 0, caught = 0;
        bool OnTick() override {
            caught += !RunGuarded(cause, nullptr);
            return ++ticks == 3;
        }
    } handler;
    handler.cause = GetParam().cause;
    MultimediaTimer timer;
    timer.Init(&handler, 1);
    timer.Start(1);
    while (timer.IsRunning()) std::this_thread::yield();
    timer.Stop();
    EXPECT_EQ(handler.caught, 3);
}

TEST(FaultGuardState, AFaultLeavesTheRenderersFloatModeAndTheSignalMask) {
    const FlushToZero denormalsOff;
    sigset_t blocked, after;
    sigemptyset(&blocked);
    sigaddset(&blocked, SIGUSR1);
    pthread_sigmask(SIG_BLOCK, &blocked, nullptr);
    const unsigned mode = _mm_getcsr();
    EXPECT_FALSE(RunGuarded(TouchNothing, nullptr));
    EXPECT_EQ(_mm_getcsr() & (_MM_FLUSH_ZERO_MASK | _MM_DENORMALS_ZERO_MASK),
              mode & (_MM_FLUSH_ZERO_MASK | _MM_DENORMALS_ZERO_MASK));
    pthread_sigmask(SIG_UNBLOCK, &blocked, &after);
    EXPECT_TRUE(sigismember(&after, SIGUSR1));
    EXPECT_FALSE(sigismember(&after, SIGSEGV));
}

TEST(FaultGuardState, AnExceptionPassesAndTheGuardIsGone) {
    EXPECT_TRUE(Guarded([] {
        EXPECT_THROW(Guarded([] { throw 1; }), int);
        EXPECT_FALSE(RunGuarded(TouchNothing, nullptr));
    }));
}

TEST(FaultGuardDeathTest, OutsideAGuardTheFormerHandlerGetsTheFault) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    struct Former {
        static void Handle(int) { _exit(42); }
    };
    EXPECT_EXIT(
        {
            signal(SIGFPE, Former::Handle);
            InstallFaultHandlers();
            DivideByZero(nullptr);
        },
        testing::ExitedWithCode(42), "");
    EXPECT_DEATH(
        {
            signal(SIGSEGV, SIG_DFL);
            InstallFaultHandlers();
            TouchNothing(nullptr);
        },
        "");
}

}  // namespace
}  // namespace vonta
