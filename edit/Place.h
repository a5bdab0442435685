// Where a step works, and what of the song it touches.
#pragma once

#include <bitset>
#include <cstdint>
#include <set>

#include "song/Song.h"

namespace vonta {

// Columns of a track.
enum Column : int {
    kColumnNote, kColumnInstrumentHigh, kColumnInstrumentLow, kColumnVolumeHigh, kColumnVolumeLow, kColumnEffect,
    kColumnParamHigh, kColumnParamLow,
};
constexpr int kColumns = 8;

inline bool IsVolumeColumn(int column) { return column == kColumnVolumeHigh || column == kColumnVolumeLow; }

// Where the cursor stood: undo and redo bring it there. Numbers count from 0; -1 says nothing.
struct Place {
    int pattern = -1, position = -1;             // position in the order list
    int row = -1, track = -1, column = -1;
    int instrument = -1, sample = -1;
    bool operator==(const Place&) const = default;
};

// The parts into which a song falls for whoever keeps a copy of it.
struct Part {
    enum class Kind : std::uint8_t {
        Numbers,                                 // title, comments, order list, tempo, counts, mixer, effects, synths
        Pattern,
        Instrument,                              // all but its waves
        Wave,                                    // of one sample
        Song,                                    // everything
    };
    Kind kind = Kind::Numbers;
    std::uint8_t number = 0, sample = 0;         // of the pattern or the instrument, and of the wave in it
};

// What has changed since somebody looked.
struct Touched {
    bool song = false, numbers = false;
    std::bitset<kMaxPatterns> patterns;
    std::bitset<kMaxInstruments> instruments;
    std::set<std::uint16_t> waves;               // instrument * 256 + sample

    void Add(const Part& part);
    bool Any() const { return song || numbers || patterns.any() || instruments.any() || !waves.empty(); }
};

inline void Touched::Add(const Part& part) {
    switch (part.kind) {
    case Part::Kind::Numbers: numbers = true; break;
    case Part::Kind::Pattern: patterns.set(part.number); break;
    case Part::Kind::Instrument: instruments.set(part.number); break;
    case Part::Kind::Wave: waves.insert(static_cast<std::uint16_t>(part.number * kMaxSamples + part.sample)); break;
    case Part::Kind::Song: song = true; break;
    }
}

}  // namespace vonta
