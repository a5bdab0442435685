#include "app/Play.h"

#include <unistd.h>

#include <CLI/CLI.hpp>
#include <chrono>
#include <cstdio>
#include <memory>
#include <string>
#include <thread>
#include <utility>

#include "app/CommandLine.h"
#include "app/InRange.h"
#include "app/Interrupt.h"
#include "app/LiveKeys.h"
#include "app/Messages.h"
#include "app/OpenFile.h"
#include "app/PlayerHost.h"
#include "app/PromptEnd.h"
#include "app/SoundKinds.h"
#include "platform/Clock.h"

namespace vonta {
namespace {

constexpr int kShowPeriodMs = 100, kKeysPeriodMs = 5, kTailMs = 50;
constexpr std::uint32_t kInterruptedTailMs = 50;
constexpr int kInterruptedMs = 350;                  // for all that follows an interrupt: devices take up to a second
constexpr int kNoPort = -1;

struct PlayRequest {
    std::string song;
    std::string device = "secondary";                // of kSoundKinds
    SoundChoice sound;
    int latencyMs = 100;
    double seconds = 0;                              // 0: to the song's end
    int midiOut = kNoPort, midiIn = kNoPort;
};

// One line that is written over while it changes; where nobody watches, the last state alone.
class StateLine {
public:
    explicit StateLine(SndPlayer& player) : player_(player) {}

    void Update() {
        if (!watched_ || Milliseconds() - last_ < kShowPeriodMs) return;
        last_ = Milliseconds();
        Show("\r", "\033[K");
    }
    void Finish() const { Show(watched_ ? "\r" : "", watched_ ? "\033[K\n" : "\n"); }

private:
    void Show(const char* before, const char* after) const {
        const PlayPosition at = player_.GetCurrentPlayPos();
        std::printf("%sposition %03d of %03u  pattern %03u  row %03d  %.0f BPM  load %4.1f %%  underruns %u%s", before,
                    at.position, player_.GetSong().GetPatternPosLenght(), at.pattern, at.row,
                    static_cast<double>(player_.GetBPM()),
                    static_cast<double>(ReadTotals(*player_.GetMixer().cpuScan).Total()),
                    player_.GetDevice()->GetUnderruns(), after);
        std::fflush(stdout);
    }

    SndPlayer& player_;
    const bool watched_ = isatty(STDOUT_FILENO);
    std::uint32_t last_ = 0;
};

// Lets the notes of the last row go, where the song would begin anew.
class NotesEnd final : public SongEndListener {
public:
    explicit NotesEnd(SndPlayer& player) : player_(player) { player_.SetSongEndListener(this); }
    ~NotesEnd() override { player_.SetSongEndListener(nullptr); }
    void OnSongEnd() override { player_.PerformStop(0, 0); }

private:
    SndPlayer& player_;
};

void PlayToEnd(PlayerHost& app, const PlayRequest& request) {
    SndPlayer& player = *app.GetSndPlayer();
    const bool live = request.midiIn != kNoPort;
    LiveKeys keys(player, live ? player.GetMixer().midiIn[static_cast<std::size_t>(request.midiIn)].get() : nullptr, 0);
    StateLine line(player);
    const std::uint32_t start = Milliseconds();
    player.Play(0);
    while (!Interrupted() && !player.HasEnded() && player.GetDevice()->GetFailure().empty()) {
        if (request.seconds > 0 && Milliseconds() - start >= request.seconds * 1000) break;
        player.GetPositionNotice().Wait(live ? kKeysPeriodMs : kShowPeriodMs);
        player.GetPositionNotice().TakeFlags();
        keys.Poll();
        if (const char* notice = app.LookAfterDevice()) Complain(notice);
        line.Update();
    }
    line.Finish();
}

// Notes are let go, MIDI ones too, and what is on its way to the loudspeakers is heard; somebody who interrupts does not
// wait for a long way.
void FadeOut(SndPlayer& player) {
    if (!player.HasEnded()) player.Stop(0, 0);
    const int onItsWay = player.IsHeard() ? player.GetLatencyMs() : 0;
    const std::uint32_t start = Milliseconds();
    while (Milliseconds() - start < static_cast<std::uint32_t>(onItsWay + kTailMs)) {
        if (Interrupted() && Milliseconds() - start >= kInterruptedTailMs) break;
        std::this_thread::sleep_for(std::chrono::milliseconds(kKeysPeriodMs));
    }
}

int End(SndPlayer& player) {
    const std::string failure = player.GetDevice()->GetFailure();
    if (failure.empty()) return Interrupted() ? kInterrupted : kDone;
    Complain(failure);
    return kFailed;
}

template <class Ports>
bool IsThere(const Ports& ports, int number, const char* kind) {
    if (number == kNoPort) return true;
    const auto& port = ports[static_cast<std::size_t>(number)];
    const bool there = port && !port->GetName().empty();
    if (!there) Complain(std::string("no ") + kind + " " + std::to_string(number) + " is there; 'vonta devices' lists them");
    return there;
}

// A song's device numbers are those of the machine that it was written on.
void SendNotesTo(Song& song, int midiOut) {
    for (const auto& instrument : song.instruments)
        if (instrument && midiOut != kNoPort) instrument->midi.device = static_cast<std::uint8_t>(midiOut);
}

int Play(const PlayRequest& request) {
    LoadReport report;
    auto song = OpenSong(request.song, report);
    if (!song) return kFailed;
    PromptEnd promptEnd(kInterruptedMs);
    PlayerHost app;
    if (app.StartPlayer(request.sound) != 0) return kFailed;
    SndPlayer& player = *app.GetSndPlayer();
    if (!IsThere(player.GetMixer().midiOut, request.midiOut, "MIDI output") ||
        !IsThere(player.GetMixer().midiIn, request.midiIn, "MIDI input"))
        return kFailed;
    player.SetLatencyMs(request.latencyMs);
    SendNotesTo(*song, request.midiOut);
    app.InstallSong(std::move(song));
    const int status = app.Guarded([&] {
        const NotesEnd atEnd(player);
        player.SetStopAtEnd(true);
        PlayToEnd(app, request);
        FadeOut(player);
        return End(player);
    });
    promptEnd.Finish(status);
    app.ShutdownPlayer();
    return status;
}

}  // namespace

void AddPlayCommand(CLI::App& command, std::function<int()>& chosen) {
    const auto request = std::make_shared<PlayRequest>();
    command.add_option("SONG", request->song, "The song's file")->required()->type_name("");
    command.add_option("--device", request->device, "Of the kinds that 'vonta devices' lists")
        ->check(CLI::IsMember(SoundKindNames()).description(""))
        ->type_name("KIND")
        ->capture_default_str();
    const auto number = [&command](const char* name, auto& value, const char* text, auto least, auto most, const char* unit) {
        return command.add_option(name, value, text)->check(InRange(least, most))->type_name(unit);
    };
    number("--device-number", request->sound.deviceIndex, "Which one of the kind", 0, 255, "N")->capture_default_str();
    number("--latency", request->latencyMs, "How far ahead sound is made, where the device lets us choose", 2, 10000, "MS")
        ->capture_default_str();
    number("--rate", request->sound.sampleRate, "Frames a second", 8000, 192000, "HZ")->capture_default_str();
    number("--midi-out", request->midiOut, "The port for instruments that play MIDI, else the song's own choice", 0,
           kFlushedMidiOuts - 1, "N");
    number("--midi-in", request->midiIn, "The port whose keys play the first instrument", 0, kMidiPorts - 1, "N");
    number("--seconds", request->seconds, "Stop after so many seconds", 0.001, 1e6, "N");
    command.callback([request, &chosen] {
        request->sound.kind = SoundKindOf(request->device);
        chosen = [request] { return Play(*request); };
    });
}

}  // namespace vonta
