// The engine's profiler: sections marked by number, shown in percent of one processor over the last full second.
// Sections are opened and closed on the audio thread only; any thread may Read.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <vector>

#include "platform/Clock.h"

namespace vonta {

// Section numbers of the engine. Slot sections add the slot's number.
enum CpuSection : std::uint32_t {
    kCpuUnshown = 0,
    kCpuScaling = 1,      // mix of voices, sum into the buses
    kCpuFilters = 2,      // filters, and the synths' Work
    kCpuPeaks = 3,
    kCpuMixing = 4,       // groups and outputs
    kCpuSend = 5,         // writing to the device
    kCpuPrecalcs = 6,     // callback entry to the start of Render
    kCpuTick = 7,
    kCpuSlotProcess = 8,
    kCpuSlotCopy = 32,
    kCpuSlotMix = 64,
    kCpuClipping = 96,
};
constexpr std::uint32_t kCpuCounters = 100;

class CpuScan {
public:
    explicit CpuScan(std::uint32_t numCounters = kCpuCounters) { Init(numCounters); }

    void Init(std::uint32_t numCounters);        // allocates and clears
    void Begin(std::uint32_t section);
    void End(std::uint32_t section);             // counts only if it is the open one: sections do not nest
    // At the end of each block, at a time in Milliseconds(). Once a second: what was filled is shown, the other is
    // cleared.
    void EndBlock(std::uint32_t now = Milliseconds());
    float Read(std::uint32_t section) const;     // percent; 0 for a number out of range
    float CyclesPerSecond() const { return cyclesPerSecond_; }

private:
    std::array<std::vector<std::uint32_t>, 2> counters_;
    std::atomic<std::uint32_t> current_{0};      // which is being filled
    float cyclesPerSecond_ = 1e9f;               // the counter is the nanosecond clock
    static constexpr std::uint32_t kNone = ~0u;
    std::uint32_t openSection_ = kNone;
    std::uint64_t openStart_ = 0;
    std::uint32_t lastSwap_ = 0;                 // milliseconds
};

// Percent of one processor, as the screen sums the sections up.
struct CpuTotals {
    float precalcs = 0, channels = 0, tick = 0, master = 0, effects = 0;
    float Total() const { return precalcs + channels + tick + master + effects; }
};
CpuTotals ReadTotals(const CpuScan& scan);

// Marks a section for as long as it lives.
class CpuMark {
public:
    CpuMark(CpuScan& scan, std::uint32_t section) : scan_(scan), section_(section) { scan_.Begin(section_); }
    ~CpuMark() { scan_.End(section_); }
    CpuMark(const CpuMark&) = delete;
    CpuMark& operator=(const CpuMark&) = delete;

private:
    CpuScan& scan_;
    std::uint32_t section_;
};

}  // namespace vonta
