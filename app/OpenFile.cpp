#include "app/OpenFile.h"

#include <algorithm>
#include <filesystem>

#include "app/Messages.h"
#include "formats/OpenToLoad.h"
#include "formats/samples/LoaderWAV.h"

namespace vonta {

const char* const kNewerPartsText = "holds parts of a newer format, which are left out";

std::string ExtensionOf(const std::string& path) {
    std::string extension = std::filesystem::path(path).extension().string();
    for (char& letter : extension)
        if (letter >= 'A' && letter <= 'Z') letter = static_cast<char>(letter - 'A' + 'a');
    return extension;
}

namespace {

constexpr std::string_view kRawExtensions[] = {".raw", ".smp", ".sam", ".snd", ".iff"};

bool IsRawByName(const std::string& path) {
    return std::ranges::find(kRawExtensions, ExtensionOf(path)) != std::end(kRawExtensions);
}

std::unique_ptr<Sample> LoadNamedSample(const std::string& path, LoadReport& report) {
    if (!LoaderWAV().Check(path) && !IsRawByName(path)) {
        report.Fail("not a song, an instrument or a sample this program knows");
        return nullptr;
    }
    auto sample = LoadSample(path, true, report);
    if (!sample) return nullptr;
    sample->SetName(std::filesystem::path(path).stem().string());
    sample->volume = kMaxVolume;
    return sample;
}

// A file that was recognised, if only as damaged, is offered to nobody else.
bool IsSettled(const FileContent& content, const LoadReport& report) {
    return content || !report.formatName.empty();
}

void TellReport(const std::string& path, const LoadReport& report, bool hasUnknownChunks) {
    if (!report.error.empty()) return Complain(path, report.error);
    for (const std::string& line : report.lines) Complain(path, line);
    if (hasUnknownChunks) Complain(path, kNewerPartsText);
}

}  // namespace

FileContent LoadFile(const std::string& path, LoadReport& report) {
    FileContent content;
    DiskStream stream;
    if (!OpenToLoad(stream, path, report)) return content;
    content.song = LoadModule(stream, content.hasUnknownChunks, report);
    if (IsSettled(content, report) || stream.Size() == 0) return content;
    report.error.clear();
    content.instrument = LoadInstrument(path, report);
    if (IsSettled(content, report)) return content;
    report.error.clear();
    content.sample = LoadNamedSample(path, report);
    return content;
}

FileContent OpenFile(const std::string& path, LoadReport& report) {
    FileContent content = LoadFile(path, report);
    TellReport(path, report, content.hasUnknownChunks);
    return content;
}

std::unique_ptr<Song> OpenSong(const std::string& path, LoadReport& report) {
    bool hasUnknownChunks = false;
    auto song = LoadModule(path, hasUnknownChunks, report);
    TellReport(path, report, hasUnknownChunks);
    return song;
}

}  // namespace vonta
