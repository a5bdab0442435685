// The sounds of the demo song, synthesised: nothing is recorded, so the song is made from these lines alone.
//
// Waves are peak-normalised to 1. Drums and noises are meant for 44100 Hz. Tones are measured in frames per cycle
// and hold only as many harmonics as the highest key of their zone can carry; those that loop end where they begin.
#pragma once

#include <cstdint>
#include <vector>

namespace vonta::demo {

using Wave = std::vector<float>;

constexpr double kDrumRate = 44100.0;          // Hz
constexpr int kFramesPerCycle = 256;           // of every tone

Wave MakeKick();
Wave MakeSnare();
Wave MakeClap();
Wave MakeHat(double seconds);                  // how long it rings: closed or open
Wave MakeTom();                                // pitched: 110 Hz
Wave MakeCrash();                              // stereo
Wave MakeRiser();                              // four seconds of noise that opens up

// One cycle, looped.
Wave MakeBass(int harmonics);
Wave MakeSquare(int harmonics);

// Many cycles of detuned voices, looped.
Wave MakeLead(int harmonics);
Wave MakePad(int harmonics);                   // stereo

// Struck or plucked: they ring out and do not loop.
Wave MakePluck(int harmonics);
Wave MakeKeys(int harmonics);

}  // namespace vonta::demo
