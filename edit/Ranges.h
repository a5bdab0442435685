// What works on many cells at once, and on the length of a pattern.
#pragma once

#include "edit/Editor.h"
#include "edit/StepNames.h"

namespace vonta {

// Which cells an operation works on.
enum class Scope : int { Track, Pattern, Song, Block };

// Cells from a corner on; a width of 0 is none at all. What reaches beyond the pattern is left out.
struct CellBlock {
    int left = 0, top = 0, width = 0, height = 0;
};

struct Range {
    Scope scope = Scope::Track;
    Place at;                                    // whose pattern and track
    CellBlock block;                             // of the scope's
};

// A number without a pattern has nothing to be edited, so none is made for these two.
void Transpose(Editor& editor, const Range& range, int instrument, int semitones);   // instrument 0: of all
void ReplaceInstrument(Editor& editor, const Range& range, int from, int to);

// The first row's effect, and the parameters from the first row's to the last one's. Nothing in less than four rows.
void ScaleFade(Editor& editor, const Place& at, const CellBlock& block);
void ExpandPattern(Editor& editor, const Place& at);         // an empty row behind each; nothing beyond 256 rows
void ShrinkPattern(Editor& editor, const Place& at);         // every other row goes; nothing of one row
void ChangePatternRows(Editor& editor, const Place& at, int rows);

}  // namespace vonta
