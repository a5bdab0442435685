// One piece of a step: it holds what the song does not hold at the moment. Swap exchanges the two, so the same call
// takes it back and does it again; nothing is copied.
//
// Interface thread only. A change that the audio side may be reading holds the block cycle for its exchange.
#pragma once

#include <cstddef>

#include "edit/Place.h"

namespace vonta {

class SndPlayer;

class Change {
public:
    enum class Way { Back, Forth };              // undone from the last piece to the first, redone from the first

    virtual ~Change() = default;
    virtual void Swap(SndPlayer& player, Way way) = 0;
    virtual std::size_t Bytes() const = 0;       // of memory that it keeps, about
    virtual void Mark(Touched& touched) const = 0;
    // Whether undoing this one undoes `later` too, which is then dropped: a drag leaves one value, not hundreds.
    virtual bool Covers(const Change& /*later*/) const { return false; }
    // Takes over what the one that follows it at once holds: one list of cells for a whole take.
    virtual bool Append(Change& /*next*/) { return false; }
    // Texts and controls that work on parts of the song may have lost them.
    virtual bool TakesParts() const { return false; }
};

}  // namespace vonta
