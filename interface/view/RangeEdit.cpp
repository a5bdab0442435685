#include "edit/Ranges.h"

#include "interface/view/TrackerState.h"

namespace vonta {

CellBlock TrackerState::SelectedBlock() const {
    const Selection& block = pending.selection;
    if (!block.m_bSelection) return {};
    return {block.Left(), block.Top(), block.Width(), block.Height()};
}

Range TrackerState::RangeOf(Scope scope) const { return {scope, Here(), SelectedBlock()}; }

void TrackerState::Transpose(Scope scope, bool selectedInstrumentOnly, int semitones) {
    const int instrument = selectedInstrumentOnly ? pending.m_nSelected[kListInstruments] : 0;
    vonta::Transpose(edits_, RangeOf(scope), instrument, semitones);
}

void TrackerState::ReplaceInstrument(Scope scope) {
    vonta::ReplaceInstrument(edits_, RangeOf(scope), pending.m_nSourceInstrument, pending.m_nSelected[kListInstruments]);
}

void TrackerState::ScaleFade() { vonta::ScaleFade(edits_, Here(), SelectedBlock()); }

void TrackerState::ExpandPattern() { vonta::ExpandPattern(edits_, Here()); }

void TrackerState::ShrinkPattern() {
    if (PatternRows() < 2) return;
    vonta::ShrinkPattern(edits_, Here());
    SetRow(CursorRow());
}

}  // namespace vonta
