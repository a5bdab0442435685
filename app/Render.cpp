#include "app/Render.h"

#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <map>
#include <string>

#include "app/PlayerHost.h"
#include "app/CommandLine.h"
#include "app/InRange.h"
#include "app/Interrupt.h"
#include "app/Messages.h"
#include "app/OpenFile.h"
#include "app/PromptEnd.h"
#include "app/ProgressBar.h"
#include "app/SongLength.h"
#include "platform/Clock.h"

namespace vonta {
namespace {

namespace fs = std::filesystem;

constexpr const char* kWavExtension = ".wav";

const std::map<std::string, Interpolation> kInterpolations{
    {"none", Interpolation::None}, {"linear", Interpolation::Linear}, {"cubic", Interpolation::Cubic}};

void AddOptions(CLI::App& command, RenderRequest& request) {
    command.add_option("-o", request.base, "Write BASE.wav, or the files by parts that begin with BASE")
        ->type_name("BASE");
    command.add_option("--rate", request.options.sampleRate, "Sample rate in Hz, 8000 to 192000")
        ->check(InRange(kMinMixdownRate, kMaxMixdownRate))
        ->type_name("HZ")
        ->capture_default_str();
    command.add_option("--bits", request.options.bits, "Bits of a sample: 8, 16 or 32")
        ->check(CLI::IsMember({8u, 16u, 32u}).description(""))
        ->type_name("N")
        ->capture_default_str();
    command.add_flag("--parts", request.byParts, "A file for each output, bus, effect and instrument");
    command.add_option("--interpolation", request.interpolation, "Between frames of a sample: none, linear or cubic")
        ->check(CLI::IsMember(&kInterpolations).description(""))
        ->type_name("KIND")
        ->capture_default_str();
    command.add_option("--loops", request.limits.loops, "Times through the song")
        ->check(InRange(1, 1000))
        ->type_name("N")
        ->capture_default_str();
    command.add_option("--max-minutes", request.limits.maxMinutes, "Stop after so many minutes of sound")
        ->check(InRange(0.001, 100000.0))
        ->type_name("N")
        ->capture_default_str();
}

// The song's name without its extension in the current directory, or in the directory that was given; a ".wav" that
// was typed out of habit is not doubled.
std::string FindBase(const RenderRequest& request) {
    const std::string name = fs::path(request.song).stem();
    if (request.base.empty()) return name;
    std::error_code none;
    if (request.base.ends_with('/') || fs::is_directory(request.base, none)) return fs::path(request.base) / name;
    if (request.base.size() > 4 && request.base.ends_with(kWavExtension))
        return request.base.substr(0, request.base.size() - 4);
    return request.base;
}

// A song whose own name ends in ".wav" would be replaced by its rendering.
bool WouldReplaceSong(const RenderRequest& request, const std::string& base) {
    std::error_code none;
    return fs::equivalent(request.song, base + kWavExtension, none);
}

// Of all times through the song. The measuring leaves its traces in the song, so it has one of its own. 0 if unknown.
double ExpectedSeconds(const RenderRequest& request) {
    LoadReport report;
    bool hasUnknownChunks = false;
    auto song = LoadModule(request.song, hasUnknownChunks, report);
    if (!song) return 0;
    SndPlayer player;
    player.SetSong(std::move(song));
    const double maxSeconds = request.limits.maxMinutes * 60;
    return std::min(MeasureSong(player, maxSeconds).seconds * request.limits.loops, maxSeconds);
}

class Progress final : public MixdownProgress {
public:
    explicit Progress(double totalSeconds) : bar_(totalSeconds) {}
    bool OnBlock(const MixdownState& state) override {
        bar_.Show(state.seconds);
        return !Interrupted();
    }

private:
    ProgressBar bar_;
};

void TellResult(const MixdownResult& result, const RenderRequest& request, std::uint32_t elapsedMs) {
    const bool byParts = result.files.size() > 1;
    for (const std::string& path : result.files) std::printf("%s%s", Printable(path).c_str(), byParts ? "\n" : "");
    if (byParts) std::printf("%zu files", result.files.size());
    const double seconds = static_cast<double>(result.frames) / request.options.sampleRate;
    const double elapsed = std::max(elapsedMs, 1u) / 1000.0;
    std::printf(": %s of sound, made in %.1f s, %.0f times faster than real time\n", ClockTextTenths(seconds).c_str(),
                elapsed, seconds / elapsed);
    if (result.end == MixdownEnd::JumpedBack) Complain(request.song, kCircleText);
    if (result.end == MixdownEnd::TimeLimit) Complain(request.song, "cut at the limit of --max-minutes");
}

int MixDown(PlayerHost& app, const RenderRequest& request, const std::string& base) {
    Progress progress(isatty(STDERR_FILENO) ? ExpectedSeconds(request) : 0.0);
    const std::uint32_t start = Milliseconds();
    const MixdownResult result = Mixdown(*app.GetSndPlayer(), base, request.options, request.limits, &progress);
    const std::uint32_t elapsedMs = Milliseconds() - start;

    if (result.end == MixdownEnd::Cancelled) return kInterrupted;
    if (!result.ok) {
        Complain(result.error);
        return kFailed;
    }
    for (const std::string& path : result.dropped) Complain(path, "cannot be written");
    TellResult(result, request, elapsedMs);
    return result.dropped.empty() ? kDone : kFailed;
}

int Render(const RenderRequest& request) {
    const PromptEnd promptEnd;
    LoadReport report;
    auto song = OpenSong(request.song, report);
    if (!song) return kFailed;
    const std::string base = FindBase(request);
    if (!request.byParts && WouldReplaceSong(request, base)) {
        Complain(request.song, "the WAV file would replace the song; choose another name with -o");
        return kFailed;
    }
    return RenderSong(std::move(song), request, base);
}

}  // namespace

int RenderSong(std::unique_ptr<Song> song, RenderRequest request, const std::string& base) {
    request.options.byParts = request.byParts;
    PlayerHost app;
    if (app.StartPlayer() != 0) return kFailed;
    app.InstallSong(std::move(song));
    app.GetSndPlayer()->SetInterpolation(kInterpolations.at(request.interpolation));
    return app.Guarded([&] { return MixDown(app, request, base); });
}

void AddRenderCommand(CLI::App& command, std::function<int()>& chosen) {
    const auto request = std::make_shared<RenderRequest>();
    command.add_option("SONG", request->song, "The song's file")->required()->type_name("");
    AddOptions(command, *request);
    command.callback([request, &chosen] { chosen = [request] { return Render(*request); }; });
}

}  // namespace vonta
