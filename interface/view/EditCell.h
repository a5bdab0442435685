// How the editor changes a cell while the player may read it, and how it holds the player when a part of the song goes.
#pragma once

#include "engine/SndPlayer.h"
#include "song/Pattern.h"

namespace vonta {

template <class Edit>
void EditCell(Pattern& pattern, int row, int track, Edit edit) {
    Cell cell = pattern.Read(row, track);
    edit(cell);
    pattern.Write(row, track, cell);
}

// While it lives no note sounds and the audio side stands still, so that waves, envelopes and plug-ins may be freed.
// What plays goes on playing after it.
class SilentPause {
public:
    explicit SilentPause(SndPlayer& player) : pause_(player) { player.StopNotes(); }

private:
    MixerPause pause_;
};

}  // namespace vonta
