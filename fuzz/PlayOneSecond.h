// What loaded must also play: a second of it, and every value that comes out must be a number.
#pragma once

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <utility>

#include "engine/SndPlayer.h"
#include "song/Song.h"

namespace vonta {

inline void PlayOneSecond(std::unique_ptr<Song> song) {
    constexpr std::uint32_t kSampleRate = 8000;      // Hz; low, so that a second is cheap
    constexpr int kBlockFrames = 397;                // odd, so that ticks fall anywhere in a block
    static SndPlayer player;
    player.SetSampleRate(kSampleRate);
    player.SetSong(std::move(song));
    player.PerformPlay(0);
    for (int frames = 0; frames < static_cast<int>(kSampleRate); frames += kBlockFrames) {
        player.Render(kBlockFrames);
        for (const auto& pair : player.GetMixer().finalBuffer)
            for (int i = 0; i < 2 * kBlockFrames; ++i)
                if (!std::isfinite(pair[static_cast<std::size_t>(i)])) std::abort();
    }
    player.PerformStop(0, 1);
}

// A note an octave, up the keys, and one of them let go.
inline void PlayInstrument(std::unique_ptr<Instrument> instrument) {
    constexpr int kHighest = 95;
    auto song = Song::MakeDefault();
    song->SetTempo(3);
    song->SetInstrument(0, std::move(instrument));
    song->numInstruments = 1;
    Pattern& pattern = *song->GetPattern(0);
    int row = 0;
    for (int key = 0; key <= kHighest; key += 12, ++row)
        pattern.Write(row, row % 2, {static_cast<std::uint8_t>(key), 1, static_cast<std::uint16_t>(16 * row), 0, 0});
    pattern.Write(row, 0, {kNoteOff, 0, kNoVolume, 0, 0});
    PlayOneSecond(std::move(song));
}

}  // namespace vonta
