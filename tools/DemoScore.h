// One long sheet of rows and tracks on which the demo song is written in short notations, and which is cut into
// patterns at the end. So a phrase or its echo may cross a pattern's border.
//
// A row is a sixteenth. What cannot be read throws std::invalid_argument: the texts are our own, and a test reads
// them all.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "song/Song.h"

namespace vonta::demo {

constexpr int kRowsPerBar = 16;
constexpr int kRowsPerPattern = 64;

// "C4" is note 48; sharps "F#4", flats "Bb3".
std::uint8_t ParseNote(std::string_view name);

// What one character of a drum line plays.
struct Hit {
    char symbol;
    std::uint8_t instrument, note, volume;
    std::uint8_t effect = 0, param = 0;
};

// Who plays a phrase, and how loudly.
struct Part {
    int track;
    std::uint8_t instrument;
    int volume;                                // 0 to 128
};

class Score {
public:
    Score(int rows, int tracks);

    int Rows() const { return rows_; }
    Cell& At(int row, int track);              // a cell that is thrown away outside the sheet
    void Note(int row, const Part& part, std::uint8_t note);

    // A character a row: one of `hits`, or '.' for none.
    void Drums(int row, int track, std::string_view line, const std::vector<Hit>& hits);

    // Words separated by blanks: a note, '=' for a key off or '.' for a rest; then ":N", the rows to the next word (one
    // if left out); "~" for a vibrato on a held note. A '/' before a note slides to it, a '^' accents it.
    void Phrase(int row, const Part& part, std::string_view text);

    // Plays what stands on a track again, `delay` rows later and at `level` times its volume.
    void Echo(int fromTrack, const Part& part, int delay, float level);

    // Scales the volumes of all notes of the rows, from one level to the other.
    void Swell(int firstRow, int rows, float fromLevel, float toLevel);

    // As many patterns as the rows take; equal ones are shared.
    void WriteTo(Song& song) const;

private:
    int rows_, tracks_;
    std::vector<Cell> cells_;                  // row by row
    Cell outside_;
};

}  // namespace vonta::demo
