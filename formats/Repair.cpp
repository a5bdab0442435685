#include "formats/Repair.h"

#include <array>

namespace vonta {
namespace {

// A number that the self-check may change.
template <class Thing>
struct NumberRow {
    const char* name;
    long (*read)(const Thing& thing);
};

constexpr NumberRow<Song> kSongNumbers[] = {
    {"Starting BPM", [](const Song& s) -> long { return s.bpm; }},
    {"Starting tempo", [](const Song& s) -> long { return s.tempo; }},
    {"Channels", [](const Song& s) -> long { return s.numChannels; }},
    {"Positions", [](const Song& s) -> long { return s.length; }},
    {"Restart position", [](const Song& s) -> long { return s.restartPos; }},
};

constexpr const char* kEnvelopeNames[kEnvelopeKinds] = {"Volume", "Pan", "Cutoff", "Resonance"};

// What the self-check may change in an instrument, as far as it is heard.
struct InstrumentState {
    std::uint16_t fadeOut;
    std::array<Instrument::Envelopes, kEnvelopeKinds> envelopes;

    explicit InstrumentState(const Instrument& instrument) : fadeOut(instrument.fadeOut) {
        for (int kind = 0; kind < kEnvelopeKinds; ++kind)
            envelopes[static_cast<std::size_t>(kind)] = instrument.GetEnvelopes(static_cast<EnvelopeKind>(kind));
    }
};

std::string Changed(const std::string& name, long before, long after) {
    return name + " " + std::to_string(before) + " became " + std::to_string(after);
}

void Tell(const InstrumentState& before, const Instrument& instrument, const std::string& where, LoadReport& report) {
    const InstrumentState after(instrument);
    if (after.fadeOut != before.fadeOut)
        report.repairs.push_back(Changed(where + "Fade-out", before.fadeOut, after.fadeOut));
    for (std::size_t kind = 0; kind < kEnvelopeKinds; ++kind)
        for (std::size_t i = 0; i < kEnvelopeAlternatives; ++i)
            if (after.envelopes[kind][i].enabled && after.envelopes[kind][i] != before.envelopes[kind][i])
                report.repairs.push_back(where + kEnvelopeNames[kind] + " envelope " + std::to_string(i + 1) +
                                         " was out of order");
}

}  // namespace

void Repair(Instrument& instrument, LoadReport& report) {
    const InstrumentState before(instrument);
    instrument.Validate();
    Tell(before, instrument, "", report);
}

void Repair(Song& song, LoadReport& report) {
    std::vector<long> numbers;
    for (const auto& row : kSongNumbers) numbers.push_back(row.read(song));
    std::vector<InstrumentState> before;
    for (const auto& instrument : song.instruments)
        if (instrument) before.emplace_back(*instrument);

    song.Validate();

    auto number = numbers.begin();
    for (const auto& row : kSongNumbers) {
        if (row.read(song) != *number) report.repairs.push_back(Changed(row.name, *number, row.read(song)));
        ++number;
    }
    auto state = before.begin();
    for (std::size_t i = 0; i < song.instruments.size(); ++i)
        if (song.instruments[i])
            Tell(*state++, *song.instruments[i], "Instrument " + std::to_string(i + 1) + ": ", report);
}

}  // namespace vonta
