// Two million calls of random methods with random arguments, or as many as told; built with a checker it finds what
// they break. Then what a script does for hours, to see that memory does not grow: script_storm [CALLS] [SEED]
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>

#include "tests/support/RandomCaller.h"

namespace vonta::test {
namespace {

constexpr const char* kLongRun = R"(
function Act(d) d:Set("n", d:Get("n") + 1) end
vtApp:RegisterScript("s", vtScript)
vtApp:RegisterAction("act", "s", "Act", true)
function Actions()
    for i = 1, 100000 do
        local d = VTDictionary()
        d:Set("n", i)
        d:Set("d", d)
        vtApp:ExecuteAction("act", d)
    end
end
function Arrays() for i = 1, 100000 do VTArray(VT_FLOAT, 1000) end end
function Songs()
    local d = VTDictionary()
    d:Set("OutputMode", "NoSound")
    vtPlayer:Init(d)
    vtPlayer:GetCurrentSong():SetInstrument(0, VTInstrument())
    vtPlayer:SaveSong("song.vtm")
    for i = 1, 100 do
        local song = vtPlayer:LoadSong("song.vtm")
        if math.mod(i, 2) == 0 then vtPlayer:SetCurrentSong(song) end
    end
    vtPlayer:End()
end
)";

long ResidentKilobytes() {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.starts_with("VmRSS:")) return std::atol(line.c_str() + 6);
    return 0;
}

void RunLong() {
    ScriptRig rig;
    rig.Run(kLongRun);
    for (const char* function : {"Actions", "Arrays", "Songs"}) {
        std::printf("%s:", function);
        for (int round = 0; round < 10; ++round) {
            rig.scripting.FindScript("s")->Execute(function, nullptr, nullptr);
            std::printf(" %ld", ResidentKilobytes());
            std::fflush(stdout);
        }
        std::printf(" KB after each tenth\n");
        for (const std::string& line : rig.Take()) std::printf("%s\n", line.c_str());
    }
}

void Storm(std::uint64_t calls, std::uint32_t seed) {
    constexpr std::uint64_t kRound = 200000;
    for (std::uint64_t done = 0; done < calls; done += kRound) {
        const auto count = RandomCaller(seed++).Run(std::min(kRound, calls - done));
        std::printf("%llu calls, %llu of them errors, %ld KB\n", static_cast<unsigned long long>(count.calls),
                    static_cast<unsigned long long>(count.errors), ResidentKilobytes());
        std::fflush(stdout);
    }
}

}  // namespace
}  // namespace vonta::test

int main(int argc, char** argv) {
    const auto number = [&](int place, unsigned long otherwise) {
        return argc > place ? std::strtoul(argv[place], nullptr, 10) : otherwise;
    };
    vonta::test::Storm(number(1, 2000000), static_cast<std::uint32_t>(number(2, 1)));
    vonta::test::RunLong();
}
