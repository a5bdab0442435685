// The filters of a channel on one side, and what a resonant one does on silence: its state decays into denormal
// floats, which cost a hundred cycles each unless they are flushed to zero.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "engine/mix/EqBand.h"
#include "engine/mix/Filter.h"
#include "platform/FlushToZero.h"

namespace vonta {
namespace {

constexpr int kFrames = 882;

void CountFrames(benchmark::State& state) {
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * kFrames);
}

void BM_Filter(benchmark::State& state) {
    const FilterBank bank = MakeFilterBank();
    Filter& filter = *bank[static_cast<std::size_t>(state.range(0))];
    filter.SetCutoff(2000);
    filter.SetResonance(0.5f);
    std::vector<float> sound(2 * kFrames);
    for (auto _ : state) {
        std::fill(sound.begin(), sound.end(), 1000.0f);
        filter.Process(sound.data(), kFrames);
    }
    CountFrames(state);
    state.SetLabel(std::string(filter.GetName(0)));
}
BENCHMARK(BM_Filter)->DenseRange(1, kFilterTypes - 1);

void BM_EqBand(benchmark::State& state) {
    EqBand band;
    band.Set(44100, 2000, 6);
    std::vector<float> sound(2 * kFrames);
    for (auto _ : state) {
        std::fill(sound.begin(), sound.end(), 1000.0f);
        band.ProcessLeft(sound.data(), kFrames);
    }
    CountFrames(state);
}
BENCHMARK(BM_EqBand);

// A band that has heard a sound and then silence for long, with and without the flush.
void BM_BandOnSilence(benchmark::State& state) {
    std::optional<FlushToZero> flush;
    if (state.range(0)) flush.emplace();
    EqBand band;
    band.Set(44100, 40, 20);
    std::vector<float> sound(2 * kFrames, 1000.0f);
    band.ProcessLeft(sound.data(), kFrames);
    for (auto _ : state) {
        std::fill(sound.begin(), sound.end(), 0.0f);
        band.ProcessLeft(sound.data(), kFrames);
    }
    CountFrames(state);
}
BENCHMARK(BM_BandOnSilence)->ArgName("flush")->Arg(0)->Arg(1);

void BM_ResonantFilterOnSilence(benchmark::State& state) {
    std::optional<FlushToZero> flush;
    if (state.range(0)) flush.emplace();
    const FilterBank bank = MakeFilterBank();
    Filter& filter = *bank[2];
    filter.SetCutoff(500);
    filter.SetResonance(0.5f);
    std::vector<float> sound(2 * kFrames, 1000.0f);
    filter.Process(sound.data(), kFrames);
    for (auto _ : state) {
        std::fill(sound.begin(), sound.end(), 0.0f);
        filter.Process(sound.data(), kFrames);
    }
    CountFrames(state);
}
BENCHMARK(BM_ResonantFilterOnSilence)->ArgName("flush")->Arg(0)->Arg(1);

}  // namespace
}  // namespace vonta
