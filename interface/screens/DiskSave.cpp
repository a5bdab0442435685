// Saving: a name by the rules of what is saved, a question if a file has it already, and the work between two frames.
#include <algorithm>
#include <filesystem>
#include <iterator>
#include <system_error>
#include <utility>

#include "engine/SndPlayer.h"
#include "formats/Loaders.h"
#include "formats/native/SaverVTI.h"
#include "interface/screens/DiskOpScreen.h"
#include "interface/TrackerInterface.h"

namespace vonta {
namespace {

namespace fs = std::filesystem;

constexpr const char* kOverwriteText = "Overwrite file??";
constexpr const char* kNothingToSave = "there is nothing to save";
constexpr const char* kUnwritable = "it cannot be written";
constexpr std::size_t kAllLines = 1000;           // the report of a save scrolls
// Characters of a name: what a question has room for.
constexpr std::size_t kNameInChanged = 17, kNameInOverwrite = 54;

constexpr SaveMode kModes[] = {SaveMode::Module, SaveMode::Xm, SaveMode::Mod, SaveMode::Nothing, SaveMode::Mixdown};
constexpr int kRates[] = {8000, 11025, 22050, 44100, 48000, 96000, 192000};   // Hz

void FillIfEmpty(std::string& name, const char* otherwise) {
    if (name.empty()) name = otherwise;
}

}  // namespace

void DiskOpScreen::SaveChoice::StepRate(int by) {
    const auto at = std::lower_bound(std::begin(kRates), std::end(kRates), m_nMixRate) - std::begin(kRates);
    const auto last = static_cast<std::ptrdiff_t>(std::size(kRates)) - 1;
    m_nMixRate = kRates[std::clamp<std::ptrdiff_t>(at + by, 0, last)];
}

void DiskOpScreen::OnSave(ControlRecord&) {
    switch (m_nFileKind) {
    case FileKind::Song: AskForSong(); break;
    case FileKind::Instrument: SaveInstrument(); break;
    case FileKind::Sample: SaveSample(); break;
    default: break;
    }
}

std::string DiskOpScreen::SongLabel() const {
    const std::string name = fs::path(CurrentSong().fileName).filename().string();
    return name.empty() ? "The new song" : ShortName(name, kNameInChanged);
}

void DiskOpScreen::AskForSong() { BeginSong({}); }

void DiskOpScreen::BeginSong(ControlCallback goOn) {
    std::string& name = State().m_szSongName;
    nameBefore_ = name;
    FillIfEmpty(name, kDefaultSongName);
    name = WithoutSuffix(name, FileKind::Song);
    Ui().Ask({}, Bind<&DiskOpScreen::OnSaveChosen>(this), Bind<&DiskOpScreen::OnSaveDeclined>(this), DialogMode::Save);
    Ui().StartTextEdit(name, true);
    goOn_ = goOn;
}

void DiskOpScreen::OnSaveDeclined(ControlRecord&) { State().m_szSongName = nameBefore_; }

void DiskOpScreen::OnSaveChosen(ControlRecord&) { SaveSong(); }

// A file that was loaded with losses is not the song's own any more: the user says where it goes.
bool DiskOpScreen::HasOwnFile() const {
    const std::string& path = CurrentSong().fileName;
    return isWhole_ && fs::path(path).is_absolute() && path.ends_with(SuffixOf(SaveFormat::Native));
}

// What a load dropped of this one is not remembered, so that it does not count as its file's own.
void DiskOpScreen::OnSongExchanged() {
    const std::string name = fs::path(CurrentSong().fileName).filename().string();
    State().m_szSongName = name.empty() ? "" : SongFileName(name, SaveFormat::Native);
    isWhole_ = false;
}

void DiskOpScreen::SavePresent() { SaveAndGoOn({}); }

void DiskOpScreen::SaveAndGoOn(ControlCallback goOn) {
    if (!HasOwnFile()) {
        choice_.m_nSaveFormat = SaveFormat::Native;
        return BeginSong(goOn);
    }
    goOn_ = goOn;
    m_nSaveKind = SaveKind::Song;
    savedFormat_ = SaveFormat::Native;
    m_szSaveFile = CurrentSong().fileName;
    State().m_szRequestedFile = fs::path(m_szSaveFile).filename().string();
    State().m_bSaveRequested = true;
}

void DiskOpScreen::SaveSong() {
    FillIfEmpty(State().m_szSongName, kDefaultSongName);
    savedFormat_ = choice_.m_nSaveFormat;
    const std::string name = SongFileName(State().m_szSongName, savedFormat_);
    const bool mixdown = savedFormat_ == SaveFormat::Wav;
    State().m_szSongName = mixdown ? nameBefore_ : name;
    RequestSave(SaveKind::Song, FileKind::Song, name, mixdown ? name + SuffixOf(SaveFormat::Wav) : name);
}

void DiskOpScreen::SaveInstrument() {
    FillIfEmpty(State().m_szInstrumentName, kDefaultInstrumentName);
    const std::string name = State().m_szInstrumentName = InstrumentFileName(State().m_szInstrumentName);
    RequestSave(SaveKind::Instrument, FileKind::Instrument, name, name);
}

void DiskOpScreen::SaveSample() {
    FillIfEmpty(State().m_szSampleName, kDefaultSampleName);
    const std::string name = State().m_szSampleName = SampleFileName(State().m_szSampleName);
    RequestSave(SaveKind::Sample, FileKind::Sample, name, name);
}

// written: the file that will appear.
void DiskOpScreen::RequestSave(SaveKind kind, FileKind directory, const std::string& name, const std::string& written) {
    m_nSaveKind = kind;
    m_szSaveFile = directories_.Of(directory) + "/" + name;
    State().m_szRequestedFile = written;
    std::error_code failed;
    if (fs::exists(directories_.Of(directory) + "/" + written, failed))
        Ui().AskWithCare(std::string(kOverwriteText) + '\n' + ShortName(written, kNameInOverwrite),
                         Bind<&DiskOpScreen::OnOverwrite>(this));
    else
        State().m_bSaveRequested = true;
}

void DiskOpScreen::OnOverwrite(ControlRecord&) { State().m_bSaveRequested = true; }

void DiskOpScreen::WorkNow() {
    const bool saves = State().m_bSaveRequested, loads = State().m_bLoadRequested;
    if (saves) SaveNow();
    else if (loads) LoadNow();
    State().m_bSaveRequested = State().m_bLoadRequested = false;
    // What could not be kept is read first.
    if (ControlRecord record; saves && !State().m_bDialogOpen && !State().IsChanged()) std::exchange(goOn_, {})(record);
}

void DiskOpScreen::SaveNow() {
    using Write = Outcome (DiskOpScreen::*)();
    const Write song = savedFormat_ == SaveFormat::Wav ? &DiskOpScreen::MixDown : &DiskOpScreen::WriteSong;
    const Write kWriters[] = {nullptr, song, &DiskOpScreen::WriteInstrument, &DiskOpScreen::WriteSample};
    const Write write = kWriters[static_cast<int>(std::exchange(m_nSaveKind, SaveKind::None))];
    m_bDirty = true;
    if (write) TellOutcome((this->*write)());
}

void DiskOpScreen::TellOutcome(const Outcome& outcome) {
    const std::string& name = State().m_szRequestedFile;
    if (outcome.done && outcome.lost.empty()) Ui().Notify(ShortName(name) + " is saved");
    else if (outcome.done) Ui().TellReport(name + " is saved, but:", outcome.lost);
    else if (!outcome.error.empty()) Ui().Tell(ShortName(name) + " was not saved: " + outcome.error);
}

// The song stands still while it is written. In a foreign format it counts as saved if the file holds all of it.
DiskOpScreen::Outcome DiskOpScreen::WriteSong() {
    LoadReport report;
    report.maxLines = kAllLines;
    SaveOptions options;
    options.compress = choice_.m_bCompress;
    options.report = &report;
    DiskStream stream;
    Ui().Host().KeepFormer(m_szSaveFile);
    if (!stream.Open(m_szSaveFile, "wb")) return {false, stream.Error(), {}};
    const MixerPause pause(Player());
    Song& song = Player().GetSong();
    const std::string before = song.fileName;
    if (SaveFile(&stream, kModes[static_cast<int>(savedFormat_)], song, options) != 0)
        return {false, !report.error.empty() ? report.error : !stream.Error().empty() ? stream.Error() : kUnwritable, {}};
    if (report.lines.empty() || savedFormat_ == SaveFormat::Native) {
        State().MarkSaved();
        isWhole_ = true;
    } else {
        song.SetFileName(before);
    }
    return {true, {}, report.lines};
}

DiskOpScreen::Outcome DiskOpScreen::MixDown() {
    MixdownOptions options;
    options.sampleRate = static_cast<std::uint32_t>(choice_.m_nMixRate);
    options.bits = static_cast<std::uint32_t>(choice_.m_nMixBits);
    options.byParts = choice_.m_bMixByParts ? 1 : 0;
    Outcome outcome;
    outcome.done = Ui().Host().MixDown(m_szSaveFile, options, outcome.error, outcome.lost) == 0;
    return outcome;
}

DiskOpScreen::Outcome DiskOpScreen::WriteInstrument() {
    const Instrument* instrument = State().SelectedInstrument();
    if (!instrument) return {false, kNothingToSave, {}};
    LoadReport report;
    if (vonta::SaveInstrument(m_szSaveFile, *instrument, &report) == 0) return {true, {}, report.lines};
    return {false, report.error.empty() ? kUnwritable : report.error, {}};
}

DiskOpScreen::Outcome DiskOpScreen::WriteSample() {
    const Sample* sample = State().SelectedSample();
    if (!sample || sample->Count() == 0) return {false, kNothingToSave, {}};
    LoadReport report;
    const bool done = vonta::SaveSample(m_szSaveFile, *sample, report) == 0;
    return {done, report.error, report.lines};
}

}  // namespace vonta
