#include <algorithm>

#include "interface/view/TrackerState.h"

namespace vonta {

void TrackerState::CopyTrack() {
    const Pattern& pattern = ShownPattern();
    for (int row = 0; row < kMaxRows; ++row)     // those behind the pattern's end read as empty
        trackClipboard_->cells[static_cast<std::size_t>(row)] = pattern.Read(row, pending.m_nCursorChannel);
    trackCopied_ = true;
}

void TrackerState::CutTrack() {
    CopyTrack();
    Pattern* pattern = EnsureOwnPattern();
    for (int row = 0; pattern && row < pattern->Rows(); ++row) pattern->Write(row, pending.m_nCursorChannel, {});
}

void TrackerState::PasteTrack() {
    if (!trackCopied_) return;
    Pattern* pattern = EnsureOwnPattern();
    for (int row = 0; pattern && row < pattern->Rows(); ++row)
        pattern->Write(row, pending.m_nCursorChannel, trackClipboard_->cells[static_cast<std::size_t>(row)]);
}

void TrackerState::CopyPattern() {
    patternClipboard_->Clear();
    ShownPattern().CopyTo(*patternClipboard_);
    patternCopied_ = true;
}

void TrackerState::CutPattern() {
    CopyPattern();
    if (Pattern* pattern = EnsureOwnPattern()) pattern->Clear();
}

void TrackerState::PastePattern() {
    if (!patternCopied_) return;
    if (Pattern* pattern = EnsureOwnPattern()) patternClipboard_->CopyTo(*pattern);
}

// What reaches beyond the pattern is copied as empty cells, so that a paste keeps the block's shape.
void TrackerState::CopyBlockCells(bool cut) {
    const Selection block = pending.selection;
    if (!block.m_bSelection) return;
    Pattern* own = cut ? EnsureOwnPattern() : nullptr;
    const Pattern& pattern = ShownPattern();
    blockWidth_ = std::min(block.Width(), kTracks);
    blockHeight_ = std::min(block.Height(), kMaxRows);
    for (int i = 0; i < blockWidth_; ++i)
        for (int j = 0; j < blockHeight_; ++j) {
            const int track = block.Left() + i, row = block.Top() + j;
            blockClipboard_->Write(j, i, pattern.Read(row, track));
            if (own) own->Write(row, track, {});
        }
}

void TrackerState::CutBlock() { CopyBlockCells(true); }

void TrackerState::CopyBlock() { CopyBlockCells(false); }

void TrackerState::PasteBlock() {
    if (blockWidth_ == 0) return;
    Pattern* pattern = EnsureOwnPattern();
    for (int i = 0; pattern && i < blockWidth_; ++i)
        for (int j = 0; j < blockHeight_; ++j)
            pattern->Write(CursorRow() + j, pending.m_nCursorChannel + i, blockClipboard_->Read(j, i));
}

}  // namespace vonta
