#include "engine/CpuScan.h"

#include <gtest/gtest.h>

namespace vonta {
namespace {

void Work() {
    const std::uint64_t until = Nanoseconds() + 2'000'000;
    while (Nanoseconds() < until) {}
}

TEST(CpuScan, ShowsThePastSecondOnceItIsOver) {
    CpuScan scan;
    const std::uint32_t start = Milliseconds();
    scan.Begin(kCpuTick);
    Work();
    scan.End(kCpuTick);
    scan.EndBlock(start + 900);
    EXPECT_EQ(scan.Read(kCpuTick), 0.0f);
    scan.EndBlock(start + 1200);
    const float shown = scan.Read(kCpuTick);
    EXPECT_GE(shown, 0.19f);                       // 2 ms of 1 s
    EXPECT_LT(shown, 50.0f);
    scan.EndBlock(start + 2100);
    EXPECT_EQ(scan.Read(kCpuTick), shown);         // no second has passed since
    scan.EndBlock(start + 2300);
    EXPECT_EQ(scan.Read(kCpuTick), 0.0f);
}

TEST(CpuScan, CountsOnlyTheOpenSection) {
    CpuScan scan(10);
    scan.Begin(3);
    Work();
    scan.End(4);
    scan.Begin(5);
    scan.Begin(6);                                 // 5 is overwritten
    Work();
    scan.End(5);
    scan.End(6);
    scan.End(6);
    scan.Begin(10);
    scan.End(10);
    scan.EndBlock(Milliseconds() + 2000);
    for (std::uint32_t section = 0; section < 12; ++section)
        EXPECT_EQ(scan.Read(section) > 0, section == 6) << section;
}

}  // namespace
}  // namespace vonta
