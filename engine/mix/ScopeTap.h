// What others may see of the sound while it runs: which tracks sound, the peak of the first output pair, and short
// traces of the tracks and of that pair, all at the 16-bit scale, and where in their waves the voices are.
//
// The audio side writes, anyone reads, and nobody waits: a reader may find the beginning of one picture and the end of
// the last, which is good enough to be looked at. Traces are only kept while somebody watches.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>

#include "platform/Shared.h"
#include "song/Instrument.h"
#include "song/Pattern.h"

namespace vonta {

struct Channel;
struct Mixer;

class ScopeTap {
public:
    static constexpr int kPoints = 256;           // of a trace, 1 / 44100 s apart at any sample rate
    using Trace = std::array<Relaxed<float>, kPoints>;

    void Watch() { segmentsWanted_ = kSegmentsWatched; }   // call it once a frame
    bool IsActive(int track) const { return active_[static_cast<std::size_t>(track)]; }
    const Trace& OfTrack(int track) const { return tracks_[static_cast<std::size_t>(track)].points; }   // both sides added
    const Trace& OfOutput(int side) const { return output_[static_cast<std::size_t>(side)].points; }
    // Where a voice of a track reads: the wave, null if it is silent, and the float in it.
    struct Reading {
        Relaxed<const float*> wave{nullptr};
        Relaxed<std::uint32_t> position{0};
    };
    using Readings = std::array<Reading, kMaxLayers>;
    const Readings& ReadingsOf(int track) const { return readings_[static_cast<std::size_t>(track)]; }
    // Of what sounds, if it does.
    int InstrumentOf(int track) const { return instruments_[static_cast<std::size_t>(track)]; }
    // The highest since the last call, 0 to 32767 as a rule.
    float TakePeak(int side) { return peak_[static_cast<std::size_t>(side)].exchange(0.0f, std::memory_order_relaxed); }

    // Audio side: a segment that has been mixed, a block that is finished.
    void TakeSegment(const Mixer& mixer, int offset, int frames);
    void TakeBlock(const Mixer& mixer, int frames);

private:
    static constexpr int kSegmentsWatched = 1000; // some seconds

    struct Kept {
        Trace points{};
        bool silent = true;                       // all zero
    };
    // Which points the frames of a piece fall on.
    struct Walk {
        int first = 0, count = 0;
        float step = 1;                           // frames from point to point
    };
    void NoteReadings(std::size_t track, const Channel& channel);
    static Walk Next(int& at, float sampleRate, int frames);
    static void Silence(Kept& kept);

    std::array<Kept, kTracks> tracks_;
    std::array<Kept, 2> output_;
    std::array<Relaxed<std::uint8_t>, kTracks> active_{}, instruments_{};
    std::array<Readings, kTracks> readings_{};
    std::array<std::atomic<float>, 2> peak_{};
    Relaxed<std::int32_t> segmentsWanted_{0};
    int trackPoint_ = 0, outputPoint_ = 0;        // where the next piece goes on; audio side
};

}  // namespace vonta
