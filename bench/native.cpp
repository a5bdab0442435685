// Native songs per second, in memory: bytes of the file for each form of the waves. The compressed form also
// counts the floats it packs, for its time lies there.
#include <cmath>

#include "bench/FileBench.h"

namespace vonta {
namespace {

enum class Wave { EightBit, SixteenBit, Float, Vorbis };

constexpr std::uint32_t kFrames = 160000;
constexpr int kInstruments = 16;

float Shape(Wave wave, double value) {
    if (wave == Wave::EightBit) return static_cast<float>(std::trunc(value / 256) * 256);
    return static_cast<float>(wave == Wave::Float ? value : std::trunc(value));
}

// A tone with some noise, for the encoder to have work.
std::unique_ptr<Song> MakeTones(Wave wave) {
    return MakeSong(kInstruments, [=](std::mt19937& random) {
        auto sample = std::make_unique<Sample>();
        std::uniform_real_distribution<double> noise(-2000, 2000);
        double phase = 0;
        for (float& value : sample->Allocate(kFrames, 2))
            value = Shape(wave, 20000 * std::sin(phase += 0.03) + noise(random));
        return sample;
    });
}

std::vector<std::uint8_t> SaveAs(Song& song, Wave wave) {
    return SaveBytes(song, SaveMode::Module, wave == Wave::Vorbis);
}

void Count(benchmark::State& state, std::size_t bytes) {
    CountBytes(state, bytes);
    state.counters["floats"] =
        benchmark::Counter(2.0 * kFrames * kInstruments, benchmark::Counter::kIsIterationInvariantRate);
}

void SaveNative(benchmark::State& state, Wave wave) {
    const auto song = MakeTones(wave);
    std::size_t bytes = 0;
    for (auto _ : state) bytes = SaveAs(*song, wave).size();
    Count(state, bytes);
}

void LoadNative(benchmark::State& state, Wave wave) {
    const auto bytes = SaveAs(*MakeTones(wave), wave);
    for (auto _ : state) LoadAndDrop(bytes);
    Count(state, bytes.size());
}

BENCHMARK_CAPTURE(LoadNative, EightBit, Wave::EightBit)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(LoadNative, SixteenBit, Wave::SixteenBit)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(LoadNative, Float, Wave::Float)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(LoadNative, Vorbis, Wave::Vorbis)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(SaveNative, EightBit, Wave::EightBit)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(SaveNative, SixteenBit, Wave::SixteenBit)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(SaveNative, Float, Wave::Float)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(SaveNative, Vorbis, Wave::Vorbis)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace vonta
