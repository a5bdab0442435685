#include "edit/Cells.h"

#include <algorithm>

#include "app/config/Environment.h"

namespace vonta {
namespace {

constexpr int kHighestInstrument = 128;          // as a cell holds it

std::uint8_t HighDigit(int value, int digit) { return static_cast<std::uint8_t>((value & 0x0F) + 16 * digit); }
std::uint8_t LowDigit(int value, int digit) { return static_cast<std::uint8_t>((value & 0xF0) + digit); }

bool SetInstrument(Cell& cell, int value) {
    cell.instrument = static_cast<std::uint8_t>(std::min(value, kHighestInstrument));
    return true;
}

bool SetVolumeHigh(Cell& cell, int digit) {
    if (digit > kMaxVolume / 16) return false;
    if (digit == kMaxVolume / 16) {
        cell.volume = kMaxVolume;
    } else {
        cell.volume = HighDigit(cell.volume <= kMaxVolume ? cell.volume : 0, digit);
    }
    return true;
}

bool SetVolumeLow(Cell& cell, int digit) {
    if (cell.volume == kMaxVolume) return false;
    cell.volume = LowDigit(cell.volume < kMaxVolume ? cell.volume : 0, digit);
    return true;
}

// By column, from the first behind the note. Each puts a digit into the cell; false if the digit is none for it.
constexpr bool (*kSetDigit[])(Cell& cell, int digit) = {
    [](Cell& cell, int digit) { return SetInstrument(cell, (cell.instrument & 0x0F) + 16 * digit); },
    [](Cell& cell, int digit) { return SetInstrument(cell, (cell.instrument & 0xF0) + digit); },
    SetVolumeHigh,
    SetVolumeLow,
    [](Cell& cell, int digit) { cell.effect = static_cast<std::uint8_t>(digit); return true; },
    [](Cell& cell, int digit) { cell.param = HighDigit(cell.param, digit); return true; },
    [](Cell& cell, int digit) { cell.param = LowDigit(cell.param, digit); return true; },
};

void EmptyNote(Cell& cell) {
    cell.note = kNoNote;
    cell.instrument = 0;
}

void EmptyEffect(Cell& cell) { cell.effect = cell.param = 0; }

template <class Edit>
void EditCellAt(Editor& editor, const Place& at, StepName name, Edit edit) {
    const Editor::StepScope step(editor, name, at);
    if (editor.EnsurePattern(at.pattern)) EditCell(editor, at.pattern, at.row, at.track, edit);
}

// From the last row to `row`, each takes what stands above it.
void MoveDown(Editor& editor, const Pattern& pattern, const Place& at, int track) {
    for (int to = pattern.Rows() - 1; to > at.row; --to)
        editor.SetCell(at.pattern, to, track, pattern.Read(to - 1, track));
    editor.SetCell(at.pattern, at.row, track, {});
}

// From `row` to the last, each takes what stands below it.
void MoveUp(Editor& editor, const Pattern& pattern, int number, int row, int track) {
    const int last = pattern.Rows() - 1;
    for (int to = row; to < last; ++to) editor.SetCell(number, to, track, pattern.Read(to + 1, track));
    editor.SetCell(number, last, track, {});
}

}  // namespace

void EnterNote(Editor& editor, const Place& at, int note, int instrument, StepName name) {
    EditCellAt(editor, at, name, [&](Cell& cell) {
        cell.note = static_cast<std::uint8_t>(note);
        cell.instrument = static_cast<std::uint8_t>(note < kNoNote ? instrument : 0);
    });
}

bool EnterDigit(Editor& editor, const Place& at, int digit, StepName name) {
    if (at.column <= kColumnNote || at.column >= kColumns || digit < 0 || digit > 15) return false;
    bool taken = false;
    EditCellAt(editor, at, name, [&](Cell& cell) { taken = kSetDigit[at.column - 1](cell, digit); });
    return taken;
}

void EnterVolume(Editor& editor, const Place& at, std::uint16_t volume, StepName name) {
    EditCellAt(editor, at, name, [&](Cell& cell) { cell.volume = volume; });
}

void EnterMacro(Editor& editor, const Place& at, const CommandMacro& macro, StepName name) {
    EditCellAt(editor, at, name, [&](Cell& cell) {
        if (IsVolumeColumn(at.column)) {
            cell.volume = macro.volume;
        } else {
            cell.effect = static_cast<std::uint8_t>(macro.effect);
            cell.param = static_cast<std::uint8_t>(macro.param);
        }
    });
}

void DeleteField(Editor& editor, const Place& at, StepName name) {
    EditCellAt(editor, at, name, [&](Cell& cell) {
        if (at.column == kColumnNote) EmptyNote(cell);
        if (at.column == kColumnInstrumentHigh || at.column == kColumnInstrumentLow) cell.instrument = 0;
        if (IsVolumeColumn(at.column)) cell.volume = kNoVolume;
    });
}

void ClearFields(Editor& editor, const Place& at, bool noteAndInstrument, bool volume, bool effect, StepName name) {
    EditCellAt(editor, at, name, [&](Cell& cell) {
        if (noteAndInstrument) EmptyNote(cell);
        if (volume) cell.volume = kNoVolume;
        if (effect) EmptyEffect(cell);
    });
}

void InsertCell(Editor& editor, const Place& at) {
    const Editor::StepScope step(editor, kStepInsertNote, at);
    if (const Pattern* pattern = editor.EnsurePattern(at.pattern)) MoveDown(editor, *pattern, at, at.track);
}

void InsertLine(Editor& editor, const Place& at) {
    const Editor::StepScope step(editor, kStepInsertRow, at);
    const Pattern* pattern = editor.EnsurePattern(at.pattern);
    for (int track = 0; pattern && track < kTracks; ++track) MoveDown(editor, *pattern, at, track);
}

void DeleteCellAbove(Editor& editor, const Place& at) {
    const Editor::StepScope step(editor, kStepDeleteNote, at);
    if (const Pattern* pattern = editor.EnsurePattern(at.pattern))
        MoveUp(editor, *pattern, at.pattern, std::max(0, at.row - 1), at.track);
}

void DeleteLine(Editor& editor, const Place& at) {
    const Editor::StepScope step(editor, kStepDeleteRow, at);
    const Pattern* pattern = editor.EnsurePattern(at.pattern);
    for (int track = 0; pattern && track < kTracks; ++track) MoveUp(editor, *pattern, at.pattern, at.row, track);
}

}  // namespace vonta
