// Taking back and doing again, and what belongs to one step.
#include <algorithm>

#include "interface/view/TrackerState.h"

namespace vonta {

Place TrackerState::Here() const {
    Place place;
    place.pattern = PatternNumber();
    place.position = OrderPosition();
    place.row = CursorRow();
    place.track = pending.m_nCursorChannel;
    place.column = pending.m_nCursorColumn;
    place.instrument = pending.m_nSelected[kListInstruments] - 1;
    place.sample = pending.m_nSample;
    return place;
}

const Step* TrackerState::Undo() { return Show(edits_.Steps().Undo()); }

const Step* TrackerState::Redo() { return Show(edits_.Steps().Redo()); }

const Step* TrackerState::Show(const Step* step) {
    if (step) GoTo(step->place);
    return step;
}

// What plays moves the row by itself.
void TrackerState::GoTo(const Place& place) {
    if (!player_.IsPlaying()) {
        player_.SetPosition(std::clamp(place.position, 0, std::max(0, static_cast<int>(CurrentSong().GetPatternPosLenght()) - 1)));
        ChangeShownPattern(place.pattern - PatternNumber());
        SetRow(place.row);
    }
    JumpToTrack(place.track);
    pending.m_nCursorColumn = place.column;      // LimitCursor knows which ones are on view
    SelectItem(kListInstruments, place.instrument + 1);
    pending.m_nSample = place.sample;
}

// What a held button of the mouse does over and over is one step, and so is what is played into the song from Play to
// the next Stop.
void TrackerState::HoldGesture(bool held) {
    const bool taking = pending.m_bEditMode && player_.IsPlaying();
    if (held && !held_) heldGesture_ = NewGesture();
    if (taking && !taking_) takeGesture_ = NewGesture();
    held_ = held;
    taking_ = taking;
    edits_.Steps().SetGesture(held ? heldGesture_ : taking ? takeGesture_ : 0);
}

}  // namespace vonta
