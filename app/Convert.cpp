#include "app/Convert.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <filesystem>
#include <limits>
#include <memory>
#include <string>
#include <utility>

#include "app/CommandLine.h"
#include "app/InRange.h"
#include "app/Messages.h"
#include "app/OpenFile.h"
#include "app/PromptEnd.h"
#include "app/Render.h"
#include "formats/native/SaverVTI.h"

namespace vonta {
namespace {

namespace fs = std::filesystem;

struct ConvertRequest {
    std::string in, out;                             // paths
    int instrument = 0;                              // of the song, from 1; 0: the whole song
    bool compress = false;
};

// Where a conversion stands: what was loaded and is taken to pieces, and where it goes.
struct Conversion {
    const ConvertRequest& request;
    FileContent content;
    // What an instrument was taken out of. Its clones may play samples of the others.
    std::unique_ptr<Song> source;
};

int ReportFailure(const std::string& path, const std::string& reason) {
    Complain(path, reason);
    return kFailed;
}

void TellLosses(const std::string& path, const LoadReport& losses) {
    for (const std::string& line : losses.lines) Complain(path, line);
}

LoadReport EveryLine() {
    LoadReport report;
    report.maxLines = std::numeric_limits<std::size_t>::max();
    return report;
}

// ---- What was loaded, as what the file can hold

std::unique_ptr<Instrument> WrapInInstrument(std::unique_ptr<Sample> sample) {
    auto instrument = std::make_unique<Instrument>();
    instrument->SetName(sample->name);
    instrument->AddSample(std::move(sample));
    instrument->MapAllKeys();
    instrument->Validate();
    return instrument;
}

std::unique_ptr<Song> WrapInSong(std::unique_ptr<Instrument> instrument) {
    auto song = Song::MakeDefault();
    song->SetTitle(instrument->name);
    song->AddInstrument(std::move(instrument));
    return song;
}

bool TakeInstrument(Conversion& work, int number) {
    work.source = std::move(work.content.song);
    const int index = number - 1;
    if (!work.source->GetInstrument(index)) {
        Complain(work.request.in, "has no instrument " + std::to_string(number));
        return false;
    }
    work.content.instrument = std::move(work.source->instruments[static_cast<std::size_t>(index)]);
    return true;
}

int FirstInstrumentWithSamples(const Song& song) {
    const auto hasSamples = [](const auto& instrument) { return instrument && instrument->GetSample(0) != nullptr; };
    const auto found = std::ranges::find_if(song.instruments, hasSamples);
    return found == song.instruments.end() ? 1 : static_cast<int>(found - song.instruments.begin()) + 1;
}

// ---- The writers

template <SaveMode mode>
int WriteSong(Conversion& work) {
    FileContent& content = work.content;
    if (content.sample) content.instrument = WrapInInstrument(std::move(content.sample));
    if (content.instrument) content.song = WrapInSong(std::move(content.instrument));
    const std::string& path = work.request.out;
    DiskStream stream;
    if (!stream.Open(path, "wb")) return ReportFailure(path, stream.Error());
    LoadReport losses = EveryLine();
    SaveOptions options;
    options.compress = work.request.compress;
    options.report = &losses;
    if (SaveFile(&stream, mode, *content.song, options) != 0) return ReportFailure(path, stream.Error());
    TellLosses(path, losses);
    return kDone;
}

int WriteInstrument(Conversion& work) {
    FileContent& content = work.content;
    if (content.song) {
        const int number = FirstInstrumentWithSamples(*content.song);
        if (!TakeInstrument(work, number)) return kFailed;
        Complain(work.request.out, "All of the song but instrument " + std::to_string(number) + " left out");
    }
    if (content.sample) content.instrument = WrapInInstrument(std::move(content.sample));
    const std::string& path = work.request.out;
    LoadReport losses = EveryLine();
    if (SaveInstrument(path, *content.instrument, &losses) != 0) return ReportFailure(path, losses.error);
    TellLosses(path, losses);
    return kDone;
}

// A song is heard, an instrument gives its first sample.
int WriteWave(Conversion& work) {
    FileContent& content = work.content;
    const std::string& path = work.request.out;
    if (content.song) {
        RenderRequest render;
        render.song = work.request.in;
        render.options.extension = fs::path(path).extension();   // as it was typed: another case is another file
        return RenderSong(std::move(content.song), render, fs::path(path).replace_extension());
    }
    LoadReport losses = EveryLine();
    if (content.instrument) {
        const auto& samples = content.instrument->samples;
        const auto isFilled = [](const auto& sample) { return sample && sample->Count() > 0; };
        const auto first = std::ranges::find_if(samples, isFilled);
        if (first == samples.end()) return ReportFailure(work.request.in, "has no sample");
        const auto others = std::count_if(first + 1, samples.end(), isFilled);
        if (others > 0) losses.Add("All samples but the first left out: %i", static_cast<int>(others));
        content.sample = std::move(content.instrument->samples[static_cast<std::size_t>(first - samples.begin())]);
    }
    if (SaveSample(path, *content.sample, losses) != 0) return ReportFailure(path, losses.error);
    TellLosses(path, losses);
    return kDone;
}

// ---- The command

struct Target {
    const char* extension;
    int (*write)(Conversion& work);
};

constexpr Target kTargets[] = {
    {".vtm", WriteSong<SaveMode::Module>}, {".xm", WriteSong<SaveMode::Xm>}, {".mod", WriteSong<SaveMode::Mod>},
    {".vti", WriteInstrument},             {".wav", WriteWave},
};

const Target* FindTarget(const fs::path& path) {
    const auto found = std::ranges::find(kTargets, ExtensionOf(path.string()), &Target::extension);
    return found == std::end(kTargets) ? nullptr : found;
}

std::string CheckTarget(const std::string& path) {
    if (FindTarget(path)) return {};
    std::string known;
    for (const Target& target : kTargets) known += std::string(known.empty() ? "" : ", ") + target.extension;
    return "the name must end in one of " + known;
}

int Convert(const ConvertRequest& request) {
    const PromptEnd promptEnd;
    std::error_code none;
    if (fs::equivalent(request.in, request.out, none)) return ReportFailure(request.out, "would replace what is read");
    LoadReport report;
    Conversion work{request, OpenFile(request.in, report), nullptr};
    if (!work.content) return kFailed;
    if (request.instrument > 0) {
        if (!work.content.song) return ReportFailure(request.in, "is no song that has instruments");
        if (!TakeInstrument(work, request.instrument)) return kFailed;
    }
    return FindTarget(request.out)->write(work);
}

}  // namespace

void AddConvertCommand(CLI::App& command, std::function<int()>& chosen) {
    const auto request = std::make_shared<ConvertRequest>();
    command.add_option("IN", request->in, "A song, an instrument or a sample")->required()->type_name("");
    command.add_option("OUT", request->out, "The file to write: .vtm, .xm, .mod, .vti or .wav")
        ->required()
        ->check(CLI::Validator(CheckTarget, ""))
        ->type_name("");
    command.add_option("--instrument", request->instrument, "Take this instrument of a song alone")
        ->check(InRange(1, kMaxInstruments))
        ->type_name("N");
    command.add_flag("--compress", request->compress, "Samples with loss, many times smaller; .vtm only");
    command.callback([request, &chosen] {
        if (request->compress && ExtensionOf(request->out) != kTargets[0].extension)
            throw CLI::ValidationError("--compress", "only .vtm files are compressed");
        chosen = [request] { return Convert(*request); };
    });
}

}  // namespace vonta
