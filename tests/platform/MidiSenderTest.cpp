#include "platform/MidiSender.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <mutex>
#include <vector>

namespace vonta {
namespace {

using namespace std::chrono_literals;
using std::chrono::steady_clock;

TEST(MidiSenderThread, HandsOnEveryMessageInOrder) {
    constexpr std::uint32_t kMessages = 20'000;
    std::vector<std::uint32_t> got;
    {
        MidiSender sender([&got](std::uint32_t message) { got.push_back(message); });
        for (std::uint32_t i = 0; i < kMessages; ++i)
            while (!sender.Send(i)) std::this_thread::yield();
    }                                                    // what still waits is handed on
    ASSERT_EQ(got.size(), kMessages);
    for (std::uint32_t i = 0; i < kMessages; ++i) ASSERT_EQ(got[i], i);
}

// Shared with a thread that outlives the test.
struct Gate {
    std::mutex closed;
    std::atomic<int> waiting{0}, passed{0};
    void Pass() {
        ++waiting;
        const std::lock_guard lock(closed);
        ++passed;
    }
};

TEST(MidiSenderThread, APortThatHangsHoldsUpNeitherTheSendsNorTheEnd) {
    const auto gate = std::make_shared<Gate>();
    std::unique_lock hanging(gate->closed);
    const auto before = steady_clock::now();
    {
        MidiSender sender([gate](std::uint32_t) { gate->Pass(); });
        ASSERT_TRUE(sender.Send(0));
        while (gate->waiting == 0) std::this_thread::yield();
        for (std::size_t i = 0; i < MidiSender::kCapacity; ++i) ASSERT_TRUE(sender.Send(1)) << i;
        EXPECT_FALSE(sender.Send(1));
    }
    EXPECT_LT(steady_clock::now() - before, 10s);
    hanging.unlock();                                    // the port comes back: its thread ends by itself
    while (gate.use_count() > 1) std::this_thread::sleep_for(1ms);
    EXPECT_EQ(gate->passed, static_cast<int>(MidiSender::kCapacity) + 1);
}

}  // namespace
}  // namespace vonta
