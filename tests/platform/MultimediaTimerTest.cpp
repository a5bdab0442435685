#include "platform/MultimediaTimer.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <thread>
#include <vector>

namespace vonta {
namespace {

using namespace std::chrono_literals;
using std::chrono::steady_clock;

struct Handler : TickHandler {
    std::function<bool()> onTick = [] { return false; };
    std::atomic<int> ticks{0};
    bool OnTick() override {
        const bool finished = onTick();
        ++ticks;
        return finished;
    }
    void AwaitTicks(int count) const {
        while (ticks < count) std::this_thread::sleep_for(100us);
    }
};

TEST(MultimediaTimerOnARealClock, ASlowTickIsNeverReenteredAndThePeriodRunsFromItsEnd) {
    Handler handler;
    std::atomic<int> inside{0}, most{0};
    std::vector<steady_clock::duration> pauses;
    auto lastEnd = steady_clock::now();
    handler.onTick = [&] {
        pauses.push_back(steady_clock::now() - lastEnd);
        most = std::max(most.load(), ++inside);
        std::this_thread::sleep_for(8ms);
        --inside;
        lastEnd = steady_clock::now();
        return false;
    };
    MultimediaTimer timer;
    timer.Init(&handler, 5);
    timer.Start(5);
    handler.AwaitTicks(6);
    timer.Stop();
    EXPECT_EQ(most, 1);
    for (const auto pause : pauses) EXPECT_GE(pause, 5ms);
}

TEST(MultimediaTimerOnARealClock, StopWaitsForARunningTick) {
    Handler handler;
    std::atomic<bool> entered{false}, left{false};
    handler.onTick = [&] {
        entered = true;
        std::this_thread::sleep_for(30ms);
        left = true;
        return false;
    };
    MultimediaTimer timer;
    timer.Init(&handler, 1);
    timer.Start(1);
    while (!entered) std::this_thread::yield();
    timer.Stop();
    EXPECT_TRUE(left);
    EXPECT_FALSE(timer.IsRunning());
    EXPECT_EQ(handler.ticks, 1);
}

TEST(MultimediaTimerOnARealClock, StopDoesNotSitOutALongPeriod) {
    Handler handler;
    MultimediaTimer timer;
    timer.Init(&handler, 60'000);
    timer.Start(60'000);
    const auto before = steady_clock::now();
    timer.Stop();
    EXPECT_LT(steady_clock::now() - before, 10s);
    EXPECT_EQ(handler.ticks, 0);
}

TEST(MultimediaTimerOnARealClock, StartsAThousandTimes) {
    Handler handler;
    MultimediaTimer timer;
    timer.Init(&handler, 1);
    for (int i = 0; i < 1000; ++i) {
        timer.Start(1);
        EXPECT_TRUE(timer.IsRunning());
        if (i % 100 == 0) handler.AwaitTicks(handler.ticks + 1);
        timer.Stop();
        EXPECT_FALSE(timer.IsRunning());
    }
}

TEST(MultimediaTimerOnARealClock, AHandlerThatEndsTheTimerCanBeStartedAgain) {
    Handler handler;
    handler.onTick = [] { return true; };
    MultimediaTimer timer;
    timer.Init(&handler, 1);
    for (int run = 1; run <= 20; ++run) {
        timer.Start(1);
        while (timer.IsRunning()) std::this_thread::yield();
        EXPECT_EQ(handler.ticks, run);
    }
}

TEST(MultimediaTimerOnARealClock, StartWithinATickAndStopWhenIdleChangeNothing) {
    Handler handler;
    MultimediaTimer timer;
    timer.Stop();
    handler.onTick = [&] {
        timer.Start(1);
        return false;
    };
    timer.Init(&handler, 1);
    timer.Start(1);
    handler.AwaitTicks(3);
    timer.Stop();
    timer.Stop();
    EXPECT_FALSE(timer.IsRunning());
}

}  // namespace
}  // namespace vonta
