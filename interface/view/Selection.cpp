#include <algorithm>

#include "interface/view/PatternView.h"
#include "interface/view/TrackerState.h"

namespace vonta {
namespace {

constexpr int kTracksLeft = 15;                  // x of the first track, as the mouse counts
constexpr int kInsideCursor = 5;                 // pixels from a track's line to where its cursor lies
constexpr int kCallsPerTrack = 10;               // of SelectionExtend, until the view moves sideways

}  // namespace

TrackerState::ViewPlace TrackerState::PlaceAt(int x, int y) const {
    const PatternView& view = ViewOf(pending.m_nVisibleChannels);
    const int row = CursorRow() + y / kRowHeight - kRowsAboveCursor;
    const int track = x < kTracksLeft ? -1 : std::min((x - kTracksLeft) / view.mouseWidth, view.channels - 1);
    return {std::clamp(pending.m_nFirstChannel + track, 0, SongChannels() - 1), std::clamp(row, 0, PatternRows() - 1)};
}

void TrackerState::SelectionStart(int x, int y) {
    const ViewPlace at = PlaceAt(x, y);
    pending.selection = {true, at.channel, at.row, at.channel, at.row};
}

void TrackerState::SelectionExtend(int x, int y, bool autoscroll) {
    const ViewPlace at = PlaceAt(x, y);
    pending.selection.m_nSelChannelB = at.channel;
    pending.selection.m_nSelRowB = at.row;
    if (autoscroll) ScrollToSelect(at);
}

// At the edges of the view, the view moves on below the mouse.
void TrackerState::ScrollToSelect(ViewPlace at) {
    if (!player_.IsPlaying()) {
        const int top = CursorRow() - kRowsAboveCursor, bottom = top + ViewRows(pending, SongChannels()) - 1;
        if (at.row <= top && at.row > 0) {
            MoveRow(-1, false);
        } else if (at.row >= bottom) {
            MoveRow(1, false);
        }
    }
    if (--scrollCountdown_ > 0) return;
    scrollCountdown_ = kCallsPerTrack;
    const int first = pending.m_nFirstChannel, last = first + pending.m_nVisibleChannels - 1;
    if (at.channel <= first && first >= 1) {
        PrevTrack(false);
    } else if (at.channel >= last && last < SongChannels() - 1) {
        NextTrack();
    }
}

void TrackerState::SelectionOff() { pending.selection.m_bSelection = false; }

// What Alt with a cursor key asked for since the last frame. Each row is taken into the selection before the cursor
// leaves it, so that n presses select n rows; a track that the cursor has left is still that of the last frame.
void TrackerState::SelectByKeys() {
    const PatternView& view = ViewOf(frame.m_nVisibleChannels);
    const int x = view.TrackX(frame.m_nCursorChannel - pending.m_nFirstChannel) + kInsideCursor;
    const auto select = [&] {
        if (m_bSelStart || !pending.selection.m_bSelection) {
            SelectionStart(x, kCursorRowY);
        } else {
            SelectionExtend(x, kCursorRowY, false);
        }
        m_bSelStart = false;
    };
    const bool wanted = m_bSelStart || m_bSelExtend;
    if (wanted) select();
    for (bool again = false; m_nRowUpsPending > 0 || m_nRowDownsPending > 0; again = true) {
        if (again && wanted) select();
        int& queued = m_nRowUpsPending > 0 ? m_nRowUpsPending : m_nRowDownsPending;
        MoveRow(m_nRowUpsPending > 0 ? -1 : 1, true);
        --queued;
    }
    m_bSelStart = m_bSelExtend = false;
}

}  // namespace vonta
