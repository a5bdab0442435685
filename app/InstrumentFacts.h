// What `vonta info` tells of an instrument and of a sample, gathered once and printed in one form or the other.
#pragma once

#include <cstdint>
#include <iosfwd>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <vector>

#include "song/Instrument.h"

namespace vonta {

struct SampleFacts {
    int number = 0;                                  // from 1
    std::string name;
    std::uint32_t frames = 0;
    int channels = 1, volume = 0, panning = 0;
    int bits = 8;                                    // that its values need: 8, 16 or 32
    int toneRel = 0, fineTune = 0;                   // semitones, and 1/128 of one
    std::uint32_t middleRate = 0;                    // Hz at which note C-4 plays it
    bool isClone = false;
    const char* loop = "none";                       // none, forward or ping-pong
    std::uint32_t loopStart = 0, loopEnd = 0;        // frames; the end is exclusive
};

// Keys that one zone covers alike.
struct ZoneFacts {
    int keyLow = 0, keyHigh = 0;                     // inclusive; 0 is C-0
    int velocityLow = 0, velocityHigh = 0;           // inclusive
    std::vector<int> samples;                        // layers that sound together, from 1
};

// One that is switched on.
struct EnvelopeFacts {
    const char* kind = "";
    int alternative = 0;                             // from 1, as all points here
    int points = 0, lastTick = 0;
    int sustain = 0, loopStart = 0, loopEnd = 0;     // 0: none
};

struct InstrumentFacts {
    int number = 0;                                  // from 1
    std::string name;
    int fadeOut = 0;                                 // 0 to 4095
    std::vector<SampleFacts> samples;
    std::vector<ZoneFacts> zones;
    std::vector<EnvelopeFacts> envelopes;
};

SampleFacts DescribeSample(const Sample& sample, int number);
InstrumentFacts DescribeInstrument(const Instrument& instrument, int number);

void PrintSample(std::ostream& out, const SampleFacts& sample);          // a line
void PrintInstrument(std::ostream& out, const InstrumentFacts& instrument);   // name, samples, zones, envelopes
nlohmann::ordered_json AsJson(const SampleFacts& sample);
nlohmann::ordered_json AsJson(const InstrumentFacts& instrument);

// Names of files are any bytes: what is not UTF-8 becomes U+FFFD.
std::string Dump(const nlohmann::ordered_json& json);

// The first column of a description, and a name of a file: old trackers fill names up with blanks.
std::ostream& Label(std::ostream& out, const char* label);
std::string Trimmed(std::string_view text);

}  // namespace vonta
