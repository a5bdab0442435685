// The five layouts of the pattern view: where the fields of a track stand and in which fonts, and where the cursor
// lies over them. Painting, selection and mouse all go by this table.
//
// The view lies at (0, kViewTop) and is 800 pixels wide. Its rows are kRowHeight pixels high; the topmost is taken by
// the header with the track numbers. The cursor row never moves.
#pragma once

#include <array>

#include "interface/video/Font.h"
#include "interface/view/TrackerState.h"

namespace vonta {

constexpr int kViewTop = 248;
constexpr int kViewRows = 27;                    // one less where the scrollbar stands
constexpr int kCursorRowY = kRowsAboveCursor * kRowHeight;      // from kViewTop
constexpr int kScrollbarY = 584;

struct ViewField {
    Font Fonts::* font = nullptr;                // null: not in this layout
    int x = 0;                                   // in the track
};

struct PatternView {
    int channels;                                // visible ones
    int width;                                   // from track to track
    int mouseWidth;                              // the same, as the mouse counts it
    int headerX, headerPitch;                    // of the track numbers
    int firstCell;                               // x of the first track's cells
    Font Fonts::* rowFont;                       // of the row numbers
    ViewField note, instrument, volume, effect;
    int cursorOrigin;                            // x of the first vertical line
    std::array<int, kColumns> cursorX;           // of each column, from the track's line
    int noteWidth, instrumentWidth, volumeWidth, effectWidth;   // of the cursor block; a digit's but for the note

    int TrackX(int visibleTrack) const { return cursorOrigin + visibleTrack * width; }   // of its line
    int CursorWidth(int column) const;
};

// Of 4, 8, 16, 24 or 32 visible channels; the next wider layout for any other number.
const PatternView& ViewOf(int visibleChannels);

// The least layout that shows all channels of a song, or the widest.
int ChannelsThatFit(int songChannels);
int ViewRows(const EditValues& values, int songChannels);

}  // namespace vonta
