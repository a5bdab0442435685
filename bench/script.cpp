// What a method call of a script costs, and an action: an item is one of them, the loop around it included. The empty
// loop is for comparison.
#include <benchmark/benchmark.h>

#include "script/host/ScriptInstance.h"
#include "tests/support/ScriptRig.h"

namespace vonta::test {
namespace {

constexpr const char* kScript = R"(
vtApp:RegisterScript("s", vtScript)
vtApp:RegisterAction("act", "s", "Act")
song = VTSong()
pattern = song:GetPattern(0)
dictionary = VTDictionary()
dictionary:Set("n", 1)
function Act() end
function Loop() for i = 1, 1000 do end end
function GetBPM() local song = song for i = 1, 1000 do song:GetBPM() end end
function SetNote() local pattern = pattern for i = 1, 1000 do pattern:SetNote(0, 0, 48) end end
function Get() local dictionary = dictionary for i = 1, 1000 do dictionary:Get("n") end end
function MakeDictionary() for i = 1, 1000 do VTDictionary() end end
function Action() for i = 1, 1000 do vtApp:ExecuteAction("act") end end
function ActionWith() for i = 1, 1000 do vtApp:ExecuteAction("act", dictionary) end end
)";

void Calls(benchmark::State& state, const char* function) {
    ScriptRig rig;
    rig.Run(kScript);
    ScriptInstance& script = *rig.scripting.FindScript("s");
    for (auto _ : state) script.Execute(function, nullptr, nullptr);
    state.SetItemsProcessed(state.iterations() * 1000);
}

BENCHMARK_CAPTURE(Calls, empty_loop, "Loop");
BENCHMARK_CAPTURE(Calls, getter, "GetBPM");
BENCHMARK_CAPTURE(Calls, setter_of_three, "SetNote");
BENCHMARK_CAPTURE(Calls, dictionary_get, "Get");
BENCHMARK_CAPTURE(Calls, make_dictionary, "MakeDictionary");
BENCHMARK_CAPTURE(Calls, action, "Action");
BENCHMARK_CAPTURE(Calls, action_with_dictionary, "ActionWith");

}  // namespace
}  // namespace vonta::test
