#include "formats/native/NativeLosses.h"

#include <algorithm>

#include "formats/native/VtmFormat.h"

namespace vonta {
namespace {

bool AreSame(const Sends& a, const Sends& b) {
    return std::ranges::equal(a, b, [](const Send& x, const Send& y) {
        return x.on == y.on && x.level == y.level && x.slot == y.slot;
    });
}

// The file holds no more of an instrument's own synth than its path and its parameters.
int HasMixingSection(const Instrument& instrument) {
    const SynthPlugin* synth = instrument.synth.get();
    if (!synth) return 0;
    const SynthSettings fresh;
    return synth->muted != fresh.muted || synth->output != fresh.output || synth->pan != fresh.pan ||
           synth->volume != fresh.volume || synth->on != fresh.on || synth->busEnable != fresh.buses ||
           !AreSame(synth->sends, fresh.sends);
}

int CountIdleBands(const Instrument& instrument) {
    static const Instrument fresh;
    int bands = 0;
    for (std::size_t i = 0; i < fresh.eq.size(); ++i) bands += !instrument.eq[i].on && instrument.eq[i] != fresh.eq[i];
    return bands;
}

int CountClones(const Instrument& instrument) {
    return static_cast<int>(std::ranges::count_if(
        instrument.samples, [](const auto& sample) { return sample && sample->data->isClone != 0; }));
}

constexpr struct {
    const char* text;
    int (*count)(const Instrument& instrument);
} kRows[] = {
    {"Equalizer bands that are off and lose their values", CountIdleBands},
    {"Clones that become samples of their own", CountClones},
    {"Own synths of instruments that lose their mixing section", HasMixingSection},
};

template <class Instruments>
void ReportInstruments(const Instruments& instruments, LoadReport& report) {
    for (const auto& row : kRows) {
        int lost = 0;
        for (const auto& instrument : instruments)
            if (instrument) lost += row.count(*instrument);
        if (lost > 0) report.Add("%s: %i", row.text, lost);
    }
}

void ReportNumber(const char* what, std::uint32_t value, std::uint32_t comesBack, LoadReport& report) {
    if (value != comesBack) report.Add("%s %u is not in the file: it will come back as %u.", what, value, comesBack);
}

bool HasCellsBeyond(const Song& song, int channels) {
    const auto used = [&](const auto& pattern) {
        if (!pattern) return false;
        for (int channel = channels; channel < kTracks; ++channel)
            for (int row = 0; row < pattern->rows; ++row)
                if (pattern->Read(row, channel) != Cell{}) return true;
        return false;
    };
    return std::ranges::any_of(song.patterns, used);
}

void ReportMixer(const Song& song, LoadReport& report) {
    const auto standard = DefaultRouting();
    for (std::size_t slot = kStoredRoutings; slot < song.fxRouting.size(); ++slot)
        if (song.fxRouting[slot] != standard[slot])
            report.Add("The routing of effect slot %zu is not in the file.", slot);
    for (int i = 0; i < kMaxInstruments; ++i)
        if (const SynthPlugin* synth = song.GetSynth(i); synth && synth->muted && synth->output != 0)
            report.Add("The mute of synth %d is not in the file, for it plays on output pair %d.", i + 1,
                       synth->output + 1);
}

}  // namespace

void ReportNativeLosses(const Song& song, LoadReport& report) {
    if (song.length > UINT8_MAX)
        report.Add("The file cannot hold a song of %u positions: it will come back with 1.", song.length);
    ReportNumber("Tempo", song.tempo, std::clamp(song.tempo, kMinTempo, kMaxTempo), report);
    ReportNumber("BPM", song.bpm, std::clamp(song.bpm, kMinBpm, kMaxBpm), report);
    if (HasCellsBeyond(song, StoredChannels(song)))
        report.Add("Notes behind channel %d are not in the file.", StoredChannels(song));
    ReportMixer(song, report);
    ReportInstruments(song.instruments, report);
}

void ReportNativeLosses(const Instrument& instrument, LoadReport& report) {
    const Instrument* const one[] = {&instrument};
    ReportInstruments(one, report);
}

}  // namespace vonta
