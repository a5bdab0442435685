// A player without a device, which a test steps by ticks, rows or blocks.
#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "engine/SndPlayer.h"
#include "tests/support/SongBuilder.h"

namespace vonta {

class PlayerRig {
public:
    explicit PlayerRig(std::unique_ptr<Song> song, std::uint32_t sampleRate = 44100) {
        player.SetSampleRate(sampleRate);
        player.SetSong(std::move(song));
        player.PerformPlay(0);
    }

    // Row 0 is performed a row's length after Play. Afterwards the first tick of row `row` of an undisturbed song has
    // just been worked.
    void ToRow(int row) { Ticks(static_cast<int>(player.GetSong().GetTempo()) * (row + 1)); }
    void Ticks(int count) { for (int i = 0; i < count; ++i) player.DoTick(); }

    // "position:row" of the next rows, of a song whose tempo is 1.
    std::vector<std::string> Rows(int count) {
        std::vector<std::string> rows;
        for (int i = 0; i < count; ++i) {
            player.DoTick();
            const PlayPosition at = player.GetCurrentPlayPos();
            rows.push_back(std::to_string(at.position) + ":" + std::to_string(at.row));
        }
        return rows;
    }

    // The next frames of output pair 0, interleaved, rendered in blocks of `block` frames.
    std::vector<float> Frames(int frames, int block = kRenderFrames) {
        std::vector<float> out;
        while (frames > 0) {
            const int now = std::min(frames, block);
            player.Render(now);
            const float* values = player.GetMixer().finalBuffer[0].data();
            out.insert(out.end(), values, values + 2 * now);
            frames -= now;
        }
        return out;
    }

    Channel& Track(int track) { return player.GetChannel(track); }
    const Voice& FirstVoice(int track = 0) { return Track(track).voices[0]; }

    SndPlayer player;
};

}  // namespace vonta
