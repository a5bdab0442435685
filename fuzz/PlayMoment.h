// What loaded must also play: a moment of it, and every value that comes out must be a number.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <utility>

#include "engine/SndPlayer.h"
#include "song/Song.h"

namespace vonta {

inline void Require(bool holds) {
    if (!holds) std::abort();
}

// Short, for the number of inputs is what finds faults. $VONTA_MOMENT makes it longer: frames at 8000 Hz.
inline int MomentFrames() {
    static const int frames = [] {
        const char* asked = std::getenv("VONTA_MOMENT");
        return asked ? std::atoi(asked) : 160;
    }();
    return frames;
}

inline void PlayMoment(std::unique_ptr<Song> song) {
    constexpr int kBlockFrames = 397;                // odd, so that ticks fall anywhere in a block
    static SndPlayer& player = *new SndPlayer;       // one for all inputs
    player.SetSampleRate(8000);
    player.SetSong(std::move(song));
    player.PerformPlay(0);
    for (int left = MomentFrames(); left > 0; left -= kBlockFrames) {
        const int frames = std::min(left, kBlockFrames);
        player.Render(frames);
        for (const auto& pair : player.GetMixer().finalBuffer)
            Require(std::all_of(pair.begin(), pair.begin() + 2 * frames, [](float value) { return std::isfinite(value); }));
    }
    player.PerformStop(0, 1);
}

// Octaves up the keys at once, and half of them let go on the next row.
inline void PlayInstrument(std::unique_ptr<Instrument> instrument) {
    auto song = Song::MakeDefault();
    song->SetTempo(kMinTempo);
    song->SetBPM(kMaxBpm);
    song->SetInstrument(0, std::move(instrument));
    song->numInstruments = 1;
    Pattern& pattern = *song->GetPattern(0);
    for (int track = 0; track < 8; ++track) {
        const auto key = static_cast<std::uint8_t>(12 * track + track / 2);
        pattern.Write(0, track, {key, 1, static_cast<std::uint16_t>(16 * track), 0, 0});
        if (track % 2) pattern.Write(1, track, {kNoteOff, 0, kNoVolume, 0, 0});
    }
    PlayMoment(std::move(song));
}

}  // namespace vonta
