// How fast samples and banks are read and written, in bytes of the file per second. Warm files, so that the loaders are
// measured and not the disk.
#include <benchmark/benchmark.h>

#include "formats/Loaders.h"
#include "tests/support/Sf2Builder.h"
#include "tests/support/TempDirectory.h"
#include "tests/support/WavBuilder.h"
#include "tests/support/XiBuilder.h"

namespace vonta {
namespace {

constexpr std::size_t kFrames = 4 << 20;

std::vector<int> Noise() {
    std::vector<int> values(kFrames);
    for (std::size_t i = 0; i < values.size(); ++i) values[i] = static_cast<int>(i * i % 65536) - 32768;
    return values;
}

std::string AsText(const std::vector<std::uint8_t>& bytes) { return {bytes.begin(), bytes.end()}; }

template <class Load>
void Measure(benchmark::State& state, const std::string& file, Load load) {
    const TempDirectory directory;
    const std::string path = directory.Write("file", file);
    for (auto _ : state) {
        LoadReport report;
        auto loaded = load(path, report);
        if (!loaded) state.SkipWithError(report.error.c_str());
        benchmark::DoNotOptimize(loaded);
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(file.size()) * state.iterations());
}

const auto kSample = [](const std::string& path, LoadReport& report) { return LoadSample(path, true, report); };
const auto kInstrument = [](const std::string& path, LoadReport& report) { return LoadInstrument(path, report); };

void LoadWav(benchmark::State& state) {
    const bool eightBit = state.range(0) == 8;
    Measure(state, (eightBit ? test::WavBuilder::EightBit(std::vector<std::uint8_t>(2 * kFrames, 7), 2)
                             : test::WavBuilder::SixteenBit(Noise(), 2)).Text(), kSample);
}
BENCHMARK(LoadWav)->ArgName("bits")->Arg(8)->Arg(16)->Unit(benchmark::kMillisecond);

void LoadRaw(benchmark::State& state) { Measure(state, std::string(2 * kFrames, 'x'), kSample); }
BENCHMARK(LoadRaw)->Unit(benchmark::kMillisecond);

void LoadXi(benchmark::State& state) {
    test::XmInstrumentRecipe file;
    file.samples.assign(4, {.wave = std::vector<std::uint8_t>(kFrames / 2, 3), .type = 16});
    Measure(state, AsText(test::BuildXi(file)), kInstrument);
}
BENCHMARK(LoadXi)->Unit(benchmark::kMillisecond);

void LoadSf2(benchmark::State& state) {
    test::Sf2Builder bank = test::Sf2Builder::Small();
    const auto wave = Noise();
    bank.samples.assign(128, {"part", {wave.begin(), wave.begin() + kFrames / 128}});
    Measure(state, bank.Text(), kInstrument);
}
BENCHMARK(LoadSf2)->Unit(benchmark::kMillisecond);

void SaveWav(benchmark::State& state) {
    const TempDirectory directory;
    LoadReport report;
    const auto path = directory.Write("in.wav", test::WavBuilder::SixteenBit(Noise(), 2).Text());
    const auto sample = LoadSample(path, true, report);
    for (auto _ : state)
        if (SaveSample(directory.File("out.wav"), *sample, report) != 0) state.SkipWithError(report.error.c_str());
    state.SetBytesProcessed(static_cast<std::int64_t>(2 * kFrames) * state.iterations());
}
BENCHMARK(SaveWav)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace vonta
