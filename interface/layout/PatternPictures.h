// The small pictures that the pattern view and the channel cells are put together from: their numbers and sizes.
#pragma once

#include <array>

namespace vonta {

enum PatternPicture : int {
    kPictureMark = 66, kPictureNextMark = 67,    // a channel of multichannel entry; the first 6 by 5 pixels stand alone
    kPictureIdle = 68, kPictureActive = 69,      // whether a channel sounds: a lamp
    kPictureCellLine = 72,                       // between two channel cells
    kPictureLevelPeak = 73,                      // the highest of a level bar
    kPictureBeatRow = 75, kPictureCursorRow = 76, kPictureTrackLine = 81, kPictureCursor = 82,
    kPictureMutedChannel = 83,                   // over a muted cell; also shown up to 32 times narrower, cut to the cell
    kPictureBarRow = 194,                        // each other beat
};

struct PictureSize {
    int bitmap, width, height;
};
inline constexpr std::array kPatternPictures = {
    PictureSize{kPictureMark, 14, 8},        PictureSize{kPictureNextMark, 14, 8},
    PictureSize{kPictureIdle, 7, 8},         PictureSize{kPictureActive, 7, 8},
    PictureSize{kPictureCellLine, 1, 56},    PictureSize{kPictureLevelPeak, 2, 12},
    PictureSize{kPictureBeatRow, 800, 13},   PictureSize{kPictureCursorRow, 800, 13},
    PictureSize{kPictureTrackLine, 2, 352},  PictureSize{kPictureCursor, 84, 13},   // cut to the column's width
    PictureSize{kPictureMutedChannel, 336, 50},
    PictureSize{kPictureBarRow, 800, 13},
};

}  // namespace vonta
