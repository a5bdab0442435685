#include "formats/SaveLosses.h"

#include <algorithm>
#include <array>

#include "formats/ForeignEffects.h"

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

bool HasOwnRouting(const Instrument& instrument) {
    const auto isOn = [](const auto& part) { return part.on != 0; };
    return std::any_of(instrument.sends.begin(), instrument.sends.end(), isOn) ||
           std::any_of(instrument.eq.begin(), instrument.eq.end(), isOn) || instrument.filterOn != 0 ||
           instrument.midi.enabled != 0 || instrument.busMask != decltype(instrument.busMask){} ||
           instrument.gain != 1.0f || instrument.pan != 0.5f || instrument.transpose != 0 ||
           instrument.fineTune != 0 || instrument.effectMap != IdentityEffectMap();
}

bool HasMixer(const Song& song) {
    const auto isFilled = [](const auto& slot) { return slot != nullptr; };
    return (song.fxSlotTable && std::any_of(song.fxSlotTable->begin(), song.fxSlotTable->end(), isFilled)) ||
           std::any_of(song.fxSlots.begin(), song.fxSlots.end(), isFilled) ||
           std::any_of(song.fxNames.begin(), song.fxNames.end(),
                       [](const auto& name) { return !name.empty(); }) ||
           std::any_of(song.buses.begin(), song.buses.end(), [](const Bus& bus) { return bus.active != 0; }) ||
           song.masterVolume != 1.0f;
}

constexpr LossRow<Song> kSongRows[] = {
    {"Titles cut", [](const Song& s, const FormatLimits& to) { return s.title.size() > to.titleLength; }},
    {"Starting tempo and BPM left out (the file has 6 and 125)",
     [](const Song& s, const FormatLimits& to) {
         return !to.tempo && (s.tempo != kDefaultTempo || s.bpm != kDefaultBpm);
     }},
    {"Effects, buses and master volume left out",
     [](const Song& s, const FormatLimits&) { return HasMixer(s); }},
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
    {"Volume column entries left out",
     [](const Cell& c, const FormatLimits& to) {
         return to.volumeColumn ? (c.volume & kVolumeCommand) != 0 : c.volume != kNoVolume;
     }},
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
    {"Instruments that lose sends, filter, equalizer, MIDI or tuning",
     [](const Instrument& i, const FormatLimits&) { return HasOwnRouting(i); }},
};

constexpr LossRow<Sample> kSampleRows[] = {
    {"Stereo samples made mono", [](const Sample& s, const FormatLimits&) { return s.Channels() > 1; }},
    {"Samples brought down to 8 bits",
     [](const Sample& s, const FormatLimits& to) { return !to.sixteenBits && !s.IsEightBit(); }},
    {"Samples brought down to 16 bits",
     [](const Sample& s, const FormatLimits& to) { return to.sixteenBits && !s.IsSixteenBit(); }},
    {"Samples cut to the longest that the file holds",
     [](const Sample& s, const FormatLimits& to) {
         return s.Count() / static_cast<std::uint32_t>(s.Channels()) > to.frames;
     }},
    {"Ping-pong loops made forward",
     [](const Sample& s, const FormatLimits& to) {
         return !to.pingPong && s.data->loopType == VTSAMPLE_LOOP_PINGPONG;
     }},
    {"Relative notes and pannings of samples left out",
     [](const Sample& s, const FormatLimits& to) {
         return !to.tuning && (s.toneRel != 0 || s.panning != 128);
     }},
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
            if (const Sample* sample = instrument->GetSample(k)) samples.Look(*sample);
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
    Tally whole(kSongRows, limits);
    whole.Look(song);
    whole.Tell(report);
    ReportPatterns(song, limits, report);
    ReportInstruments(song, limits, report);
}

}  // namespace vonta
