// Whole songs: how many times faster than real time, what a sounding voice costs, and that a silent channel costs
// nothing.
#include <benchmark/benchmark.h>

#include "tests/support/PlayerRig.h"

namespace {

using namespace vonta;

constexpr double kRate = 44100.0;

// `voices` voices on every one of `channels` channels hold a looped note.
std::unique_ptr<Song> HeldNotes(int channels, int voices, int channelsInSong = kMaxChannels) {
    SongBuilder song;
    song.Channels(channelsInSong).SineInstrument(0, 30000, {VTSAMPLE_LOOP_FORDWARD, 0, 30000});
    Instrument& instrument = *song.Edit().GetInstrument(0);
    for (int layer = 1; layer < voices; ++layer) {
        instrument.AddSample(MakeSample(SineWave(30000), 1, {VTSAMPLE_LOOP_FORDWARD, 0, 30000}));
        instrument.AddKeySample(50, layer, 0, 127);
    }
    for (int track = 0; track < channels; ++track) song.Note(0, track, 50, 1);
    return song.Build();
}

void RenderSong(benchmark::State& state, std::unique_ptr<Song> song, int voices) {
    PlayerRig rig(std::move(song));
    rig.player.SetInterpolation(Interpolation::Cubic);
    rig.ToRow(0);
    rig.player.Render(kRenderFrames);
    std::int64_t frames = 0;
    for (auto _ : state) {
        rig.player.Render(kRenderFrames);
        benchmark::DoNotOptimize(rig.player.GetMixer().finalBuffer[0][0]);
        frames += kRenderFrames;
    }
    state.counters["x_real_time"] = benchmark::Counter(static_cast<double>(frames) / kRate, benchmark::Counter::kIsRate);
    if (voices)
        state.counters["s_per_frame_voice"] = benchmark::Counter(
            static_cast<double>(frames) * voices, benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

void SoundingVoices(benchmark::State& state) {
    const int channels = static_cast<int>(state.range(0)), layers = static_cast<int>(state.range(1));
    RenderSong(state, HeldNotes(channels, layers), channels * layers);
}
BENCHMARK(SoundingVoices)->Args({1, 1})->Args({8, 1})->Args({16, 1})->Args({32, 1})->Args({64, 1})->Args({64, 4});

// The same one voice in songs of 2 and of 64 channels.
void SilentChannels(benchmark::State& state) {
    RenderSong(state, HeldNotes(1, 1, static_cast<int>(state.range(0))), 1);
}
BENCHMARK(SilentChannels)->Arg(2)->Arg(64);

void Nothing(benchmark::State& state) { RenderSong(state, HeldNotes(0, 1), 0); }
BENCHMARK(Nothing);

// The walk through ticks and rows alone, as `info` counts a song.
void SilentWalk(benchmark::State& state) {
    PlayerRig rig(HeldNotes(8, 1));
    std::int64_t frames = 0;
    for (auto _ : state) {
        rig.player.RenderSilently(kRenderFrames);
        frames += kRenderFrames;
    }
    state.counters["x_real_time"] = benchmark::Counter(static_cast<double>(frames) / kRate, benchmark::Counter::kIsRate);
}
BENCHMARK(SilentWalk);

}  // namespace
