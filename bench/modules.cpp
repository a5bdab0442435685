// Bytes of other trackers' files per second, in memory: loading MOD and XM, saving both.
#include "bench/FileBench.h"

namespace vonta {
namespace {

enum class Depth { EightBits, SixteenBits };

constexpr int kInstruments = 31;

std::unique_ptr<Song> MakeNoise(std::uint32_t frames, Depth depth) {
    return MakeSong(kInstruments, [=](std::mt19937& random) {
        auto sample = std::make_unique<Sample>();
        for (float& value : sample->Allocate(frames, 1)) {
            const auto bits = static_cast<std::int16_t>(random());
            value = static_cast<float>(depth == Depth::EightBits ? bits & ~0xFF : bits);
        }
        return sample;
    });
}

void BM_Save(benchmark::State& state, SaveMode mode, std::uint32_t frames, Depth depth) {
    const auto song = MakeNoise(frames, depth);
    std::size_t bytes = 0;
    for (auto _ : state) bytes = SaveBytes(*song, mode).size();
    CountBytes(state, bytes);
}

void BM_Load(benchmark::State& state, SaveMode mode, std::uint32_t frames, Depth depth) {
    const auto bytes = SaveBytes(*MakeNoise(frames, depth), mode);
    for (auto _ : state) LoadAndDrop(bytes);
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
