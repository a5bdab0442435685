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

}  // namespace
