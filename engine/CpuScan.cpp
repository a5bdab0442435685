#include "engine/CpuScan.h"

#include <algorithm>
#include <limits>

#include "platform/Shared.h"

namespace vonta {

void CpuScan::Init(std::uint32_t numCounters) {
    for (auto& counters : counters_) counters.assign(numCounters, 0);
    current_ = 0;
    openSection_ = kNone;
    lastSwap_ = Milliseconds();
}

void CpuScan::Begin(std::uint32_t section) {
    openSection_ = section;
    openStart_ = Nanoseconds();
}

void CpuScan::End(std::uint32_t section) {
    auto& counters = counters_[current_.load(std::memory_order_relaxed)];
    if (section != openSection_ || section >= counters.size()) return;
    const std::uint64_t sum = Load(counters[section]) + (Nanoseconds() - openStart_);
    constexpr std::uint64_t kMost = std::numeric_limits<std::uint32_t>::max();
    Store(counters[section], static_cast<std::uint32_t>(std::min(sum, kMost)));
    openSection_ = kNone;
}

void CpuScan::EndBlock(std::uint32_t now) {
    if (now - lastSwap_ < 1000) return;
    lastSwap_ = now;
    const std::uint32_t shown = 1 - current_.load(std::memory_order_relaxed);
    current_.store(shown, std::memory_order_relaxed);
    for (auto& counter : counters_[shown]) Store(counter, 0);
}

float CpuScan::Read(std::uint32_t section) const {
    const auto& counters = counters_[1 - current_.load(std::memory_order_relaxed)];
    if (section >= counters.size()) return 0.0f;
    return static_cast<float>(Load(counters[section])) / cyclesPerSecond_ * 100.0f;
}

CpuTotals ReadTotals(const CpuScan& scan) {
    constexpr std::uint32_t kSlots = 8;
    CpuTotals totals;
    totals.precalcs = scan.Read(kCpuPrecalcs);
    totals.channels = scan.Read(kCpuScaling) + scan.Read(kCpuPeaks) + scan.Read(kCpuFilters) + scan.Read(kCpuMixing);
    totals.tick = scan.Read(kCpuTick);
    totals.master = scan.Read(kCpuSend) + scan.Read(kCpuClipping);
    for (std::uint32_t slot = 0; slot < kSlots; ++slot)
        totals.effects += scan.Read(kCpuSlotCopy + slot) + scan.Read(kCpuSlotProcess + slot) + scan.Read(kCpuSlotMix + slot);
    return totals;
}

}  // namespace vonta
