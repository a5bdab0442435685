#include "edit/Clipboards.h"

#include <algorithm>

namespace vonta {
namespace {

std::unique_ptr<Pattern> LongPattern() {
    auto pattern = std::make_unique<Pattern>();
    pattern->SetNumRows(kMaxRows);
    return pattern;
}

void Fill(Editor& editor, int pattern, const CellBlock& block, const auto& cellAt) {
    for (int i = 0; i < block.width; ++i)
        for (int j = 0; j < block.height; ++j)
            editor.SetCell(pattern, block.top + j, block.left + i, cellAt(i, j));
}

void FillWithNothing(Editor& editor, StepName name, const Place& at, const CellBlock& block) {
    const Editor::StepScope step(editor, name, at);
    if (editor.EnsurePattern(at.pattern)) Fill(editor, at.pattern, block, [](int, int) { return Cell{}; });
}

}  // namespace

void CopyTrack(Clipboards& clipboards, const Pattern& shown, int track) {
    if (!clipboards.track) clipboards.track = std::make_unique<Track>();
    for (int row = 0; row < kMaxRows; ++row)     // those behind the pattern's end read as empty
        clipboards.track->cells[static_cast<std::size_t>(row)] = shown.Read(row, track);
}

void CopyPattern(Clipboards& clipboards, const Pattern& shown) {
    if (!clipboards.pattern) clipboards.pattern = LongPattern();
    clipboards.pattern->Clear();
    shown.CopyTo(*clipboards.pattern);
}

void CopyBlock(Clipboards& clipboards, const Pattern& shown, const CellBlock& block) {
    if (block.width <= 0) return;
    if (!clipboards.block) clipboards.block = LongPattern();
    clipboards.blockWidth = std::min(block.width, kTracks);
    clipboards.blockHeight = std::min(block.height, kMaxRows);
    for (int i = 0; i < clipboards.blockWidth; ++i)
        for (int j = 0; j < clipboards.blockHeight; ++j)
            clipboards.block->Write(j, i, shown.Read(block.top + j, block.left + i));
}

void EmptyTrack(Editor& editor, const Place& at) { FillWithNothing(editor, kStepCutTrack, at, {at.track, 0, 1, kMaxRows}); }

void EmptyPattern(Editor& editor, const Place& at) {
    FillWithNothing(editor, kStepCutPattern, at, {0, 0, kTracks, kMaxRows});
}

void EmptyBlock(Editor& editor, const Place& at, const CellBlock& block) {
    if (block.width <= 0) return;
    Place corner = at;
    corner.row = block.top;
    corner.track = block.left;
    FillWithNothing(editor, kStepCutBlock, corner, block);
}

void PasteTrack(Editor& editor, const Clipboards& clipboards, const Place& at) {
    if (!clipboards.track) return;
    const Editor::StepScope step(editor, kStepPasteTrack, at);
    if (!editor.EnsurePattern(at.pattern)) return;
    Fill(editor, at.pattern, {at.track, 0, 1, kMaxRows},
         [&](int, int row) { return clipboards.track->cells[static_cast<std::size_t>(row)]; });
}

void PastePattern(Editor& editor, const Clipboards& clipboards, const Place& at) {
    if (!clipboards.pattern) return;
    const Editor::StepScope step(editor, kStepPastePattern, at);
    if (!editor.EnsurePattern(at.pattern)) return;
    Fill(editor, at.pattern, {0, 0, kTracks, kMaxRows},
         [&](int track, int row) { return clipboards.pattern->Read(row, track); });
}

void PasteBlock(Editor& editor, const Clipboards& clipboards, const Place& at) {
    if (!clipboards.block) return;
    const Editor::StepScope step(editor, kStepPasteBlock, at);
    if (!editor.EnsurePattern(at.pattern)) return;
    Fill(editor, at.pattern, {at.track, at.row, clipboards.blockWidth, clipboards.blockHeight},
         [&](int i, int j) { return clipboards.block->Read(j, i); });
}

}  // namespace vonta
