#include <algorithm>

#include "interface/view/EditCell.h"
#include "interface/view/TrackerState.h"

namespace vonta {
namespace {

constexpr int kHighestNote = 127;
constexpr int kMaxParam = 255;
constexpr int kShortestFade = 4;                 // rows

struct Area {
    int left, top, width, height;
};

template <class Edit>
void EditArea(Pattern& pattern, const Area& area, Edit edit) {
    for (int track = area.left; track < area.left + area.width; ++track)
        for (int row = area.top; row < area.top + area.height; ++row) EditCell(pattern, row, track, edit);
}

Area WholeOf(const Pattern& pattern) { return {0, 0, kTracks, pattern.Rows()}; }

Area Inside(const Selection& block, const Pattern& pattern) {
    return {block.Left(), block.Top(), std::min(block.Width(), kTracks - block.Left()),
            std::min(block.Height(), pattern.Rows() - block.Top())};
}

void FadeTrack(Pattern& pattern, int track, int top, int height) {
    const Cell first = pattern.Read(top, track), last = pattern.Read(top + height - 1, track);
    const int steps = height - 1;
    for (int i = 0; i < height; ++i)
        EditCell(pattern, top + i, track, [&](Cell& cell) {
            cell.effect = first.effect;
            cell.param = static_cast<std::uint8_t>(
                std::min((first.param * (steps - i) + last.param * i) / steps, kMaxParam));
        });
}

}  // namespace

// A number without a pattern has nothing to be edited, so none is made for it.
template <class Edit>
void TrackerState::EditCells(Scope scope, Edit edit) {
    if (scope == Scope::Song) {
        for (const auto& pattern : CurrentSong().patterns)
            if (pattern) EditArea(*pattern, WholeOf(*pattern), edit);
        return;
    }
    Pattern* pattern = CurrentSong().GetPattern(PatternNumber());
    if (!pattern) return;
    Area area = WholeOf(*pattern);
    if (scope == Scope::Track) area = {pending.m_nCursorChannel, 0, 1, pattern->Rows()};
    if (scope == Scope::Block) {
        if (!pending.selection.m_bSelection) return;
        area = Inside(pending.selection, *pattern);
    }
    EditArea(*pattern, area, edit);
}

void TrackerState::Transpose(Scope scope, bool selectedInstrumentOnly, int semitones) {
    const int instrument = pending.m_nSelected[kListInstruments];
    EditCells(scope, [&](Cell& cell) {
        if (cell.note >= kNoNote || (selectedInstrumentOnly && cell.instrument != instrument)) return;
        cell.note = static_cast<std::uint8_t>(std::clamp(cell.note + semitones, 0, kHighestNote));
    });
}

void TrackerState::ReplaceInstrument(Scope scope) {
    const int source = pending.m_nSourceInstrument, selected = pending.m_nSelected[kListInstruments];
    EditCells(scope, [&](Cell& cell) {
        if (cell.instrument == source) cell.instrument = static_cast<std::uint8_t>(selected);
    });
}

void TrackerState::ScaleFade() {
    const Selection& block = pending.selection;
    if (!block.m_bSelection || Inside(block, ShownPattern()).height < kShortestFade) return;
    Pattern* pattern = EnsureOwnPattern();
    if (!pattern) return;
    const Area area = Inside(block, *pattern);
    for (int i = 0; i < area.width; ++i) FadeTrack(*pattern, area.left + i, area.top, area.height);
}

// Every track has room for all rows, so the cells move within it; from the last to the first, none is overwritten
// before it has moved.
void TrackerState::ExpandPattern() {
    const int rows = PatternRows();
    if (2 * rows > kMaxRows) return;
    Pattern* pattern = EnsureOwnPattern();
    if (!pattern) return;
    pattern->SetNumRows(2 * rows);
    for (int track = 0; track < kTracks; ++track)
        for (int row = rows - 1; row >= 0; --row) {
            pattern->Write(2 * row, track, pattern->Read(row, track));
            pattern->Write(2 * row + 1, track, {});
        }
}

void TrackerState::ShrinkPattern() {
    const int rows = PatternRows() / 2;
    if (rows < 1) return;
    Pattern* pattern = EnsureOwnPattern();
    if (!pattern) return;
    for (int track = 0; track < kTracks; ++track)
        for (int row = 0; row < rows; ++row) pattern->Write(row, track, pattern->Read(2 * row, track));
    pattern->SetNumRows(rows);
    SetRow(CursorRow());
}

}  // namespace vonta
