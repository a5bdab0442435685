// The instrument plug-ins of the song: their work of a segment, and their way to the outputs.
#include <algorithm>

#include "engine/mix/Stages.h"
#include "platform/Shared.h"

namespace vonta {

void RunSynths(Segment& segment) {
    for (const auto& synth : segment.song.synths) {
        if (!synth) continue;
        float* sound = segment.At(synth->buffer);
        std::fill(sound, sound + 2 * segment.frames, 0.0f);
        synth->SetBypass(0);
        synth->Work(sound, segment.frames, 0);
        DropNonFinite(sound, 2 * segment.frames);

        const float pan = Load(synth->pan), volume = Load(synth->volume) * kSynthScale;
        segment.synths.Add({synth.get(), sound, (1.0f - pan) * volume, pan * volume, Load(synth->on) != 0,
                            Load(synth->muted) != 0});
    }
}

void MixSynthsOut(Segment& segment) {
    for (const SynthPart& synth : segment.synths)
        if (synth.on && !synth.muted)
            Sum(segment.Output(Load(synth.plugin->output)), synth.sound, segment.frames,
                StereoToStereo(synth.left, synth.right));
}

}  // namespace vonta
