#include "app/SongLength.h"

#include "app/Interrupt.h"

namespace vonta {

SongLength MeasureSong(SndPlayer& player, double maxSeconds) {
    const MixerPause pause(player);
    player.GetMixer().tickPosition = 0;
    player.SetPosition(0);
    player.SetStopAtEnd(true);
    player.SetVisitTracking(true);
    player.PerformPlay(0);

    SongLength length;
    const double blockSeconds = static_cast<double>(kRenderFrames) / player.GetMixer().sampleRate;
    for (bool ended = false; !ended && !Interrupted();) {
        ended = player.RenderSilently(kRenderFrames) || player.GetSong().GetTempo() == 0;
        length.seconds += blockSeconds;
        if (player.Revisited()) length.end = SongLength::End::Circle;
        else if (!ended && length.seconds >= maxSeconds) length.end = SongLength::End::Limit;
        ended = ended || length.end != SongLength::End::Song;
    }
    player.PerformStop(0, 1);
    player.SetVisitTracking(false);
    player.SetStopAtEnd(false);
    return length;
}

}  // namespace vonta
