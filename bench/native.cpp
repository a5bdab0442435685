// Native songs per second, in memory: bytes of the file for each form of the waves. The compressed form also
// counts the floats it packs, for its time lies there.
#include <benchmark/benchmark.h>

#include <cmath>
#include <random>

#include "formats/Loaders.h"

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
std::unique_ptr<Instrument> MakeInstrument(Wave wave, std::mt19937& random) {
    auto sample = std::make_unique<Sample>();
    std::uniform_real_distribution<double> noise(-2000, 2000);
    double phase = 0;
    for (float& value : sample->Allocate(kFrames, 2))
        value = Shape(wave, 20000 * std::sin(phase += 0.03) + noise(random));
    auto instrument = std::make_unique<Instrument>();
    instrument->AddSample(std::move(sample));
    instrument->MapAllKeys();
    return instrument;
}

std::unique_ptr<Song> MakeSong(Wave wave) {
    std::mt19937 random;
    auto song = std::make_unique<Song>();
    song->SetNumChannels(16);
    song->SetPatternPosLenght(64);
    for (int i = 0; i < 64; ++i) {
        song->SetPatternPosIndex(i, i);
        auto pattern = std::make_unique<Pattern>();
        for (int row = 0; row < 64; ++row)
            for (int channel = row % 2; channel < 16; channel += 2)
                pattern->Write(row, channel, {static_cast<std::uint8_t>(random() % 96), 1, 64, 4, 0x37});
        song->AddPattern(std::move(pattern));
    }
    for (int i = 0; i < kInstruments; ++i) song->AddInstrument(MakeInstrument(wave, random));
    return song;
}

std::vector<std::uint8_t> SaveBytes(Song& song, Wave wave) {
    SaveOptions options;
    options.compress = wave == Wave::Vorbis;
    MemoryStream stream;
    SaveFile(&stream, SaveMode::Module, song, options);
    return stream.Bytes();
}

void Count(benchmark::State& state, std::size_t bytes) {
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * bytes));
    state.counters["floats"] =
        benchmark::Counter(2.0 * kFrames * kInstruments, benchmark::Counter::kIsIterationInvariantRate);
}

void SaveNative(benchmark::State& state, Wave wave) {
    const auto song = MakeSong(wave);
    std::size_t bytes = 0;
    for (auto _ : state) bytes = SaveBytes(*song, wave).size();
    Count(state, bytes);
}

void LoadNative(benchmark::State& state, Wave wave) {
    const auto bytes = SaveBytes(*MakeSong(wave), wave);
    for (auto _ : state) {
        MemoryStream stream(bytes);
        LoadReport report;
        bool unknown = false;
        benchmark::DoNotOptimize(LoadModule(stream, unknown, report));
    }
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
