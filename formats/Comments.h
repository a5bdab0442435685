// Comments for a song of a format that has none.
#pragma once

#include <string>

#include "song/Song.h"

namespace vonta {

// A line for each instrument: composers write their greetings into those names. Lines end with a carriage return.
inline std::string CommentsFromNames(const Song& song) {
    std::string comments;
    for (const auto& instrument : song.instruments)
        if (instrument) comments += instrument->name + '\r';
    return comments;
}

}  // namespace vonta
