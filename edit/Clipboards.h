// What has been cut or copied: a track, a pattern and a block, each by itself. Copying is no step; cutting and pasting
// are. `at` tells the pattern, the track and the row.
#pragma once

#include <memory>

#include "edit/Editor.h"
#include "edit/Ranges.h"

namespace vonta {

struct Clipboards {
    std::unique_ptr<Track> track;                // null: nothing was copied yet
    std::unique_ptr<Pattern> pattern, block;
    int blockWidth = 0, blockHeight = 0;         // of the last copy
};

// shown: the pattern on view, which may be the shared empty one.
void CopyTrack(Clipboards& clipboards, const Pattern& shown, int track);
void CopyPattern(Clipboards& clipboards, const Pattern& shown);
// What reaches beyond the pattern is copied as empty cells, so that a paste keeps the block's shape.
void CopyBlock(Clipboards& clipboards, const Pattern& shown, const CellBlock& block);

void EmptyTrack(Editor& editor, const Place& at);            // the second half of a cut, as the next two
void EmptyPattern(Editor& editor, const Place& at);
void EmptyBlock(Editor& editor, const Place& at, const CellBlock& block);

// Nothing if nothing was copied.
void PasteTrack(Editor& editor, const Clipboards& clipboards, const Place& at);
void PastePattern(Editor& editor, const Clipboards& clipboards, const Place& at);
void PasteBlock(Editor& editor, const Clipboards& clipboards, const Place& at);   // cut off at the pattern's end

}  // namespace vonta
