// What a frame of a mixdown costs between the mixer's buffer and the disk's.
#include "audio/WavWriter.h"

#include <benchmark/benchmark.h>

#include <array>

#include "engine/mix/Mixer.h"

namespace vonta {
namespace {

void WriteBlock(benchmark::State& state) {
    StereoBuffer block;
    for (std::size_t i = 0; i < block.size(); ++i) block[i] = static_cast<float>(i * 37 % 70000) - 35000.0f;
    WavWriter writer;
    writer.Open("/dev/null", 44100, static_cast<std::uint32_t>(state.range(0)));
    for (auto _ : state) writer.Write(block.data(), kRenderFrames);
    state.SetItemsProcessed(state.iterations() * kRenderFrames);
}
BENCHMARK(WriteBlock)->ArgName("bits")->Arg(8)->Arg(16)->Arg(32);

}  // namespace
}  // namespace vonta
