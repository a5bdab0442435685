// What can be done to a stretch of a wave, in place: a selection, or the whole. Values are at the 16-bit scale, frames
// whole and interleaved. Each makes one or two passes, so that a wave of ten minutes takes a part of a second.
#pragma once

#include <span>

namespace vonta {

enum class WaveTool : int { Normalise, FadeIn, FadeOut, Reverse, Silence, RemoveDc, SwapSides };
constexpr int kWaveTools = 7;

// "fade in": what the step of the journal is called.
const char* NameOf(WaveTool tool);
// False if it would change nothing: silence cannot be made louder, and one side has none to swap with.
bool Apply(WaveTool tool, std::span<float> stretch, int channels);

void Scale(std::span<float> stretch, float factor);
float PeakOf(std::span<const float> stretch);    // of the absolute values

// One value a frame: the mean of both sides.
void MixToMono(std::span<const float> stereo, std::span<float> mono);

}  // namespace vonta
