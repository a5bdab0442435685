#include "engine/sequence/PositionNotice.h"

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

namespace vonta {
namespace {

using namespace std::chrono_literals;
constexpr int kLong = 60'000;   // ms; a test that waits this long has failed

TEST(PositionNotice, TellsWhatChangedSinceTheLastTake) {
    PositionNotice notice;
    notice.Report({});
    EXPECT_FALSE(notice.Wait(0));
    notice.Report({125, 0, 0});
    EXPECT_TRUE(notice.Wait(0));
    EXPECT_EQ(notice.TakeFlags(), PositionNotice::kBpmChanged);
    notice.Report({125, 0, 1});
    notice.Report({130, 0, 1});
    EXPECT_TRUE(notice.Wait(0));
    EXPECT_TRUE(notice.Wait(0)) << "until they are taken";
    EXPECT_EQ(notice.TakeFlags(), PositionNotice::kBpmChanged | PositionNotice::kPositionChanged);
    EXPECT_FALSE(notice.Wait(0)) << "a signal left over is no flag";
}

TEST(PositionNotice, NoReportOfAnotherThreadIsSleptThrough) {
    PositionNotice notice;
    constexpr std::int32_t kRows = 20'000;
    std::jthread audio([&] {
        for (std::int32_t row = 1; row <= kRows; ++row) {
            notice.Report({0, 0, row});
            if (row % 500 == 0) std::this_thread::sleep_for(1ms);
        }
        std::this_thread::sleep_for(20ms);
        notice.Report({1, 0, kRows});                // the last of all: must be heard
    });
    std::uint8_t seen = 0;
    while (!(seen & PositionNotice::kBpmChanged)) {
        ASSERT_TRUE(notice.Wait(kLong));
        seen = notice.TakeFlags();
    }
}

TEST(PositionNotice, CloseWakesTheReaderForGood) {
    PositionNotice notice;
    std::jthread closer([&] {
        std::this_thread::sleep_for(10ms);
        notice.Close();
        notice.Close();
    });
    EXPECT_FALSE(notice.Wait(kLong));
    EXPECT_FALSE(notice.Wait(kLong));
}

}  // namespace
}  // namespace vonta
