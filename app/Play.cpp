#include "app/Play.h"

#include <unistd.h>

#include <CLI/CLI.hpp>
#include <cstdio>
#include <memory>
#include <string>
#include <utility>

#include "app/PlayerHost.h"
#include "app/CommandLine.h"
#include "app/InRange.h"
#include "app/Interrupt.h"
#include "app/Messages.h"
#include "app/OpenFile.h"
#include "app/SoundKinds.h"
#include "platform/Clock.h"

namespace vonta {
namespace {

constexpr int kShowPeriodMs = 100;
constexpr std::uint32_t kReopenPeriodMs = 1000;

constexpr const char* kDeviceGone = "The sound device is gone. The song goes on in silence.";
constexpr const char* kDeviceBack = "The sound device is back.";

struct PlayRequest {
    std::string song;
    std::string device = "secondary";                // of kSoundKinds
    SoundChoice sound;
    int latencyMs = 100;
    double seconds = 0;                              // 0: to the song's end
};

void ShowState(SndPlayer& player, const char* before, const char* after) {
    const PlayPosition at = player.GetCurrentPlayPos();
    std::printf("%sposition %03d of %03u  pattern %03u  row %03d  %.0f BPM  load %4.1f %%  underruns %u%s", before, at.position,
                player.GetSong().GetPatternPosLenght(), at.pattern, at.row, static_cast<double>(player.GetBPM()),
                static_cast<double>(ReadTotals(*player.GetMixer().cpuScan).Total()),
                player.GetDevice()->GetUnderruns(), after);
    std::fflush(stdout);
}

// Tells once that the device has vanished and tries to open it anew from then on.
class DeviceWatch {
public:
    explicit DeviceWatch(SndPlayer& player) : player_(player) {}

    void Look() {
        if (!lost_ && player_.GetDevice()->IsLost()) {
            lost_ = true;
            lastTry_ = Milliseconds();
            Complain(kDeviceGone);
        } else if (lost_ && Milliseconds() - lastTry_ >= kReopenPeriodMs) {
            const MixerPause pause(player_);
            lost_ = !player_.GetDevice()->Restore();
            lastTry_ = Milliseconds();
            if (!lost_) Complain(kDeviceBack);
        }
    }

private:
    SndPlayer& player_;
    bool lost_ = false;
    std::uint32_t lastTry_ = 0;
};

// One line that is written over while it changes; where nobody watches, the last state alone.
void PlayToEnd(SndPlayer& player, double seconds) {
    const bool watched = isatty(STDOUT_FILENO);
    const std::uint32_t start = Milliseconds();
    DeviceWatch watch(player);
    player.SetStopAtEnd(true);
    player.Play(0);
    while (!Interrupted() && !player.HasEnded()) {
        if (seconds > 0 && Milliseconds() - start >= seconds * 1000) break;
        player.GetPositionNotice().Wait(kShowPeriodMs);
        player.GetPositionNotice().TakeFlags();
        watch.Look();
        if (watched) ShowState(player, "\r", "\033[K");
    }
    ShowState(player, watched ? "\r" : "", watched ? "\033[K\n" : "\n");
}

int Play(const PlayRequest& request) {
    LoadReport report;
    auto song = OpenSong(request.song, report);
    if (!song) return kFailed;
    PlayerHost app;
    if (app.StartPlayer(request.sound) != 0) return kFailed;
    app.GetSndPlayer()->SetLatencyMs(request.latencyMs);
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
    command.add_option("--device", request->device, "Of the kinds that 'vonta devices' lists")
        ->check(CLI::IsMember(SoundKindNames()).description(""))
        ->type_name("KIND")
        ->capture_default_str();
    command.add_option("--device-number", request->sound.deviceIndex, "Which one of the kind")
        ->check(InRange(0, 255))
        ->type_name("N")
        ->capture_default_str();
    command.add_option("--latency", request->latencyMs, "How far ahead sound is made, where the device lets us choose")
        ->check(InRange(2, 10000))
        ->type_name("MS")
        ->capture_default_str();
    command.add_option("--rate", request->sound.sampleRate, "Frames a second")
        ->check(InRange(8000, 192000))
        ->type_name("HZ")
        ->capture_default_str();
    command.add_option("--seconds", request->seconds, "Stop after so many seconds")
        ->check(InRange(0.001, 1e6))
        ->type_name("N");
    command.callback([request, &chosen] {
        request->sound.kind = SoundKindOf(request->device);
        chosen = [request] { return Play(*request); };
    });
}

}  // namespace vonta
