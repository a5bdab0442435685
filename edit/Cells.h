// What typing does to the cells of a pattern. `at` tells where: pattern, row, track and column. A number without a
// pattern gets an empty one first; if none can be made, nothing is written.
#pragma once

#include "edit/Editor.h"
#include "edit/StepNames.h"

namespace vonta {

struct CommandMacro;

// instrument: from 1; 0 leaves none, as for what is no note.
void EnterNote(Editor& editor, const Place& at, int note, int instrument, StepName name);
// Into the column; false if the digit is none for it.
bool EnterDigit(Editor& editor, const Place& at, int digit, StepName name);
void EnterVolume(Editor& editor, const Place& at, std::uint16_t volume, StepName name);
void EnterMacro(Editor& editor, const Place& at, const CommandMacro& macro, StepName name);   // volume or effect, by the column
void DeleteField(Editor& editor, const Place& at, StepName name);                              // of the column
void ClearFields(Editor& editor, const Place& at, bool noteAndInstrument, bool volume, bool effect, StepName name);

void InsertCell(Editor& editor, const Place& at);            // the cells from the row on move down; the last is lost
void InsertLine(Editor& editor, const Place& at);            // the same in all tracks
void DeleteCellAbove(Editor& editor, const Place& at);       // the cells from the row on move up over the one above
void DeleteLine(Editor& editor, const Place& at);            // the cells below move up over the row, in all tracks

// Reads, changes and writes one cell, inside a step.
template <class Edit>
void EditCell(Editor& editor, int pattern, int row, int track, Edit edit) {
    const Pattern* own = editor.GetSong().GetPattern(pattern);
    if (!own) return;
    Cell cell = own->Read(row, track);
    edit(cell);
    editor.SetCell(pattern, row, track, cell);
}

}  // namespace vonta
