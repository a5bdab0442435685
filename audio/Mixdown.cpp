#include "audio/Mixdown.h"

#include <array>
#include <memory>

#include "audio/MixdownParts.h"
#include "audio/WavWriter.h"
#include "platform/Shared.h"

namespace vonta {
namespace {

// The switches that a song's own commands turn, which would be saved with it.
struct Switches {
    std::array<std::uint8_t, kMaxInstruments> filterOn{};
    std::array<std::uint8_t, kEffectSlots> slotOn{};

    explicit Switches(SndPlayer& player) {
        for (int i = 0; i < kMaxInstruments; ++i)
            if (const Instrument* instrument = player.GetSong().GetInstrument(i)) filterOn[i] = instrument->filterOn;
        for (int slot = 0; slot < kEffectSlots; ++slot)
            if (const auto& effect = player.GetMixer().effects[slot]) slotOn[slot] = effect->on;
    }
    void Restore(SndPlayer& player) const {
        for (int i = 0; i < kMaxInstruments; ++i)
            if (Instrument* instrument = player.GetSong().GetInstrument(i)) Store(instrument->filterOn, filterOn[i]);
        for (int slot = 0; slot < kEffectSlots; ++slot) player.GetMixer().EffectOn(slot, slotOn[slot]);
    }
};

// The player on loan: quiet, at the song's start and at the mixdown's rate. What a song does to its own tempo and
// switches while it is rendered is undone, for it would be saved with the song.
class Session {
public:
    Session(SndPlayer& player, const MixdownOptions& options)
        : pause_(player), player_(player), sampleRate_(player.GetMixer().sampleRate), bpm_(player.GetBPM()),
          tempo_(player.GetSong().GetTempo()), switches_(player) {
        player.PerformStop(0, 1);
        player.SetSampleRate(options.sampleRate);
        player.GetMixer().clearIdle = options.byParts;
        player.GetMixer().tickPosition = 0;          // the same song gives the same bytes
        player.SetPosition(0);
        player.SetVisitTracking(true);
        player.PerformPlay(0);
    }
    ~Session() {
        player_.SetVisitTracking(false);
        player_.SetStopAtEnd(false);
        player_.PerformStop(0, 1);
        player_.GetMixer().clearIdle = 0;
        player_.SetSampleRate(sampleRate_);
        player_.SetBPM(bpm_);
        player_.SetTempo(tempo_);
        switches_.Restore(player_);
    }
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

private:
    MixerPause pause_;
    SndPlayer& player_;
    std::uint32_t sampleRate_;
    float bpm_;
    std::uint32_t tempo_;
    Switches switches_;
};

struct PartFile {
    MixdownPart part;
    WavWriter writer;
};

// All files of a mixdown, which are of one length.
class PartFiles {
public:
    PartFiles(const std::string& base, const MixdownOptions& options, MixdownResult& result)
        : base_(base), options_(options), result_(result) {}

    bool Open(std::vector<MixdownPart> parts) {
        for (MixdownPart& part : parts) {
            auto file = std::make_unique<PartFile>();
            file->part = std::move(part);
            const std::string path = base_ + file->part.suffix;
            if (file->writer.Open(path, options_.sampleRate, options_.bits)) {
                files_.push_back(std::move(file));
            } else {
                result_.dropped.push_back(path);
                result_.error = path + ": " + file->writer.Error();
            }
        }
        if (files_.empty()) return false;
        result_.error.clear();                       // what could be opened is worth having
        return true;
    }

    bool WriteBlock(const Mixer& mixer, const Song& song) {
        for (const auto& file : files_) {
            if (!file->writer.HasRoom(kRenderFrames))
                return Fail(*file, "a WAV file holds no more than 4 GB; take fewer bits, a lower rate or less time");
            const MixdownPart& part = file->part;
            if (!file->writer.Write(part.read(mixer, song, part.index, scratch_), kRenderFrames))
                return Fail(*file, file->writer.Error());
        }
        result_.frames += kRenderFrames;
        return true;
    }

    bool Close() {
        bool whole = true;
        for (const auto& file : files_) {
            if (file->writer.Close()) result_.files.push_back(file->writer.GetPath());
            else whole = Fail(*file, file->writer.Error());
        }
        return whole;
    }

private:
    bool Fail(const PartFile& file, const std::string& reason) {
        result_.error = file.writer.GetPath() + ": " + reason;
        return false;
    }

    const std::string& base_;
    const MixdownOptions& options_;
    MixdownResult& result_;
    std::vector<std::unique_ptr<PartFile>> files_;   // an open one that is forgotten leaves nothing
    StereoBuffer scratch_;
};

const char* FindFault(const MixdownOptions& options, const MixdownLimits& limits) {
    if (options.sampleRate < kMinMixdownRate || options.sampleRate > kMaxMixdownRate)
        return "the sample rate must be from 8000 to 192000 Hz";
    if (options.bits != 8 && options.bits != 16 && options.bits != 32) return "the bits must be 8, 16 or 32";
    if (limits.loops < 1) return "the song must be played at least once";
    if (!(limits.maxMinutes > 0)) return "the limit must be more than 0 minutes";
    return nullptr;
}

MixdownEnd RenderSong(SndPlayer& player, PartFiles& files, const MixdownLimits& limits, MixdownProgress* progress,
                      const MixdownResult& result) {
    const double rate = player.GetMixer().sampleRate;
    for (int loop = 1;;) {
        player.SetStopAtEnd(loop == limits.loops);
        const bool wrapped = player.Render(kRenderFrames);
        if (!files.WriteBlock(player.GetMixer(), player.GetSong())) return MixdownEnd::Failed;

        const bool standsStill = player.GetSong().GetTempo() == 0;
        if (standsStill || (wrapped && loop == limits.loops))
            return player.Revisited() ? MixdownEnd::JumpedBack : MixdownEnd::SongEnd;
        if (wrapped) ++loop;

        const double seconds = static_cast<double>(result.frames) / rate;
        if (seconds >= limits.maxMinutes * 60) return MixdownEnd::TimeLimit;
        if (progress && !progress->OnBlock({result.frames, seconds, player.GetCurrentPlayPos().position, loop}))
            return MixdownEnd::Cancelled;
    }
}

}  // namespace

MixdownResult Mixdown(SndPlayer& player, const std::string& base, const MixdownOptions& options,
                      const MixdownLimits& limits, MixdownProgress* progress) {
    MixdownResult result;
    if (const char* fault = FindFault(options, limits)) {
        result.error = fault;
        return result;
    }
    const Session session(player, options);
    PartFiles files(base, options, result);
    const bool byParts = options.byParts != 0;
    if (!files.Open(byParts ? FindParts(player.GetMixer(), player.GetSong()) : std::vector{WholeMix(options.extension)}))
        return result;

    result.end = RenderSong(player, files, limits, progress, result);
    if (result.end == MixdownEnd::Cancelled) result.error = "cancelled";
    if (result.end == MixdownEnd::Cancelled || result.end == MixdownEnd::Failed) return result;
    result.ok = files.Close();
    if (!result.ok) result.end = MixdownEnd::Failed;
    return result;
}

}  // namespace vonta
