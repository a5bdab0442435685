// Whether the song differs from what was saved: by a number over all that an edit can reach.
#include "interface/view/TrackerState.h"

namespace vonta {
namespace {

class Fingerprint {
public:
    void Add(std::uint64_t value) { sum_ = (sum_ ^ value) * 0x100000001B3u; }
    void Add(const std::string& text) { Add(std::hash<std::string>()(text)); }
    void Add(const void* object) { Add(static_cast<std::uint64_t>(reinterpret_cast<std::uintptr_t>(object))); }
    std::uint64_t Sum() const { return sum_; }

private:
    std::uint64_t sum_ = 0xCBF29CE484222325u;
};

std::uint64_t NumberOf(const Cell& cell) {
    return cell.note | std::uint64_t{cell.instrument} << 8 | std::uint64_t{cell.volume} << 16 |
           std::uint64_t{cell.effect} << 32 | std::uint64_t{cell.param} << 40;
}

void AddPattern(Fingerprint& sum, const Pattern& pattern) {
    sum.Add(static_cast<std::uint64_t>(pattern.Rows()));
    for (int track = 0; track < kTracks; ++track)
        for (int row = 0; row < pattern.Rows(); ++row) sum.Add(NumberOf(pattern.Read(row, track)));
}

void AddInstrument(Fingerprint& sum, const Instrument& instrument) {
    sum.Add(&instrument);
    sum.Add(instrument.name);
    for (int i = 0; i < kMaxSamples; ++i)
        if (const Sample* sample = instrument.GetSample(i)) {
            sum.Add(sample);
            sum.Add(sample->name);
        }
}

std::uint64_t FingerprintOf(const Song& song) {
    Fingerprint sum;
    sum.Add(song.title);
    sum.Add(song.comments);
    sum.Add(song.StartBpm());
    sum.Add(song.StartTempo());
    sum.Add(song.GetPatternPosLenght());
    sum.Add(song.GetPatternPosRestart());
    for (int i = 0; i < kMaxPositions; ++i) sum.Add(static_cast<std::uint64_t>(song.GetPatternPosIndex(i)));
    sum.Add(static_cast<std::uint64_t>(song.numChannels));
    for (int i = 0; i < kMaxPatterns; ++i)
        if (const Pattern* pattern = song.GetPattern(i)) AddPattern(sum, *pattern);
    for (int i = 0; i < kMaxInstruments; ++i)
        if (const Instrument* instrument = song.GetInstrument(i)) AddInstrument(sum, *instrument);
    return sum.Sum();
}

}  // namespace

bool TrackerState::IsChanged() const { return markedChanged_ || FingerprintOf(CurrentSong()) != savedFingerprint_; }

void TrackerState::MarkSaved() {
    markedChanged_ = false;
    savedFingerprint_ = FingerprintOf(CurrentSong());
}

}  // namespace vonta
