// Following a host that has a transport of its own: tempo, start and stop, and position by up to one tick without an
// audible jump. Its lines reach the debug output while a sink is attached, and cost nothing otherwise.
#include <cmath>

#include "engine/SndPlayer.h"
#include "platform/Debug.h"

namespace vonta {
namespace {

constexpr double kTicksPerUnit = 480 * 0.05;      // of the host's position
constexpr int kRowsCompared = 64;

}  // namespace

bool SndPlayer::GetSyncPosition(std::uint32_t& tick, double& fraction, std::uint32_t& row) {
    const double position = mixer_->device->GetSyncTime() * kTicksPerUnit;
    const double bounded = position > 0.0 ? std::fmin(position, double{kLongestSeek}) : 0.0;
    tick = static_cast<std::uint32_t>(bounded);
    fraction = bounded - tick;
    row = song_->GetTempo() ? tick / song_->GetTempo() : 0;
    const bool usable = mixer_->device->ReleaseSyncTime() != 0;
    return usable && position <= double{kLongestSeek};   // beyond, and for what is no number, the player runs free
}

void SndPlayer::FollowHost() {
    DrvSound& device = *mixer_->device;
    const float tempo = device.GetSyncTempo();
    if (tempo > 0.0f && BoundedBpm(tempo) != bpm_) {
        SetBPM(tempo);
        mixer_->syncSamples = 0;
    }
    mixer_->syncSamples += mixer_->blockBytes / kDeviceFrameBytes;

    const bool hostPlays = device.IsSyncPlaying();
    if (hostPlays && !playing_) {
        Play(0);
        std::uint32_t tick, row;
        double fraction;
        GetSyncPosition(tick, fraction, row);
        SeekToTick(tick);
        DebugOutput("Syncronized Ticks\n");
    } else if (!hostPlays && playing_) {
        Stop(0, 0);
    }
    if (playing_) FollowHostPosition();
}

void SndPlayer::FollowHostPosition() {
    std::uint32_t tick, row;
    double fraction;
    const bool usable = GetSyncPosition(tick, fraction, row);
    desynced_ = !usable || tick + 1 < tickCounter_ || tick > tickCounter_ + 1;
    if (!usable) return;
    const int expectedRow = static_cast<int>(row % kRowsCompared);
    if (expectedRow != row_)
        DebugOutput("Lineaactual erronea actualpatron(%i) actualSync(%i)\n", int{row_}, expectedRow);
    const int hostSample = static_cast<int>(fraction * static_cast<double>(Load(mixer_->samplesPerTick)));
    const int ownSample = static_cast<int>(mixer_->tickPosition);
    const std::uint32_t own = tickCounter_;
    DebugOutput("TimeValid: TickCubase(%i)(%i) TickVonta(%i)(%i)", static_cast<int>(tick), hostSample,
                static_cast<int>(own), ownSample);
    if (tick == own) {
        DebugOutput(ownSample == hostSample ? " Perfect" : " OK");
        mixer_->tickPosition = static_cast<float>(hostSample);
    } else if (tick == own + 1) {
        DebugOutput(" Tick anterior");
        mixer_->tickPosition = Load(mixer_->samplesPerTick);   // the next segment is empty, and the tick falls at once
    } else if (tick + 1 == own) {
        DebugOutput(" Tick siguiente");
        mixer_->tickPosition = 0;                        // the tick just run is given a full length again
    } else {
        DebugOutput(" (Not Sync): Setting current tick to sincronice");
        SeekToTick(tick);
        positionJumped_ = true;
    }
    DebugOutput("\n");
}

}  // namespace vonta
