// Loading: the work between two frames. What was read waits in the requests of the state, and the old song plays on
// until they are applied.
#include <filesystem>
#include <utility>

#include "edit/Samples.h"
#include "formats/Loaders.h"
#include "interface/TrackerInterface.h"
#include "interface/screens/DiskOpScreen.h"

namespace vonta {
namespace {

namespace fs = std::filesystem;

constexpr const char* kNewerPartsLine = "It holds parts of a newer format, which are left out.";
constexpr std::size_t kNameInQuestion = 20;      // characters, so that the question has room around it

std::string NameOf(const std::string& path) { return fs::path(path).filename().string(); }

std::string ReasonOf(const LoadReport& report) { return report.error.empty() ? "its format is not known" : report.error; }

std::string FullPath(const std::string& path) {
    std::error_code failed;
    const fs::path full = fs::absolute(path, failed);
    return failed ? path : full.lexically_normal().string();
}

}  // namespace

void DiskOpScreen::RequestLoad(FileKind kind, const std::string& path) {
    m_nLoadKind = kind;
    m_szChosenFile = path;
    isBackup_ = false;
    ControlRecord record;
    if (kind != FileKind::Song) return OnLoadMayGo(record);
    Ui().IfSongMayGo("Load " + ShortName(NameOf(path), kNameInQuestion) + "??", Bind<&DiskOpScreen::OnLoadMayGo>(this));
}

void DiskOpScreen::OnLoadMayGo(ControlRecord&) {
    State().m_szRequestedFile = NameOf(m_szChosenFile);
    State().m_bLoadRequested = true;
}

void DiskOpScreen::LoadDropped(const std::string& path) {
    FileKind kind = FileKind::Song;
    if (FindKind(NameOf(path), kind)) RequestLoad(kind, path);
    else Ui().Tell(ShortName(NameOf(path)) + " was not loaded: its name tells no format that is known");
}

void DiskOpScreen::LoadBackup(const std::string& path) {
    RequestLoad(FileKind::Song, path);
    isBackup_ = true;
}

void DiskOpScreen::LoadNow() {
    using Read = std::string (DiskOpScreen::*)();
    static constexpr Read kReaders[kFileKinds] = {
        &DiskOpScreen::ReadSong,   &DiskOpScreen::ReadInstrument, &DiskOpScreen::ReadSample, &DiskOpScreen::ReadPlugin,
        &DiskOpScreen::ReadPlugin, &DiskOpScreen::ReadPlugin,     &DiskOpScreen::ReadPlugin, &DiskOpScreen::ReadSkin};
    const std::string error = (this->*kReaders[static_cast<int>(m_nLoadKind)])();
    if (!error.empty()) Ui().Tell(ShortName(State().m_szRequestedFile) + " was not loaded: " + error);
}

void DiskOpScreen::TellLoaded(const LoadReport& report) {
    if (!report.lines.empty()) Ui().TellReport(State().m_szRequestedFile + " was loaded, but:", report.lines);
}

// What is not in the song any more would be lost for good if it were saved over its file without a thought.
std::string DiskOpScreen::ReadSong() {
    LoadReport report;
    bool unknownChunks = false;
    auto song = LoadModule(m_szChosenFile, unknownChunks, report);
    if (!song) return ReasonOf(report);
    if (unknownChunks && !report.lines.empty()) report.lines.push_back(kNewerPartsLine);
    auto& request = State().requests.song;
    request.fileName = isBackup_ ? std::string() : FullPath(m_szChosenFile);
    request.offeredName = request.fileName.empty() ? "" : SongFileName(NameOf(request.fileName), SaveFormat::Native);
    request.object = std::move(song);
    request.unknownChunks = unknownChunks && report.lines.empty();
    request.changed = isBackup_ || unknownChunks || !report.lines.empty();
    isWhole_ = !request.changed;
    choice_.m_nSaveFormat = SaveFormat::Native;
    TellLoaded(report);
    return {};
}

void DiskOpScreen::TakeRecovered(std::unique_ptr<Song> song, const LoadReport& report) {
    auto& request = State().requests.song;
    request = {};
    request.fileName = song->fileName;
    request.offeredName = request.fileName.empty() ? "" : SongFileName(NameOf(request.fileName), SaveFormat::Native);
    request.object = std::move(song);
    request.changed = true;
    isWhole_ = report.lines.empty();
    choice_.m_nSaveFormat = SaveFormat::Native;
    State().m_szRequestedFile = request.object->title;
    TellLoaded(report);
}

std::string DiskOpScreen::ReadInstrument() {
    LoadReport report;
    auto instrument = LoadInstrument(m_szChosenFile, report);
    if (!instrument) return ReasonOf(report);
    auto& request = State().requests.instrument;
    request.slot = State().pending.m_nSelected[kListInstruments] - 1;
    request.object = std::move(instrument);
    request.fileName = State().m_szRequestedFile;
    TellLoaded(report);
    return {};
}

std::string DiskOpScreen::ReadSample() {
    LoadReport report;
    auto& request = State().requests.sample;
    request.instrument = State().pending.m_nSelected[kListInstruments] - 1;
    request.sample = State().pending.m_nSample;
    // What takes another one's place is played as that was: the song goes on in tune.
    const bool tune = Settings().Has(kAutoTuneSample) && IsSampleSlotEmpty(CurrentSong(), request.instrument, request.sample);
    auto sample = LoadSample(m_szChosenFile, tune, report);
    if (!sample) return ReasonOf(report);
    sample->SetName(State().m_szRequestedFile);
    request.object = std::move(sample);
    request.fileName = State().m_szRequestedFile;
    TellLoaded(report);
    return {};
}

std::string DiskOpScreen::ReadPlugin() { return "plug-ins cannot be loaded yet"; }

// The configuration names a file of the directory of skins; another one is shown, but not remembered.
std::string DiskOpScreen::ReadSkin() {
    if (!Pictures().SetSkin(m_szChosenFile)) return "it cannot be opened";
    std::error_code failed;
    if (fs::equivalent(fs::path(m_szChosenFile).parent_path(), directories_.Of(FileKind::Skin), failed))
        Settings().skin = State().m_szRequestedFile;
    return {};
}

}  // namespace vonta
