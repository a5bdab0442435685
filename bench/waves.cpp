// The tools of the sample editor on ten minutes in stereo, and how long the sound is held for an exchange of 100 MB.
#include <benchmark/benchmark.h>

#include <algorithm>

#include "edit/waves/ResampleWork.h"
#include "edit/waves/WaveEdit.h"
#include "platform/Clock.h"
#include "tests/support/SongBuilder.h"

namespace {

using namespace vonta;

constexpr std::uint32_t kTenMinutes = 2 * 10 * 60 * 44100;   // floats

struct LongSample {
    explicit LongSample(std::uint32_t floats) {
        player.SetSong(SongBuilder().SampleInstrument(0, {0, 0}, 2).Build());
        Sample& sample = *player.GetSong().Find({0, 0});
        const auto values = sample.Allocate(floats, 2);
        for (std::size_t i = 0; i < values.size(); ++i) values[i] = static_cast<float>(i * 2654435761u % 60000) - 29000;
        at.instrument = at.sample = 0;
    }
    SndPlayer player;
    Editor editor{player};
    Place at;
};

void Tool(benchmark::State& state) {
    LongSample rig(kTenMinutes);
    const auto tool = static_cast<WaveTool>(state.range(0));
    state.SetLabel(NameOf(tool));
    for (auto _ : state) UseWaveTool(rig.editor, rig.at, tool);
}
BENCHMARK(Tool)->DenseRange(0, kWaveTools - 1)->Unit(benchmark::kMillisecond)->Iterations(3);

void CutTheMiddle(benchmark::State& state) {
    LongSample rig(kTenMinutes);
    SampleClip clip;
    for (auto _ : state) {
        SelectRange(rig.editor, rig.at, kTenMinutes / 3, kTenMinutes / 2);
        CutRange(rig.editor, rig.at, clip);
        SelectRange(rig.editor, rig.at, 1000, 1000);
        PasteRange(rig.editor, rig.at, clip);
    }
}
BENCHMARK(CutTheMiddle)->Unit(benchmark::kMillisecond)->Iterations(3);

void ToOtherRate(benchmark::State& state) {
    LongSample rig(kTenMinutes);
    for (auto _ : state) {
        auto work = ResampleWork::Begin(rig.player.GetSong(), rig.at, static_cast<int>(state.range(0)));
        while (work->Work(rig.editor, 25) == ResampleWork::State::Working) {}
        rig.editor.Steps().Undo();
    }
}
BENCHMARK(ToOtherRate)->Arg(6000)->Arg(16000)->Unit(benchmark::kMillisecond)->Iterations(1);

// Nothing else of an edit keeps the block cycle waiting.
void ExchangeOf100MB(benchmark::State& state) {
    LongSample rig(25000000);
    std::uint64_t longest = 0;
    for (auto _ : state) {
        auto wave = std::make_unique<Sample>();
        wave->Allocate(25000000, 2);
        const Editor::StepScope step(rig.editor, "exchange", rig.at);
        const std::uint64_t before = Nanoseconds();
        rig.editor.SetWave(0, 0, std::move(wave));
        longest = std::max(longest, Nanoseconds() - before);
    }
    state.counters["held_us"] = static_cast<double>(longest) / 1000;
}
BENCHMARK(ExchangeOf100MB)->Unit(benchmark::kMillisecond)->Iterations(20);

}  // namespace
