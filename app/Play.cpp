#include "app/Play.h"

#include <unistd.h>

#include <CLI/CLI.hpp>
#include <cstdio>
#include <map>
#include <memory>
#include <string>
#include <utility>

#include "app/Application.h"
#include "app/CommandLine.h"
#include "app/Interrupt.h"
#include "app/OpenSong.h"
#include "platform/Clock.h"

namespace vonta {
namespace {

constexpr int kShowPeriodMs = 100;

const std::map<std::string, DeviceKind> kDevices{{"nosound", DeviceKind::NoSound},
                                                 {"diskwriter", DeviceKind::DiskWritter}};

struct PlayRequest {
    std::string song;
    std::string device = "nosound";                 // of kDevices
    double seconds = 0;                              // 0: to the song's end
};

void ShowState(SndPlayer& player, const char* before, const char* after) {
    const PlayPosition at = player.GetCurrentPlayPos();
    std::printf("%sposition %03d of %03u  pattern %03u  row %03d  %.0f BPM  load %4.1f %%%s", before, at.position,
                player.GetSong().GetPatternPosLenght(), at.pattern, at.row, static_cast<double>(player.GetBPM()),
                static_cast<double>(ReadTotals(*player.GetMixer().cpuScan).Total()), after);
    std::fflush(stdout);
}

// One line that is written over while it changes; where nobody watches, the last state alone.
void PlayToEnd(SndPlayer& player, double seconds) {
    const bool watched = isatty(STDOUT_FILENO);
    const std::uint32_t start = Milliseconds();
    player.SetStopAtEnd(true);
    player.Play(0);
    while (!Interrupted() && !player.HasEnded()) {
        if (seconds > 0 && Milliseconds() - start >= seconds * 1000) break;
        player.GetPositionNotice().Wait(kShowPeriodMs);
        player.GetPositionNotice().TakeFlags();
        if (watched) ShowState(player, "\r", "\033[K");
    }
    ShowState(player, watched ? "\r" : "", watched ? "\033[K\n" : "\n");
}

int Play(const PlayRequest& request) {
    LoadReport report;
    auto song = OpenSong(request.song, report);
    if (!song) return kFailed;
    GMain app;
    if (app.Init(SoundChoice{.kind = kDevices.at(request.device)}) != 0) return kFailed;
    app.InstallSong(std::move(song));
    return app.Guarded([&] {
        PlayToEnd(*app.GetSndPlayer(), request.seconds);
        return Interrupted() ? kInterrupted : kDone;
    });
}

}  // namespace

void AddPlayCommand(CLI::App& command, std::function<int()>& chosen) {
    const auto request = std::make_shared<PlayRequest>();
    command.add_option("SONG", request->song, "The song's file")->required()->type_name("");
    command.add_option("--device", request->device, "nosound, or diskwriter, which writes diskwritter.raw")
        ->check(CLI::IsMember(&kDevices).description(""))
        ->type_name("KIND")
        ->capture_default_str();
    command.add_option("--seconds", request->seconds, "Stop after so many seconds")
        ->check(CLI::Range(0.001, 1e6).description(""))
        ->type_name("N");
    command.callback([request, &chosen] { chosen = [request] { return Play(*request); }; });
}

}  // namespace vonta
