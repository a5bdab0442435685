// Bytes of other trackers' files per second, in memory: loading MOD and XM, saving both.
#include <benchmark/benchmark.h>

#include <random>

#include "formats/Loaders.h"

namespace vonta {
namespace {

enum class Depth { EightBits, SixteenBits };

std::unique_ptr<Instrument> MakeNoise(std::uint32_t frames, Depth depth, std::mt19937& random) {
    auto sample = std::make_unique<Sample>();
    for (float& value : sample->Allocate(frames, 1)) {
        const auto bits = static_cast<std::int16_t>(random());
        value = static_cast<float>(depth == Depth::EightBits ? bits & ~0xFF : bits);
    }
    auto instrument = std::make_unique<Instrument>();
    instrument->AddSample(std::move(sample));
    instrument->MapAllKeys();
    return instrument;
}

// 16 channels; 64 patterns with a note in every second cell; 31 instruments of noise.
std::unique_ptr<Song> MakeSong(std::uint32_t frames, Depth depth) {
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
    for (int i = 0; i < 31; ++i) song->AddInstrument(MakeNoise(frames, depth, random));
    return song;
}

std::vector<std::uint8_t> SaveBytes(Song& song, SaveMode mode) {
    MemoryStream stream;
    LoadReport report;
    SaveOptions options;
    options.report = &report;
    SaveFile(&stream, mode, song, options);
    return stream.Bytes();
}

void CountBytes(benchmark::State& state, std::size_t bytes) {
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * bytes));
}

void BM_Save(benchmark::State& state, SaveMode mode, std::uint32_t frames, Depth depth) {
    const auto song = MakeSong(frames, depth);
    std::size_t bytes = 0;
    for (auto _ : state) bytes = SaveBytes(*song, mode).size();
    CountBytes(state, bytes);
}

void BM_Load(benchmark::State& state, SaveMode mode, std::uint32_t frames, Depth depth) {
    const auto bytes = SaveBytes(*MakeSong(frames, depth), mode);
    for (auto _ : state) {
        MemoryStream stream(bytes);
        LoadReport report;
        bool unknown = false;
        benchmark::DoNotOptimize(LoadModule(stream, unknown, report));
    }
    CountBytes(state, bytes.size());
}

BENCHMARK_CAPTURE(BM_Load, Mod, SaveMode::Mod, 65534, Depth::EightBits)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Save, Mod, SaveMode::Mod, 65534, Depth::EightBits)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Load, Xm10MB, SaveMode::Xm, 160000, Depth::SixteenBits)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Save, Xm10MB, SaveMode::Xm, 160000, Depth::SixteenBits)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Save, Xm10MBEightBits, SaveMode::Xm, 320000, Depth::EightBits)
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace vonta
