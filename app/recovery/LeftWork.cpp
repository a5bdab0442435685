#include "app/recovery/LeftWork.h"

#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <optional>
#include <utility>

#include "app/recovery/Manifest.h"
#include "app/recovery/Recovery.h"

namespace vonta {
namespace {

namespace fs = std::filesystem;

constexpr std::int64_t kMaxManifestBytes = 16 << 20;
constexpr const char* kDeclined = "declined";
constexpr std::int64_t kSecondsPerDay = 24 * 60 * 60;

std::optional<Manifest> ReadManifest(const std::string& directory) {
    DiskStream stream;
    if (!stream.Open(directory + "/" + Manifest::kFileName, "rb") || stream.Size() > kMaxManifestBytes) return {};
    std::string text(static_cast<std::size_t>(stream.Size()), '\0');
    if (stream.Read(text.data(), 1, text.size()) != text.size()) return {};
    return Manifest::Parse(text);
}

// A song in the making out of its parts.
class Assembly {
public:
    Assembly(const std::string& directory, const Manifest& manifest, LoadReport& report)
        : directory_(directory), manifest_(manifest), report_(report) {}

    std::unique_ptr<Song> Make() {
        LoadBase();
        LoadNumbers();
        if (!song_) return nullptr;
        for (const auto& [number, file] : manifest_.patterns) PutPattern(number, file);
        for (const auto& [slot, part] : manifest_.instruments) PutInstrument(slot, part);
        for (const auto& [wave, file] : manifest_.waves) PutWave(wave / kMaxSamples, wave % kMaxSamples, file);
        for (const auto& [slot, part] : manifest_.instruments) PutLoops(slot, part);
        song_->Validate();
        if (manifest_.length > 0 && manifest_.length <= kMaxPositions) song_->length = manifest_.length;
        if (manifest_.tempo <= kMaxTempo && !manifest_.numbers.empty()) song_->tempo = manifest_.tempo;
        song_->SetFileName(manifest_.base.path);
        return std::move(song_);
    }

private:
    std::unique_ptr<Song> Load(const std::string& path) {
        bool unknown = false;
        LoadReport report;
        report.plugins = report_.plugins;
        report.fxDirectory = report_.fxDirectory;
        auto song = LoadModule(path, unknown, report);
        if (!song) report_.Add("%s: %s", fs::path(path).filename().c_str(), report.error.c_str());
        for (const std::string& line : report.lines) report_.Add("%s", line.c_str());
        return song;
    }
    std::unique_ptr<Song> LoadPart(const std::string& file) { return file.empty() ? nullptr : Load(directory_ + "/" + file); }

    void LoadBase() {
        const BaseFile& base = manifest_.base;
        if (base.path.empty()) return;
        const std::string path = base.kept.empty() ? base.path : directory_ + "/" + base.kept;
        struct stat facts {};
        const bool found = ::stat(path.c_str(), &facts) == 0;
        if (found && static_cast<std::uint64_t>(facts.st_size) != base.size)
            report_.Add("%s is not as it was when it was loaded", base.path.c_str());
        song_ = Load(path);
    }

    // Everything but patterns and instruments is in the numbers' part; those two come from the base.
    void LoadNumbers() {
        auto numbers = LoadPart(manifest_.numbers);
        if (!numbers) return;
        for (auto& pattern : numbers->patterns) pattern.reset();
        for (auto& instrument : numbers->instruments) instrument.reset();
        numbers->numPatterns = numbers->numInstruments = 0;
        if (song_) {
            numbers->patterns = std::move(song_->patterns);
            numbers->instruments = std::move(song_->instruments);
            numbers->numPatterns = song_->numPatterns;
            numbers->numInstruments = song_->numInstruments;
        }
        song_ = std::move(numbers);
    }

    void PutPattern(int number, const std::string& file) {
        auto part = LoadPart(file);
        if (!part && !file.empty()) return;
        song_->SetPattern(number, part ? std::move(part->patterns[static_cast<std::size_t>(number)]) : nullptr);
        if (part) song_->numPatterns = std::max(song_->numPatterns, number + 1);
    }

    // The part has no waves: those of the former instrument stay until their own parts come.
    void PutInstrument(int slot, const Manifest::InstrumentPart& from) {
        auto part = LoadPart(from.file);
        if (!part && !from.file.empty()) return;
        auto next = part ? std::move(part->instruments[static_cast<std::size_t>(slot)]) : nullptr;
        Instrument* former = song_->GetInstrument(slot);
        for (int i = 0; next && former && i < kMaxSamples; ++i)
            if (next->GetSample(i) && former->GetSample(i)) next->GetSample(i)->data->SwapWave(*former->GetSample(i)->data);
        if (next) song_->numInstruments = std::max(song_->numInstruments, slot + 1);
        song_->SetInstrument(slot, std::move(next));
    }

    void PutWave(int slot, int number, const std::string& file) {
        Instrument* instrument = song_->GetInstrument(slot);
        Sample* sample = instrument ? instrument->GetSample(number) : nullptr;
        if (!sample) return;
        if (file.empty()) {
            SampleData none;
            sample->data->SwapWave(none);
            return;
        }
        const auto part = LoadPart(file);
        const Instrument* from = part ? part->GetInstrument(slot) : nullptr;
        const Sample* wave = from ? from->GetSample(number) : nullptr;
        if (!wave) return;
        const std::uint32_t start = sample->data->loopStart, end = sample->data->loopEnd;
        const std::uint8_t type = sample->data->loopType;
        sample->data->SwapWave(*wave->data);
        sample->data->loopStart = start;
        sample->data->loopEnd = end;
        sample->data->loopType = type;
    }

    void PutLoops(int slot, const Manifest::InstrumentPart& part) {
        const Instrument* instrument = song_->GetInstrument(slot);
        if (!instrument) return;
        for (int i = 0; i < kMaxSamples; ++i)
            if (Sample* sample = instrument->GetSample(i)) sample->data->loopType = VTSAMPLE_LOOP_NONE;
        for (const auto& loop : part.loops) {
            const Sample* sample = instrument->GetSample(loop.sample);
            if (!sample || loop.start > loop.end || loop.end > sample->Count() || loop.type < 0 ||
                loop.type > VTSAMPLE_LOOP_PINGPONG)
                continue;
            sample->data->loopStart = loop.start;
            sample->data->loopEnd = loop.end;
            sample->data->loopType = static_cast<std::uint8_t>(loop.type);
        }
    }

    const std::string& directory_;
    const Manifest& manifest_;
    LoadReport& report_;
    std::unique_ptr<Song> song_;
};

std::uint64_t BytesIn(const std::string& directory) {
    std::uint64_t bytes = 0;
    std::error_code none;
    for (fs::directory_iterator at(directory, none), end; !none && at != end; at.increment(none))
        if (const auto size = at->file_size(none); !none) bytes += size;
    return bytes;
}

}  // namespace

std::vector<LeftWork> FindLeftWork(const std::string& startDirectory) {
    std::vector<LeftWork> works;
    std::error_code none;
    std::vector<std::string> directories;
    for (fs::directory_iterator at(fs::path(startDirectory) / Recovery::kFolder, none), end; !none && at != end; at.increment(none))
        if (at->is_directory(none) && !at->is_symlink(none)) directories.push_back(at->path().string());
    for (const std::string& directory : directories) {
        LeftWork work;
        work.directory = directory;
        work.lock = std::make_unique<FileLock>();
        if (!work.lock->Take(directory + "/lock")) continue;
        const auto manifest = ReadManifest(directory);
        if (!manifest) {
            RemoveLeftWork(work);
            continue;
        }
        work.song = manifest->song;
        work.path = manifest->base.path;
        work.time = manifest->time;
        work.edits = manifest->edits;
        work.declined = fs::exists(fs::path(directory) / kDeclined, none);
        works.push_back(std::move(work));
    }
    std::ranges::sort(works, std::greater{}, &LeftWork::time);
    return works;
}

std::unique_ptr<Song> LoadLeftWork(const LeftWork& work, LoadReport& report) {
    const auto manifest = ReadManifest(work.directory);
    if (!manifest) {
        report.Fail("its description cannot be read");
        return nullptr;
    }
    auto song = Assembly(work.directory, *manifest, report).Make();
    if (!song) report.Fail("none of its parts can be read");
    return song;
}

void RemoveLeftWork(LeftWork& work) {
    std::error_code none;
    fs::remove_all(work.directory, none);
    work.lock.reset();
}

void Decline(LeftWork& work) {
    DiskStream mark;
    if (mark.Open(work.directory + "/" + kDeclined, "wb")) mark.Close();
    work.declined = true;
}

void RemoveOldWork(std::vector<LeftWork>& works, std::int64_t now) {
    std::uint64_t bytes = 0;
    for (LeftWork& work : works) {               // the newest first
        if (!work.declined) continue;
        bytes += BytesIn(work.directory);
        if (now - work.time > kKeptDays * kSecondsPerDay || bytes > kKeptBytes) RemoveLeftWork(work);
    }
    std::erase_if(works, [](const LeftWork& work) { return !work.lock; });
}

}  // namespace vonta
