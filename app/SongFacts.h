// What `vonta info` tells of a song, gathered once and printed in one form or the other.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "app/SongLength.h"
#include "song/Song.h"

namespace vonta {

struct SampleFacts {
    int number = 0;                                  // from 1
    std::string name;
    std::uint32_t frames = 0;
    int channels = 1, bits = 8, volume = 0, panning = 0;
    int toneRel = 0, fineTune = 0;                   // semitones, and 1/128 of one
    std::uint32_t middleRate = 0;                    // Hz at which note C-4 plays it
    bool isClone = false;
    const char* loop = "none";                       // none, forward or ping-pong
    std::uint32_t loopStart = 0, loopEnd = 0;        // frames; the end is exclusive
};

struct InstrumentFacts {
    int number = 0;                                  // from 1
    std::string name;
    std::vector<SampleFacts> samples;
};

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
