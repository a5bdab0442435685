// How fast song files are read, in bytes of the file per second. The target is 200 MB/s for an Extended Module of
// 10 MB.
#include <benchmark/benchmark.h>

#include "formats/Loaders.h"
#include "tests/support/TempDirectory.h"
#include "tests/support/XmBuilder.h"

namespace vonta {
namespace {

using test::XmBuilder;
using test::XmPatternRecipe;

// 1 MB of patterns, 9 MB of waves.
XmBuilder BigModule(unsigned type) {
    XmBuilder xm;
    xm.channels = 32;
    XmPatternRecipe pattern{64, {}};
    for (unsigned i = 0; i < 64 * 32; ++i) {
        const auto byte = static_cast<std::uint8_t>(i);
        if (i % 2 == 0)
            pattern.cells.insert(pattern.cells.end(), {0x83, static_cast<std::uint8_t>(1 + i % 96), byte});
        else
            pattern.cells.insert(pattern.cells.end(), {25, 1, 0x40, 4, byte});
    }
    xm.patterns.assign(128, pattern);
    xm.instruments.resize(9);
    for (auto& instrument : xm.instruments) {
        instrument.samples.resize(4);
        for (auto& sample : instrument.samples) {
            sample.type = type;
            sample.wave.resize(250000);
            for (std::size_t i = 0; i < sample.wave.size(); ++i) sample.wave[i] = static_cast<std::uint8_t>(i * i);
        }
    }
    return xm;
}

void LoadXM(benchmark::State& state) {
    const TempDirectory dir;
    const auto bytes = BigModule(static_cast<unsigned>(state.range(0))).Build();
    const std::string path = dir.Write("big.xm", {bytes.begin(), bytes.end()});
    for (auto _ : state) {
        LoadReport report;
        bool unknown = false;
        auto song = LoadModule(path, unknown, report);
        if (!song || !report.lines.empty()) state.SkipWithError("the song does not load");
        benchmark::DoNotOptimize(song);
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(bytes.size()) * state.iterations());
}
BENCHMARK(LoadXM)->ArgName("type")->Arg(0)->Arg(16)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace vonta
