// A frame of the interface: the busiest screens, painted with the skin that ships while the demo song plays.
#include <benchmark/benchmark.h>

#include "tests/support/BuiltPacks.h"
#include "tests/support/InterfaceRig.h"
#include "tools/DemoSong.h"

namespace {

using namespace vonta;

// Arguments: bits a pixel, visible channels, a screen to show or -1.
void Frame(benchmark::State& state) {
    InterfaceRig rig(ComposeDemoSong(), OpenBuiltPacks(), static_cast<int>(state.range(0)));
    rig.state.SetVisibleChannels(static_cast<int>(state.range(1)));
    if (state.range(2) >= 0) rig.ui.ShowScreen(static_cast<int>(state.range(2)));
    rig.state.Play(0);
    rig.Frame();
    rig.Sound(5000);
    for (int i = 0; i < 5; ++i) rig.Frame();     // all pictures are loaded
    for (auto _ : state) {
        rig.ui.PollInput();
        rig.ui.PollMouse();
        rig.ui.Paint();
    }
}
BENCHMARK(Frame)->ArgNames({"bits", "channels", "screen"})->Unit(benchmark::kMillisecond)
    ->Args({32, 8, -1})->Args({24, 8, -1})->Args({16, 8, -1})->Args({32, 4, -1})->Args({32, 32, -1})
    ->Args({32, 8, kScreenDiskOp})->Args({32, 8, kScreenHelp});

// The sample editor with ten minutes in stereo, from full view to so many notches nearer.
void SampleEditorFrame(benchmark::State& state) {
    constexpr std::uint32_t kFloats = 2 * 10 * 60 * 44100;
    InterfaceRig rig(ComposeDemoSong(), OpenBuiltPacks());
    Sample& sample = *rig.player.GetSong().Find({0, 0});
    const auto values = sample.Allocate(kFloats, 2);
    for (std::size_t i = 0; i < values.size(); ++i) values[i] = static_cast<float>(i * 2654435761u % 60000) - 30000;
    sample.data->loopType = VTSAMPLE_LOOP_FORDWARD;
    sample.data->loopEnd = kFloats;
    rig.ui.ShowScreen(kScreenSampleEditor);
    rig.MouseTo(400, 380);
    rig.input.OnWheel(static_cast<float>(state.range(0)));
    rig.state.Play(0);
    rig.Frame();
    rig.Sound(5000);
    for (int i = 0; i < 5; ++i) rig.Frame();
    for (auto _ : state) {
        rig.ui.PollInput();
        rig.ui.PollMouse();
        rig.ui.Paint();
    }
}
BENCHMARK(SampleEditorFrame)->ArgNames({"notches"})->Unit(benchmark::kMillisecond)->Arg(0)->Arg(10)->Arg(40);

}  // namespace
