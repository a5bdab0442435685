// What the stages after the mix loop cost, in frames a second; divide by the voices for one voice's share.
#include <benchmark/benchmark.h>

#include "engine/mix/Stages.h"
#include "tests/support/SoundRig.h"

namespace vonta {
namespace {

constexpr int kFrames = 882;                      // a tick at 125 BPM and 44100 Hz

void CountFrames(benchmark::State& state) {
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * kFrames);
}

void FillGroups(test::SoundRig& rig, int voices, int instruments) {
    for (int i = 0; i < voices; ++i) {
        Channel& channel = rig.Track(i, 100, 100);
        channel.groupOutput = 1;
        channel.lastInstrument = static_cast<std::uint8_t>(i % instruments);
    }
}

// Groups, output and clip: what every voice of a plain song passes through. Arguments: voices, instruments.
void BM_GroupsToMaster(benchmark::State& state) {
    const int voices = static_cast<int>(state.range(0)), instruments = static_cast<int>(state.range(1));
    test::SoundRig rig(instruments);
    FillGroups(rig, voices, instruments);
    rig.mixer->BeginBlock();
    Segment segment(*rig.mixer, *rig.song, 0, kFrames);
    MixVoices(segment);
    for (auto _ : state) {
        rig.mixer->BeginBlock();
        segment.outputsWritten = 0;
        MixGroups(segment);
        rig.mixer->FinishBlock(kFrames, 0);
    }
    CountFrames(state);
}
BENCHMARK(BM_GroupsToMaster)->ArgNames({"voices", "instruments"})->Args({1, 1})->Args({8, 8})->Args({16, 4})->Args({64, 16});

// All stages with nothing to do: what silence costs.
void BM_SilentSong(benchmark::State& state) {
    test::SoundRig rig;
    for (auto _ : state) {
        rig.Block(kFrames);
        rig.mixer->FinishBlock(kFrames, 0);
    }
    CountFrames(state);
}
BENCHMARK(BM_SilentSong);

// All stages, the mix loop too, with four effects fed by every voice and one bus.
void BM_FullRouting(benchmark::State& state) {
    const int voices = static_cast<int>(state.range(0));
    test::SoundRig rig(8);
    FillGroups(rig, voices, 8);
    for (auto& channel : rig.mixer->channels) {
        channel->sendMask = 0b1111;
        channel->busMask = 1;
        channel->sends.fill(0.5f);
    }
    rig.song->buses[0].active = 1;
    for (int slot = 0; slot < 4; ++slot) rig.Effect(slot).on = 1;
    for (auto _ : state) {
        rig.Block(kFrames);
        rig.mixer->FinishBlock(kFrames, 0);
        for (int slot = 0; slot < 4; ++slot)
            static_cast<test::TestEffect&>(*rig.mixer->effects[slot]).silent.clear();
    }
    CountFrames(state);
}
BENCHMARK(BM_FullRouting)->ArgName("voices")->Arg(16);

}  // namespace
}  // namespace vonta
