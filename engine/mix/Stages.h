// What happens to one segment between the mix loop and the master section, stage by stage.
//
// A Segment lives on the stack of Mixer::MixSegment and passes through the stages in the order in which they stand
// here. Whatever the interface may store while sound runs is read once, so that a stage never sees two values of it.
// Audio thread.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "engine/mix/Mixer.h"
#include "engine/mix/StereoSum.h"
#include "song/Song.h"

namespace vonta {

// A channel that takes part in the stages after the mix, and its sound of this segment.
struct Part {
    Channel* channel;
    float* sound;
    bool reserve;
};

// The table's channels come first, then the reserve's.
class PartList {
public:
    void Add(const Part& part) { parts_[count_++] = part; }
    const Part* begin() const { return parts_.data(); }
    const Part* end() const { return parts_.data() + count_; }

private:
    std::array<Part, 2 * kTracks> parts_;
    std::size_t count_ = 0;
};

// A plug-in of the song with its mixing section.
struct SynthPart {
    SynthPlugin* plugin;
    float* sound;
    float left, right;                            // gains into buses and outputs
    bool on, muted;
};

class SynthList {
public:
    void Add(const SynthPart& part) { parts_[count_++] = part; }
    const SynthPart* begin() const { return parts_.data(); }
    const SynthPart* end() const { return parts_.data() + count_; }

private:
    std::array<SynthPart, kMaxInstruments> parts_;
    std::size_t count_ = 0;
};

struct Segment {
    Mixer& mixer;
    Song& song;
    int offset, frames;                           // of the block

    PartList sounding;                            // every channel that sounds
    PartList audible;                             // those that filters and bands work on
    PartList heard;                               // those that the sums take: no muted instruments
    SynthList synths;
    std::uint8_t busesWritten = 0;                // bit per bus, slot and output pair
    std::uint16_t slotsWritten = 0, outputsWritten = 0;

    Segment(Mixer& itsMixer, Song& itsSong, int itsOffset, int itsFrames)
        : mixer(itsMixer), song(itsSong), offset(itsOffset), frames(itsFrames) {}

    float* At(StereoBuffer& buffer) const { return buffer.data() + 2 * offset; }
    // A buffer that is used for the first time in a block is silent up to here; one that was used and is not written in
    // this segment is silent in it. So nothing is cleared that will be stored.
    void ClearBefore(StereoBuffer& buffer) const;
    void Silence(StereoBuffer& buffer) const;
    // Where a sum into an output pair goes; a pair that does not exist is the first.
    Sink Output(int pair);
};

void MixVoices(Segment& segment);
void FindAudible(Segment& segment);
void RunFilters(Segment& segment);
void RunSynths(Segment& segment);
void MixBuses(Segment& segment);
void RunSendSlots(Segment& segment);
void MixGroups(Segment& segment);
void MixSynthsOut(Segment& segment);
void MixBusesOut(Segment& segment);
void SilenceOutputs(Segment& segment);

}  // namespace vonta
