#include "edit/Clipboards.h"

#include "interface/view/TrackerState.h"

namespace vonta {

void TrackerState::CopyTrack() { vonta::CopyTrack(clipboards_, ShownPattern(), pending.m_nCursorChannel); }

void TrackerState::CutTrack() {
    CopyTrack();
    EmptyTrack(edits_, Here());
}

void TrackerState::PasteTrack() { vonta::PasteTrack(edits_, clipboards_, Here()); }

void TrackerState::CopyPattern() { vonta::CopyPattern(clipboards_, ShownPattern()); }

void TrackerState::CutPattern() {
    CopyPattern();
    EmptyPattern(edits_, Here());
}

void TrackerState::PastePattern() { vonta::PastePattern(edits_, clipboards_, Here()); }

void TrackerState::CutBlock() {
    CopyBlock();
    EmptyBlock(edits_, Here(), SelectedBlock());
}

void TrackerState::CopyBlock() { vonta::CopyBlock(clipboards_, ShownPattern(), SelectedBlock()); }

void TrackerState::PasteBlock() { vonta::PasteBlock(edits_, clipboards_, Here()); }

}  // namespace vonta
