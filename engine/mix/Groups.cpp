// The groups: all voices of an instrument, summed and sent to the instrument's output pair.
#include <bitset>

#include "engine/mix/Stages.h"
#include "platform/Shared.h"

namespace vonta {

void MixGroups(Segment& segment) {
    std::bitset<kMaxInstruments> written;
    for (const Part& part : segment.heard) {
        const Channel& channel = *part.channel;
        Instrument* instrument = segment.song.GetInstrument(channel.lastInstrument);
        if (!channel.groupOutput || !instrument) continue;
        const std::size_t number = channel.lastInstrument;
        if (!segment.mixer.groupUsed[number]) {
            segment.mixer.groupUsed[number] = 1;
            segment.ClearBefore(instrument->groupBuffer);
        }
        Sum({segment.At(instrument->groupBuffer), written[number]}, part.sound, segment.frames,
            StereoToStereo(channel.busLeft, channel.busRight));
        written.set(number);
    }
    for (int i = 0; i < kMaxInstruments; ++i) {
        if (!segment.mixer.groupUsed[static_cast<std::size_t>(i)]) continue;
        Instrument& instrument = *segment.song.GetInstrument(i);
        if (!written[static_cast<std::size_t>(i)]) {
            segment.Silence(instrument.groupBuffer);
            continue;
        }
        Sum(segment.Output(Load(instrument.groupOutput)), segment.At(instrument.groupBuffer), segment.frames,
            Unscaled());
    }
}

}  // namespace vonta
