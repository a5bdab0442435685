#include "app/Info.h"

#include <CLI/CLI.hpp>
#include <cstdio>
#include <memory>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <utility>

#include "app/PlayerHost.h"
#include "app/CommandLine.h"
#include "app/Interrupt.h"
#include "app/Messages.h"
#include "app/OpenFile.h"
#include "app/SongFacts.h"

namespace vonta {
namespace {

constexpr double kLongestSong = 48 * 3600.0;         // seconds; the slowest song without loops is a little shorter

struct InfoRequest {
    std::string file;
    bool json = false;
};

int Print(const std::string& text) {
    std::fwrite(text.data(), 1, text.size(), stdout);
    return kDone;
}

int InfoOfSong(const InfoRequest& request, std::unique_ptr<Song> song, const LoadReport& report) {
    SongFacts facts = GatherFacts(*song);
    facts.file = request.file;
    facts.format = report.formatName;
    PlayerHost app;
    if (app.StartPlayer() != 0) return kFailed;
    app.InstallSong(std::move(song));
    return app.Guarded([&] {
        facts.length = MeasureSong(*app.GetSndPlayer(), kLongestSong);
        if (Interrupted()) return int{kInterrupted};
        return Print(request.json ? FormatAsJson(facts) : FormatAsText(facts));
    });
}

void PrintFacts(std::ostream& out, const InstrumentFacts& instrument) { PrintInstrument(out, instrument); }
void PrintFacts(std::ostream& out, const SampleFacts& sample) { PrintSample(out, sample); }

// Of an instrument or a sample.
template <class Facts>
int InfoOfPart(const InfoRequest& request, const Facts& facts, const LoadReport& report) {
    if (request.json) {
        nlohmann::ordered_json json{{"file", request.file}, {"format", report.formatName}};
        json.update(AsJson(facts));
        return Print(Dump(json));
    }
    std::ostringstream out;
    Label(out, "File") << Printable(request.file) << '\n';
    Label(out, "Format") << report.formatName << '\n';
    PrintFacts(out, facts);
    return Print(out.str());
}

int Info(const InfoRequest& request) {
    LoadReport report;
    FileContent content = OpenFile(request.file, report);
    if (content.song) return InfoOfSong(request, std::move(content.song), report);
    if (content.instrument) return InfoOfPart(request, DescribeInstrument(*content.instrument, 1), report);
    if (content.sample) return InfoOfPart(request, DescribeSample(*content.sample, 1), report);
    return kFailed;
}

}  // namespace

void AddInfoCommand(CLI::App& command, std::function<int()>& chosen) {
    const auto request = std::make_shared<InfoRequest>();
    command.add_option("FILE", request->file, "A song, an instrument or a sample")->required()->type_name("");
    command.add_flag("--json", request->json, "As JSON");
    command.callback([request, &chosen] { chosen = [request] { return Info(*request); }; });
}

}  // namespace vonta
