// Saving: a name by the rules of what is saved, a question if a file has it already, and the work between two frames.
#include <algorithm>
#include <filesystem>
#include <iterator>
#include <system_error>

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
    case FileKind::Song: Ui().Ask({}, Bind<&DiskOpScreen::OnSaveChosen>(this), {}, DialogMode::Save); break;
    case FileKind::Instrument: SaveInstrument(); break;
    case FileKind::Sample: SaveSample(); break;
    default: break;
    }
}

void DiskOpScreen::OnSaveChosen(ControlRecord&) { SaveSong(); }

void DiskOpScreen::SaveSong() {
    FillIfEmpty(State().m_szSongName, kDefaultSongName);
    const std::string name = SongFileName(State().m_szSongName, choice_.m_nSaveFormat);
    const bool mixdown = choice_.m_nSaveFormat == SaveFormat::Wav;
    if (!mixdown) State().m_szSongName = name;
    RequestSave(SaveKind::Song, FileKind::Song, name, mixdown ? name + ".wav" : name);
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
        Ui().Ask(kOverwriteText, Bind<&DiskOpScreen::OnOverwrite>(this));
    else
        State().m_bSaveRequested = true;
}

void DiskOpScreen::OnOverwrite(ControlRecord&) { State().m_bSaveRequested = true; }

void DiskOpScreen::SaveNow() {
    std::string error;
    switch (m_nSaveKind) {
    case SaveKind::None: return;
    case SaveKind::Song: error = choice_.m_nSaveFormat == SaveFormat::Wav ? MixDown() : WriteSong(); break;
    case SaveKind::Instrument: error = WriteInstrument(); break;
    case SaveKind::Sample: error = WriteSample(); break;
    }
    m_nSaveKind = SaveKind::None;
    m_bDirty = true;
    if (!error.empty()) Ui().Tell(ShortName(State().m_szRequestedFile) + " was not saved: " + error);
}

// The song stands still while it is written.
std::string DiskOpScreen::WriteSong() {
    LoadReport report;
    SaveOptions options;
    options.compress = choice_.m_bCompress;
    options.report = &report;
    DiskStream stream;
    if (!stream.Open(m_szSaveFile, "wb")) return stream.Error();
    const MixerPause pause(Player());
    if (SaveFile(&stream, kModes[static_cast<int>(choice_.m_nSaveFormat)], CurrentSong(), options) != 0)
        return !report.error.empty() ? report.error : !stream.Error().empty() ? stream.Error() : "it cannot be written";
    if (!report.lines.empty()) Ui().Tell(ShortName(State().m_szRequestedFile) + " is saved, but: " + report.lines.front());
    return {};
}

std::string DiskOpScreen::MixDown() {
    MixdownOptions options;
    options.sampleRate = static_cast<std::uint32_t>(choice_.m_nMixRate);
    options.bits = static_cast<std::uint32_t>(choice_.m_nMixBits);
    options.byParts = choice_.m_bMixByParts ? 1 : 0;
    std::string error;
    return Ui().Host().MixDown(m_szSaveFile, options, error) != 0 ? error : std::string();   // cancelled: no reason
}

std::string DiskOpScreen::WriteInstrument() {
    const Instrument* instrument = State().SelectedInstrument();
    if (!instrument) return kNothingToSave;
    return vonta::SaveInstrument(m_szSaveFile, *instrument) != 0 ? "it cannot be written" : "";
}

std::string DiskOpScreen::WriteSample() {
    const Sample* sample = State().SelectedSample();
    if (!sample || sample->Count() == 0) return kNothingToSave;
    LoadReport report;
    return vonta::SaveSample(m_szSaveFile, *sample, report) != 0 ? report.error : std::string();
}

}  // namespace vonta
