// A pattern: up to 256 rows of 64 tracks of six-byte cells.
//
// The audio thread reads cells while the interface writes them, so what it reads never moves: every track holds
// room for 256 rows from the start, and a change of the row count is one store. Rows that a shorter pattern drops
// are emptied, so that growing it again finds them empty. While a song is current, use Read, Write and Rows; a
// loader whose song nobody else sees may use the fields.
#pragma once

#include <array>
#include <cstdint>

namespace vonta {

constexpr int kTracks = 64;
constexpr int kMaxRows = 256;
constexpr int kDefaultRows = 64;

constexpr std::uint8_t kLastNote = 95;            // 0 to 95, twelve per octave, 0 the lowest C
constexpr std::uint8_t kNoNote = 128;
constexpr std::uint8_t kNoteOff = 129;
constexpr std::uint16_t kNoVolume = 129;
constexpr std::uint16_t kMaxVolume = 128;
constexpr std::uint16_t kVolumeCommand = 0x8000;  // then: command in bits 4 to 7, parameter in bits 0 to 3

struct Cell {
    std::uint8_t note = kNoNote;          // 0 to 95, kNoNote or kNoteOff
    std::uint8_t instrument = 0;          // 0 none, else number plus one
    std::uint16_t volume = kNoVolume;     // 0 to 128, kNoVolume, or a volume-column command
    std::uint8_t effect = 0;              // 0 to 20
    std::uint8_t param = 0;

    bool operator==(const Cell&) const = default;
};
static_assert(sizeof(Cell) == 6);

struct Track {
    std::array<Cell, kMaxRows> cells{};
    std::int32_t rows = kDefaultRows;

    // 1 to 256; 0 or less changes nothing, more gives 256. Keeps what both sizes hold, empties the rest.
    void SetRows(std::int32_t newRows);
    void Clear();
};

struct Pattern {
    std::array<Track, kTracks> tracks{};
    std::int32_t numTracks = kTracks;     // always 64; the song's channel count limits what is played
    std::int32_t rows = kDefaultRows;     // 1 to 256, the same in every track

    std::int32_t Rows() const;
    void SetNumRows(std::int32_t newRows);                 // as Track::SetRows
    Cell Read(std::int32_t row, int track) const;          // empty outside
    void Write(std::int32_t row, int track, const Cell& cell);   // nothing outside
    void Clear();
    void CopyTo(Pattern& target) const;                    // the rows that both have; target keeps its size
};

}  // namespace vonta
