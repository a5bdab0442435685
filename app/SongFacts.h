// What `vonta info` tells of a song, gathered once and printed in one form or the other.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "app/InstrumentFacts.h"
#include "app/SongLength.h"
#include "song/Song.h"

namespace vonta {

struct SongFacts {
    std::string file, title, format, comments;
    int channels = 0, patterns = 0, orderLength = 0, restart = 0;
    int rows = 0;                                    // of all positions of the order
    int bpm = 0, ticksPerRow = 0;                    // at the start
    std::vector<int> order;
    std::vector<InstrumentFacts> instruments;        // the empty ones without a name left out
    SongLength length;
};

SongFacts GatherFacts(const Song& song);             // all but file, format and length

std::string FormatAsText(const SongFacts& facts);
std::string FormatAsJson(const SongFacts& facts);

}  // namespace vonta
