#include "formats/SaveLosses.h"

#include <algorithm>
#include <array>

#include "formats/Comments.h"
#include "formats/ForeignEffects.h"
#include "formats/samples/SampleSetup.h"

namespace vonta {
namespace {

// A line of the report for each row that something falls under.
template <class Thing>
struct LossRow {
    const char* text;
    bool (*lost)(const Thing& thing, const FormatLimits& limits);
};

bool HasFurtherZones(const Instrument& instrument) {
    return std::any_of(instrument.keyZones.begin(), instrument.keyZones.end(), [](const auto& zones) {
        return zones.size() > 1 || (zones.size() == 1 && zones[0].numSamples > 1);
    });
}

bool AnyEnabled(const Instrument::Envelopes& envelopes, std::size_t first) {
    return std::any_of(envelopes.begin() + static_cast<std::ptrdiff_t>(first), envelopes.end(),
                       [](const Envelope& envelope) { return envelope.enabled != 0; });
}

const Instrument& FreshInstrument() {
    static const Instrument fresh;
    return fresh;
}

bool HasOwnRouting(const Instrument& instrument) {
    const Instrument& fresh = FreshInstrument();
    const auto isOn = [](const auto& part) { return part.on != 0; };
    return std::any_of(instrument.sends.begin(), instrument.sends.end(), isOn) || instrument.eq != fresh.eq ||
           instrument.filterOn != 0 || instrument.midi.enabled != 0 || instrument.busMask != fresh.busMask ||
           instrument.gain != fresh.gain || instrument.pan != fresh.pan || instrument.transpose != fresh.transpose ||
           instrument.fineTune != fresh.fineTune || instrument.effectMap != fresh.effectMap;
}

bool HasOwnGroup(const Instrument& instrument) {
    const Instrument& fresh = FreshInstrument();
    return instrument.muted != fresh.muted || instrument.groupOn != fresh.groupOn ||
           instrument.groupOutput != fresh.groupOutput || instrument.fixedKey != fresh.fixedKey;
}

bool HasTimedEnvelope(const Instrument& instrument) {
    const auto isTimed = [](const Envelope& envelope) { return envelope.enabled && envelope.timeBased; };
    return isTimed(instrument.volumeEnvelopes[0]) || isTimed(instrument.panEnvelopes[0]);
}

bool KeepsSounding(const Instrument& instrument, const FormatLimits& to) {
    return instrument.newNoteAction != 0 || (!to.envelopes && instrument.fadeOut != 0);
}

// Loaders make comments of the names where a format has none.
bool HasOwnComments(const Song& song) {
    return !song.comments.empty() && song.comments != CommentsFromNames(song);
}

bool IsOddVolume(const Cell& cell, const FormatLimits& to) {
    const bool inColumn = to.volumeColumn && cell.volume <= kMaxVolume && cell.volume % 2 != 0;
    return inColumn || (cell.effect == kSetVolumeEffect && cell.param % 2 != 0);
}

bool HasLoop(const Sample& sample) {
    return sample.data->loopType != VTSAMPLE_LOOP_NONE && sample.data->loopEnd > sample.data->loopStart;
}

std::uint32_t Frames(const Sample& sample) { return sample.Count() / static_cast<std::uint32_t>(sample.Channels()); }

bool HasOddLoop(const Sample& sample) {
    const auto frames = [&](std::uint32_t floats) { return floats / static_cast<std::uint32_t>(sample.Channels()); };
    return HasLoop(sample) && (frames(sample.data->loopStart) % 2 != 0 || frames(sample.data->loopEnd) % 2 != 0);
}

bool PlaysAs(const Sample& sample, std::uint32_t rate) {
    Sample recorded;
    TuneSample(recorded, rate);
    return sample.toneRel == recorded.toneRel && sample.fineTune == recorded.fineTune;
}

bool HasMixer(const Song& song) {
    const auto isFilled = [](const auto& slot) { return slot != nullptr; };
    return (song.fxSlotTable && std::any_of(song.fxSlotTable->begin(), song.fxSlotTable->end(), isFilled)) ||
           std::any_of(song.fxSlots.begin(), song.fxSlots.end(), isFilled) ||
           std::any_of(song.fxNames.begin(), song.fxNames.end(),
                       [](const auto& name) { return !name.empty(); }) ||
           std::any_of(song.buses.begin(), song.buses.end(), [](const Bus& bus) { return bus != Bus{}; }) ||
           song.fxRouting != DefaultRouting() || song.masterVolume != 1.0f;
}

constexpr LossRow<Song> kSongRows[] = {
    {"Titles cut", [](const Song& s, const FormatLimits& to) { return s.title.size() > to.titleLength; }},
    {"Starting tempo and BPM left out (the file has 6 and 125)",
     [](const Song& s, const FormatLimits& to) {
         return !to.tempo && (s.StartTempo() != kDefaultTempo || s.StartBpm() != kDefaultBpm);
     }},
    {"Starting tempo 0, which comes back as 1",
     [](const Song& s, const FormatLimits& to) { return to.tempo && s.tempo == 0; }},
    {"Effects, buses and master volume left out",
     [](const Song& s, const FormatLimits&) { return HasMixer(s); }},
    {"Comments left out", [](const Song& s, const FormatLimits&) { return HasOwnComments(s); }},
};

constexpr LossRow<Pattern> kPatternRows[] = {
    {"Patterns whose last rows are left out",
     [](const Pattern& p, const FormatLimits& to) { return p.Rows() > to.maxRows; }},
    {"Patterns made longer, left by a break where a cell has room",
     [](const Pattern& p, const FormatLimits& to) { return p.Rows() < to.minRows; }},
};

constexpr LossRow<Cell> kCellRows[] = {
    {"Note offs left out",
     [](const Cell& c, const FormatLimits& to) { return !to.noteOffs && c.note == kNoteOff; }},
    {"Notes too low for the file",
     [](const Cell& c, const FormatLimits& to) { return c.note < to.lowestNote; }},
    {"Notes too high for the file",
     [](const Cell& c, const FormatLimits&) { return c.note > kLastNote && c.note < kNoNote; }},
    {"Cells with instruments that the file does not have",
     [](const Cell& c, const FormatLimits& to) { return c.instrument > to.instruments; }},
    {"Volume column entries left out",
     [](const Cell& c, const FormatLimits& to) {
         return to.volumeColumn ? (c.volume & kVolumeCommand) != 0 : c.volume != kNoVolume;
     }},
    {"Volumes rounded to 64 steps", IsOddVolume},
    {"Effects above F, which become others",
     [](const Cell& c, const FormatLimits&) { return c.effect > kLastForeignEffect; }},
};

constexpr LossRow<Instrument> kInstrumentRows[] = {
    {"Instrument names cut",
     [](const Instrument& i, const FormatLimits& to) { return i.name.size() > to.nameLength; }},
    {"Plug-ins of instruments left out", [](const Instrument& i, const FormatLimits&) { return i.kind != 0; }},
    {"Instruments that lose velocity zones or layers",
     [](const Instrument& i, const FormatLimits&) { return HasFurtherZones(i); }},
    {"Instruments that lose envelopes",
     [](const Instrument& i, const FormatLimits& to) {
         const std::size_t first = to.envelopes ? 1 : 0;
         return AnyEnabled(i.volumeEnvelopes, first) || AnyEnabled(i.panEnvelopes, first) ||
                AnyEnabled(i.cutoffEnvelopes, 0) || AnyEnabled(i.resonanceEnvelopes, 0);
     }},
    {"Instruments that lose their fade-out, or notes that sound on", KeepsSounding},
    {"Instruments that lose sends, filter, equalizer, MIDI or tuning",
     [](const Instrument& i, const FormatLimits&) { return HasOwnRouting(i); }},
    {"Instruments that lose their mute, group or fixed keys",
     [](const Instrument& i, const FormatLimits&) { return HasOwnGroup(i); }},
    {"Instruments whose envelopes lose their time in seconds",
     [](const Instrument& i, const FormatLimits& to) { return to.envelopes && HasTimedEnvelope(i); }},
    {"Colors of instruments left out",
     [](const Instrument& i, const FormatLimits&) { return i.color != FreshInstrument().color; }},
};

constexpr LossRow<Sample> kSampleRows[] = {
    {"Sample names cut or left out",
     [](const Sample& s, const FormatLimits& to) { return s.name.size() > to.sampleNameLength; }},
    {"Stereo samples made mono",
     [](const Sample& s, const FormatLimits& to) { return !to.stereo && s.Channels() > 1; }},
    {"Samples brought down to 8 bits",
     [](const Sample& s, const FormatLimits& to) { return !to.sixteenBits && !s.IsEightBit(); }},
    {"Samples brought down to 16 bits",
     [](const Sample& s, const FormatLimits& to) { return to.sixteenBits && !s.IsSixteenBit(); }},
    {"Clones that become samples of their own",
     [](const Sample& s, const FormatLimits&) { return s.data->isClone != 0; }},
    {"Samples that lose their last, odd frame",
     [](const Sample& s, const FormatLimits& to) { return !to.oddFrames && Frames(s) % 2 != 0; }},
    {"Ping-pong loops made forward",
     [](const Sample& s, const FormatLimits& to) {
         return to.loops && !to.pingPong && s.data->loopType == VTSAMPLE_LOOP_PINGPONG;
     }},
    {"Loops left out", [](const Sample& s, const FormatLimits& to) { return !to.loops && HasLoop(s); }},
    {"Loops moved to even frames",
     [](const Sample& s, const FormatLimits& to) { return to.loops && !to.oddFrames && HasOddLoop(s); }},
    {"Tunings left out: the file has one rate",
     [](const Sample& s, const FormatLimits& to) { return to.fixedRate != 0 && !PlaysAs(s, to.fixedRate); }},
    {"Relative notes and pannings of samples left out",
     [](const Sample& s, const FormatLimits& to) {
         return to.fixedRate == 0 && !to.tuning && (s.toneRel != 0 || s.panning != 128);
     }},
    {"Volumes of samples rounded to 64 steps",
     [](const Sample& s, const FormatLimits& to) { return to.fixedRate == 0 && s.volume % 2 != 0; }},
    {"Volumes and pannings of samples left out",
     [](const Sample& s, const FormatLimits& to) {
         return to.fixedRate != 0 && (s.volume != kMaxVolume || s.panning != 128);
     }},
    {"Fine tunings rounded",
     [](const Sample& s, const FormatLimits& to) { return to.fixedRate == 0 && !to.tuning && s.fineTune % 16 != 0; }},
};

// Counts for one table.
template <class Thing, std::size_t rows>
class Tally {
public:
    Tally(const LossRow<Thing> (&table)[rows], const FormatLimits& limits) : table_(table), limits_(limits) {}
    void Look(const Thing& thing) {
        for (std::size_t i = 0; i < rows; ++i) counts_[i] += table_[i].lost(thing, limits_);
    }
    void Tell(LoadReport& report) const {
        for (std::size_t i = 0; i < rows; ++i)
            if (counts_[i] > 0) report.Add("%s: %i", table_[i].text, counts_[i]);
    }

private:
    const LossRow<Thing> (&table_)[rows];
    const FormatLimits& limits_;
    std::array<int, rows> counts_{};
};

void TellExcess(LoadReport& report, const char* what, int has, int limit) {
    if (has > limit) report.Add("%s above %i left out: %i", what, limit, has - limit);
}

template <class Owners>
int CountFrom(const Owners& owners, int first) {
    return static_cast<int>(
        std::count_if(owners.begin() + first, owners.end(), [](const auto& p) { return !!p; }));
}

void ReportPatterns(const Song& song, const FormatLimits& limits, LoadReport& report) {
    Tally patterns(kPatternRows, limits);
    Tally cells(kCellRows, limits);
    const int channels = std::min(song.numChannels, limits.channels);
    for (int i = 0; i < limits.patterns; ++i) {
        const Pattern* pattern = song.GetPattern(i);
        if (!pattern) continue;
        patterns.Look(*pattern);
        for (int row = 0; row < std::min(pattern->Rows(), limits.maxRows); ++row)
            for (int channel = 0; channel < channels; ++channel) cells.Look(pattern->Read(row, channel));
    }
    patterns.Tell(report);
    cells.Tell(report);
}

// By name, for of these the end is gone.
void ReportCut(const Sample& sample, const std::string& name, int instrument, std::uint32_t frames, LoadReport& report) {
    if (Frames(sample) > frames)
        report.Add("Sample \"%s\" of instrument %i cut from %u to %u frames", name.c_str(), instrument, Frames(sample),
                   frames);
}

void ReportInstruments(const Song& song, const FormatLimits& limits, LoadReport& report) {
    Tally instruments(kInstrumentRows, limits);
    Tally samples(kSampleRows, limits);
    int samplesLeftOut = 0;
    for (int i = 0; i < limits.instruments; ++i) {
        const Instrument* instrument = song.GetInstrument(i);
        if (!instrument) continue;
        instruments.Look(*instrument);
        samplesLeftOut += CountFrom(instrument->samples, limits.samples);
        for (int k = 0; k < limits.samples; ++k)
            if (const Sample* sample = instrument->GetSample(k)) {
                samples.Look(*sample);
                ReportCut(*sample, sample->name.empty() ? instrument->name : sample->name, i + 1, limits.frames, report);
            }
    }
    if (samplesLeftOut > 0) report.Add("Samples left out, of instruments with many: %i", samplesLeftOut);
    instruments.Tell(report);
    samples.Tell(report);
}

}  // namespace

void ReportLosses(const Song& song, const FormatLimits& limits, LoadReport& report) {
    TellExcess(report, "Channels", song.numChannels, limits.channels);
    TellExcess(report, "Positions", static_cast<int>(song.length), limits.positions);
    if (const int left = CountFrom(song.patterns, limits.patterns); left > 0)
        report.Add("Patterns that no position plays left out: %i", left);
    if (const int left = CountFrom(song.instruments, limits.instruments); left > 0)
        report.Add("Instruments above %i left out: %i", limits.instruments, left);
    if (const int left = CountFrom(song.synths, 0); left > 0) report.Add("Plug-ins of the song left out: %i", left);
    Tally whole(kSongRows, limits);
    whole.Look(song);
    whole.Tell(report);
    ReportPatterns(song, limits, report);
    ReportInstruments(song, limits, report);
}

void ReportLosses(const Sample& sample, const FormatLimits& limits, LoadReport& report) {
    Tally samples(kSampleRows, limits);
    samples.Look(sample);
    samples.Tell(report);
}

}  // namespace vonta
