#include "app/recovery/Recovery.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <ctime>
#include <filesystem>
#include <utility>

#include "formats/native/SaverVTM.h"
#include "platform/Clock.h"

namespace vonta {
namespace {

namespace fs = std::filesystem;

constexpr std::uint64_t kNoBase = ~std::uint64_t{0};   // the number of no state
constexpr const char* kCannotKeep = "Unsaved work cannot be kept: ";

void Merge(Touched& into, Touched&& more) {
    into.song |= more.song;
    into.numbers |= more.numbers;
    into.patterns |= more.patterns;
    into.instruments |= more.instruments;
    into.waves.merge(more.waves);
}

Touched Everything(const Song& song) {
    Touched all;
    all.numbers = true;
    for (int i = 0; i < kMaxPatterns; ++i)
        if (song.GetPattern(i)) all.patterns.set(static_cast<std::size_t>(i));
    for (int i = 0; i < kMaxInstruments; ++i) {
        const Instrument* instrument = song.GetInstrument(i);
        if (!instrument) continue;
        all.instruments.set(static_cast<std::size_t>(i));
        for (int sample = 0; sample < kMaxSamples; ++sample)
            if (instrument->GetSample(sample)) all.waves.insert(static_cast<std::uint16_t>(i * kMaxSamples + sample));
    }
    return all;
}

std::vector<std::uint8_t> BytesOf(const Song& song, const ModulePart& part) {
    MemoryStream stream;
    SaveModulePart(stream, song, part);
    return stream.Bytes();
}

// A clone is saved with the wave that it plays, so it changes with it.
void AddClones(const Song& song, Touched& touched) {
    std::set<const SampleData*> changed;
    for (const std::uint16_t wave : touched.waves) {
        const Instrument* owner = song.GetInstrument(wave / kMaxSamples);
        if (const Sample* sample = owner ? owner->GetSample(wave % kMaxSamples) : nullptr) changed.insert(sample->data.get());
    }
    if (changed.empty()) return;
    for (int i = 0; i < kMaxInstruments; ++i) {
        const Instrument* instrument = song.GetInstrument(i);
        for (int j = 0; instrument && j < kMaxSamples; ++j) {
            const Sample* sample = instrument->GetSample(j);
            if (sample && sample->data->isClone && changed.contains(&sample->data->Source()))
                touched.waves.insert(static_cast<std::uint16_t>(i * kMaxSamples + j));
        }
    }
}

}  // namespace

Recovery::~Recovery() { writer_.reset(); }

bool Recovery::MakeDirectory(std::string& error) {
    if (!directory_.empty()) return true;
    const fs::path folder = fs::path(startDirectory_) / kFolder;
    std::error_code failed;
    fs::create_directories(folder, failed);
    for (int attempt = 0; attempt < 100 && !failed; ++attempt) {
        const fs::path own = folder / (std::to_string(std::time(nullptr)) + "-" + std::to_string(getpid()) + "-" +
                                       std::to_string(attempt));
        if (!fs::create_directory(own, failed) || failed) continue;
        if (!lock_.Take((own / "lock").string())) {
            error = "its lock cannot be had";
            fs::remove_all(own, failed);
            return false;
        }
        directory_ = own.string();
        writer_ = std::make_unique<RecoveryWriter>(directory_);
        return true;
    }
    error = failed ? failed.message() : "no name is free";
    return false;
}

// The song is in its file as it stands: from here on, changes count from there.
void Recovery::TakeBase(const Song& song) {
    Restart({});
    std::string error;
    struct stat facts {};
    if (song.fileName.empty() || ::stat(song.fileName.c_str(), &facts) != 0 || !S_ISREG(facts.st_mode)) return;
    if (!MakeDirectory(error)) return;           // told when there is something to be kept
    manifest_.base = {song.fileName, "", static_cast<std::uint64_t>(facts.st_size),
                      facts.st_mtim.tv_sec * std::int64_t{1000000000} + facts.st_mtim.tv_nsec};
    const std::string kept = directory_ + "/" + Manifest::kBaseName;
    ::unlink(kept.c_str());
    if (::link(song.fileName.c_str(), kept.c_str()) == 0) manifest_.base.kept = Manifest::kBaseName;
}

void Recovery::Restart(const BaseFile& base) {
    touched_ = work_ = {};
    batch_ = {};
    gathering_ = false;
    manifest_ = {};
    manifest_.base = base;
}

// As it is on the disk: there is nothing to be recovered, and if it came to be so by a save or a load, a new base.
void Recovery::LookAtUnchanged(Editor& editor) {
    editor.Steps().TakeTouched();
    Restart(manifest_.base);
    seenState_ = editor.Steps().State();
    if (waiting_) return;
    if (std::exchange(written_, false)) writer_->Write({});
    if (baseState_ == seenState_ || (writer_ && writer_->IsBusy())) return;
    TakeBase(editor.GetSong());
    baseless_ = manifest_.base.path.empty();
    baseState_ = seenState_;
}

void Recovery::Look(Editor& editor, std::uint32_t now) {
    Journal& journal = editor.Steps();
    const Song& song = editor.GetSong();
    if (waiting_ && writer_ && !writer_->IsBusy()) TakeResult(now);
    if (!editor.IsChanged()) return LookAtUnchanged(editor);
    Touched more = journal.TakeTouched();
    if (more.song || baseless_) {                // another song, or the first change of one without a file
        Restart({});
        baseless_ = false;
        baseState_ = kNoBase;
        touched_ = Everything(song);
        firstChange_ = now;
    } else if (more.Any()) {
        if (!touched_.Any()) firstChange_ = now;
        Merge(touched_, std::move(more));
    }
    if (journal.State() != seenState_) ++manifest_.edits;
    seenState_ = journal.State();
    if (failing_ && now - failedAt_ < kRetryMs) return;
    const bool free = !waiting_ && !(writer_ && writer_->IsBusy());
    if (!gathering_ && free && touched_.Any() && now - firstChange_ >= kDelayMs) Gather(editor);
    if (gathering_ && WriteParts(editor)) HandOver(song);
}

void Recovery::Gather(const Editor& editor) {
    std::string error;
    if (!MakeDirectory(error)) {
        if (!std::exchange(failing_, true)) message_ = kCannotKeep + error;
        failedAt_ = Milliseconds();
        return;
    }
    work_ = std::exchange(touched_, {});
    AddClones(editor.GetSong(), work_);
    ++generation_;
    gathering_ = true;
}

bool Recovery::WriteParts(Editor& editor) {
    const Song& song = editor.GetSong();
    const std::uint32_t start = Milliseconds();
    const auto timeLeft = [&] { return Milliseconds() - start < kSliceMs; };
    for (std::size_t i = 0; i < work_.patterns.size() && work_.patterns.any(); ++i) {
        if (!work_.patterns.test(i)) continue;
        if (!timeLeft()) return false;
        AddPattern(song, static_cast<int>(i));
        work_.patterns.reset(i);
    }
    for (std::size_t i = 0; i < work_.instruments.size() && work_.instruments.any(); ++i) {
        if (!work_.instruments.test(i)) continue;
        if (!timeLeft()) return false;
        AddInstrument(song, static_cast<int>(i));
        work_.instruments.reset(i);
    }
    for (const std::uint16_t wave : std::exchange(work_.waves, {})) AddWave(song, wave / kMaxSamples, wave % kMaxSamples);
    AddNumbers(song);
    return true;
}

void Recovery::HandOver(const Song& song) {
    manifest_.song = song.title;
    manifest_.time = std::time(nullptr);
    if (!manifest_.base.path.empty() && manifest_.base.kept.empty()) batch_.copyBaseFrom = manifest_.base.path;
    batch_.manifest = manifest_;
    gathering_ = false;
    waiting_ = true;
    writer_->Write(std::exchange(batch_, {}));
}

// A batch that failed is lost, so all that it held is written anew at the next try.
void Recovery::TakeResult(std::uint32_t now) {
    waiting_ = false;
    const std::string error = writer_->Error();
    if (error.empty()) {
        failing_ = false;
        written_ = true;
        if (!manifest_.base.path.empty() && manifest_.base.kept.empty()) {
            std::error_code none;
            if (fs::exists(directory_ + "/" + Manifest::kBaseName, none)) manifest_.base.kept = Manifest::kBaseName;
        }
        return;
    }
    if (!std::exchange(failing_, true)) message_ = kCannotKeep + error;
    failedAt_ = now;
    touched_.numbers = true;
    for (const auto& [number, file] : manifest_.patterns) touched_.patterns.set(static_cast<std::size_t>(number));
    for (const auto& [number, part] : manifest_.instruments) touched_.instruments.set(static_cast<std::size_t>(number));
    for (const auto& [number, file] : manifest_.waves) touched_.waves.insert(static_cast<std::uint16_t>(number));
    firstChange_ = now;
}

void Recovery::Discard() {
    touched_ = work_ = {};
    gathering_ = waiting_ = written_ = false;
    batch_ = {};
    writer_.reset();
    if (directory_.empty()) return;
    std::error_code none;
    fs::remove_all(directory_, none);
    lock_.Release();
    directory_.clear();
    baseState_ = Journal::kNever;
    baseless_ = true;
}

std::string Recovery::PartName(const std::string& what) {
    return what + "." + std::to_string(generation_) + ".vtm";
}

void Recovery::AddNumbers(const Song& song) {
    manifest_.numbers = PartName("numbers");
    manifest_.length = song.GetPatternPosLenght();
    manifest_.tempo = song.GetTempo();
    batch_.files.push_back({manifest_.numbers, BytesOf(song, {.mixer = true}), nullptr});
}

void Recovery::AddPattern(const Song& song, int number) {
    std::string& file = manifest_.patterns[number];
    file.clear();
    if (!song.GetPattern(number)) return;
    file = PartName("pattern-" + std::to_string(number));
    batch_.files.push_back({file, BytesOf(song, {.pattern = number}), nullptr});
}

void Recovery::AddInstrument(const Song& song, int slot) {
    auto& part = manifest_.instruments[slot];
    part = {};
    const Instrument* instrument = song.GetInstrument(slot);
    if (!instrument) return;
    part.file = PartName("instrument-" + std::to_string(slot));
    for (int i = 0; i < kMaxSamples; ++i)
        if (const Sample* sample = instrument->GetSample(i); sample && sample->data->loopType != VTSAMPLE_LOOP_NONE)
            part.loops.push_back({i, sample->data->loopStart, sample->data->loopEnd, sample->data->loopType});
    batch_.files.push_back({part.file, BytesOf(song, {.instrument = slot}), nullptr});
}

// The wave goes to the writer as it is: it is shared, not copied.
void Recovery::AddWave(const Song& song, int slot, int number) {
    std::string& file = manifest_.waves[slot * kMaxSamples + number];
    file.clear();
    const Instrument* instrument = song.GetInstrument(slot);
    const Sample* sample = instrument ? instrument->GetSample(number) : nullptr;
    if (!sample || !sample->Wave()) return;
    const SampleData& source = sample->data->Source();
    auto copy = std::make_unique<Sample>();
    copy->data->block = source.block;
    copy->data->count = source.count;
    copy->data->stereo = source.stereo;
    auto holder = std::make_unique<Song>();
    holder->SetInstrument(slot, std::make_unique<Instrument>());
    holder->GetInstrument(slot)->samples[static_cast<std::size_t>(number)] = std::move(copy);
    file = PartName("wave-" + std::to_string(slot) + "-" + std::to_string(number));
    batch_.files.push_back({file, {}, std::move(holder), slot});
}

}  // namespace vonta
