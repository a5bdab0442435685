#include "edit/Ranges.h"

#include <algorithm>
#include <array>

#include "edit/Cells.h"

namespace vonta {
namespace {

constexpr int kHighestNote = 127;
constexpr int kMaxParam = 255;
constexpr int kShortestFade = 4;                 // rows

CellBlock WholeOf(const Pattern& pattern) { return {0, 0, kTracks, pattern.Rows()}; }

CellBlock Inside(const CellBlock& block, const Pattern& pattern) {
    return {block.left, block.top, std::min(block.width, kTracks - block.left),
            std::min(block.height, pattern.Rows() - block.top)};
}

template <class Edit>
void EditBlock(Editor& editor, int pattern, const CellBlock& block, Edit edit) {
    for (int track = block.left; track < block.left + block.width; ++track)
        for (int row = block.top; row < block.top + block.height; ++row) EditCell(editor, pattern, row, track, edit);
}

template <class Edit>
void EditRange(Editor& editor, const Range& range, Edit edit) {
    const Song& song = editor.GetSong();
    if (range.scope == Scope::Song) {
        for (int number = 0; number < kMaxPatterns; ++number)
            if (const Pattern* pattern = song.GetPattern(number)) EditBlock(editor, number, WholeOf(*pattern), edit);
        return;
    }
    const Pattern* pattern = song.GetPattern(range.at.pattern);
    if (!pattern) return;
    CellBlock cells = WholeOf(*pattern);
    if (range.scope == Scope::Track) cells = {range.at.track, 0, 1, pattern->Rows()};
    if (range.scope == Scope::Block) cells = Inside(range.block, *pattern);
    EditBlock(editor, range.at.pattern, cells, edit);
}

// Where the change will be seen.
Place CornerOf(const Place& at, const CellBlock& block) {
    Place corner = at;
    if (block.width > 0) {
        corner.row = block.top;
        corner.track = block.left;
    }
    return corner;
}

Place PlaceOf(const Range& range) { return range.scope == Scope::Block ? CornerOf(range.at, range.block) : range.at; }

StepName NameFor(const StepName (&names)[4], Scope scope) { return names[static_cast<std::size_t>(scope)]; }

void FadeTrack(Editor& editor, int number, const Pattern& pattern, int track, const CellBlock& rows) {
    const Cell first = pattern.Read(rows.top, track), last = pattern.Read(rows.top + rows.height - 1, track);
    const int steps = rows.height - 1;
    for (int i = 0; i < rows.height; ++i)
        EditCell(editor, number, rows.top + i, track, [&](Cell& cell) {
            cell.effect = first.effect;
            cell.param = static_cast<std::uint8_t>(
                std::min((first.param * (steps - i) + last.param * i) / steps, kMaxParam));
        });
}

}  // namespace

void Transpose(Editor& editor, const Range& range, int instrument, int semitones) {
    const Editor::StepScope step(editor, NameFor(kStepTranspose, range.scope), PlaceOf(range));
    EditRange(editor, range, [&](Cell& cell) {
        if (cell.note >= kNoNote || (instrument != 0 && cell.instrument != instrument)) return;
        cell.note = static_cast<std::uint8_t>(std::clamp(cell.note + semitones, 0, kHighestNote));
    });
}

void ReplaceInstrument(Editor& editor, const Range& range, int from, int to) {
    const Editor::StepScope step(editor, NameFor(kStepReplace, range.scope), PlaceOf(range));
    EditRange(editor, range, [&](Cell& cell) {
        if (cell.instrument == from) cell.instrument = static_cast<std::uint8_t>(to);
    });
}

void ScaleFade(Editor& editor, const Place& at, const CellBlock& block) {
    const Pattern* own = editor.GetSong().GetPattern(at.pattern);
    const int rows = own ? own->Rows() : kDefaultRows;
    if (block.width <= 0 || std::min(block.height, rows - block.top) < kShortestFade) return;
    const Editor::StepScope step(editor, kStepFade, CornerOf(at, block));
    const Pattern* pattern = editor.EnsurePattern(at.pattern);
    if (!pattern) return;
    const CellBlock cells = Inside(block, *pattern);
    for (int i = 0; i < cells.width; ++i) FadeTrack(editor, at.pattern, *pattern, cells.left + i, cells);
}

// From the last row to the first, so that none is overwritten before it has moved.
void ExpandPattern(Editor& editor, const Place& at) {
    const Editor::StepScope step(editor, kStepExpand, at);
    const Pattern* own = editor.GetSong().GetPattern(at.pattern);
    const int rows = own ? own->Rows() : kDefaultRows;
    if (2 * rows > kMaxRows) return;
    const Pattern* pattern = editor.EnsurePattern(at.pattern);
    if (!pattern) return;
    editor.SetRows(at.pattern, 2 * rows);
    for (int track = 0; track < kTracks; ++track)
        for (int row = rows - 1; row >= 0; --row) {
            editor.SetCell(at.pattern, 2 * row, track, pattern->Read(row, track));
            editor.SetCell(at.pattern, 2 * row + 1, track, {});
        }
}

void ShrinkPattern(Editor& editor, const Place& at) {
    const Editor::StepScope step(editor, kStepShrink, at);
    const Pattern* own = editor.GetSong().GetPattern(at.pattern);
    const int rows = (own ? own->Rows() : kDefaultRows) / 2;
    if (rows < 1) return;
    const Pattern* pattern = editor.EnsurePattern(at.pattern);
    if (!pattern) return;
    for (int track = 0; track < kTracks; ++track)
        for (int row = 0; row < rows; ++row) editor.SetCell(at.pattern, row, track, pattern->Read(2 * row, track));
    editor.SetRows(at.pattern, rows);
}

void ChangePatternRows(Editor& editor, const Place& at, int rows) {
    const Editor::StepScope step(editor, kStepRows, at);
    if (editor.EnsurePattern(at.pattern)) editor.SetRows(at.pattern, std::clamp(rows, 1, kMaxRows));
}

}  // namespace vonta
