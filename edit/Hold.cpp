#include "edit/Hold.h"

namespace vonta {

void StopSample(SndPlayer& player, const SampleData& data) {
    const Song& song = player.GetSong();
    for (int slot = 0; slot < kMaxInstruments; ++slot) {
        const Instrument* instrument = song.GetInstrument(slot);
        for (int i = 0; instrument && i < kMaxSamples; ++i) {
            const Sample* sample = instrument->GetSample(i);
            if (!sample || &sample->data->Source() != &data) continue;
            player.StopInstrument(slot);
            break;
        }
    }
}

}  // namespace vonta
