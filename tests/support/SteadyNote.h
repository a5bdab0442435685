// A song of one note that sounds for minutes, and what it is without a device.
#pragma once

#include "tests/support/PlayerRig.h"
#include "tests/support/Tone.h"

namespace vonta {

// Its right side is half as loud as its left. It begins at once, and then a row takes 0.6 s, ten
// minutes in all.
inline std::unique_ptr<Song> SteadyNote() {
    constexpr int kTempoCommand = 15;
    std::vector<float> values = SineWave(256, 2);
    for (std::size_t i = 1; i < values.size(); i += 2) values[i] *= 0.5f;
    return SongBuilder().Order({0, 1, 1, 1}).Pattern(1, 256).Pattern(0, 256).Tempo(1).SampleInstrument(0, values, 2, {VTSAMPLE_LOOP_FORDWARD, 0, 256})
        .Note(0, 0, 48, 1, kNoVolume, kTempoCommand, 31).Build();
}

// One side of interleaved frames: 0 is left.
template <class Value>
std::vector<float> SideOf(const std::vector<Value>& frames, std::size_t side) {
    std::vector<float> wave;
    for (std::size_t i = side; i < frames.size(); i += 2) wave.push_back(static_cast<float>(frames[i]));
    return wave;
}

// At the 16-bit scale.
inline Tone SteadyTone(std::uint32_t rate, std::size_t side) {
    PlayerRig rig(SteadyNote(), rate);
    rig.Frames(static_cast<int>(rate) / 4);
    return MeasureTone(SideOf(rig.Frames(static_cast<int>(rate)), side), rate);
}

}  // namespace vonta
