// The parts of the signal path that a mixdown by parts gives a file each.
#pragma once

#include <string>
#include <vector>

#include "engine/mix/Mixer.h"

namespace vonta {

struct MixdownPart {
    std::string suffix;                              // of the file name: "_Effect03.wav"
    int index = 0;                                   // pair, slot, bus, instrument or synth, from 0

    // The block just rendered, kRenderFrames of interleaved stereo at the 16-bit scale: the part's own buffer, or
    // `scratch`.
    const float* (*read)(const Mixer& mixer, const Song& song, int index, StereoBuffer& scratch) = nullptr;
};

// The main output alone, as a mixdown to one file takes it.
MixdownPart WholeMix(const std::string& extension);

// What exists in this song and mixer: output pairs with a group, effects, buses, instruments, synths, in this order.
std::vector<MixdownPart> FindParts(const Mixer& mixer, const Song& song);

}  // namespace vonta
