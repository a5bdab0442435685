#include "app/Info.h"

#include <CLI/CLI.hpp>
#include <cstdio>
#include <memory>
#include <string>
#include <utility>

#include "app/PlayerHost.h"
#include "app/CommandLine.h"
#include "app/Interrupt.h"
#include "app/OpenSong.h"
#include "app/SongFacts.h"

namespace vonta {
namespace {

constexpr double kLongestSong = 48 * 3600.0;         // seconds; the slowest song without loops is a little shorter

struct InfoRequest {
    std::string file;
    bool json = false;
};

int Info(const InfoRequest& request) {
    LoadReport report;
    auto song = OpenSong(request.file, report);
    if (!song) return kFailed;
    SongFacts facts = GatherFacts(*song);
    facts.file = request.file;
    facts.format = report.formatName;
    PlayerHost app;
    if (app.StartPlayer() != 0) return kFailed;
    app.InstallSong(std::move(song));
    return app.Guarded([&] {
        facts.length = MeasureSong(*app.GetSndPlayer(), kLongestSong);
        if (Interrupted()) return kInterrupted;
        const std::string text = request.json ? FormatAsJson(facts) : FormatAsText(facts);
        std::fwrite(text.data(), 1, text.size(), stdout);
        return kDone;
    });
}

}  // namespace

void AddInfoCommand(CLI::App& command, std::function<int()>& chosen) {
    const auto request = std::make_shared<InfoRequest>();
    command.add_option("FILE", request->file, "The song's file")->required()->type_name("");
    command.add_flag("--json", request->json, "As JSON");
    command.callback([request, &chosen] { chosen = [request] { return Info(*request); }; });
}

}  // namespace vonta
