#include "engine/sequence/HostSync.h"

#include <cmath>

#include "platform/Debug.h"

namespace vonta {
namespace {

constexpr double kTicksPerUnit = 480 * 0.05;      // of the host's position
constexpr int kRowsCompared = 64;

}  // namespace

HostSync::Place HostSync::ReadPlace() {
    constexpr double kLongest = Sequencer::kLongestSeek;
    const double position = mixer_.device->GetSyncTime() * kTicksPerUnit;
    const double bounded = position > 0.0 ? std::fmin(position, kLongest) : 0.0;
    const std::uint32_t tempo = sequencer_.PlayedSong().GetTempo();
    Place place;
    place.tick = static_cast<std::uint32_t>(bounded);
    place.fraction = bounded - place.tick;
    place.row = tempo ? place.tick / tempo : 0;
    const bool usable = mixer_.device->ReleaseSyncTime() != 0;
    place.usable = usable && position <= kLongest;   // beyond, and for what is no number, the player runs free
    return place;
}

void HostSync::Follow() {
    DrvSound& device = *mixer_.device;
    const float tempo = device.GetSyncTempo();
    if (tempo > 0.0f && Sequencer::BoundedBpm(tempo) != sequencer_.GetBPM()) {
        sequencer_.SetBPM(tempo);
        mixer_.syncSamples = 0;
    }
    mixer_.syncSamples += mixer_.blockBytes / kDeviceFrameBytes;

    const bool hostPlays = device.IsSyncPlaying();
    if (hostPlays && !sequencer_.IsPlaying()) {
        requests_.Play(0);
        sequencer_.SeekToTick(ReadPlace().tick);
        DebugOutput("Syncronized Ticks\n");
    } else if (!hostPlays && sequencer_.IsPlaying()) {
        requests_.Stop(0, 0);
    }
    if (sequencer_.IsPlaying()) FollowPosition();
}

void HostSync::FollowPosition() {
    const Place host = ReadPlace();
    const std::uint32_t tick = host.tick, own = sequencer_.TicksPlayed();
    desynced_ = !host.usable || tick + 1 < own || tick > own + 1;
    if (!host.usable) return;
    const int expectedRow = static_cast<int>(host.row % kRowsCompared);
    if (expectedRow != sequencer_.Row())
        DebugOutput("Lineaactual erronea actualpatron(%i) actualSync(%i)\n", int{sequencer_.Row()}, expectedRow);
    const int hostSample = static_cast<int>(host.fraction * static_cast<double>(Load(mixer_.samplesPerTick)));
    const int ownSample = static_cast<int>(mixer_.tickPosition);
    DebugOutput("TimeValid: TickCubase(%i)(%i) TickVonta(%i)(%i)", static_cast<int>(tick), hostSample,
                static_cast<int>(own), ownSample);
    if (tick == own) {
        DebugOutput(ownSample == hostSample ? " Perfect" : " OK");
        mixer_.tickPosition = static_cast<float>(hostSample);
    } else if (tick == own + 1) {
        DebugOutput(" Tick anterior");
        mixer_.tickPosition = Load(mixer_.samplesPerTick);   // the next segment is empty, and the tick falls at once
    } else if (tick + 1 == own) {
        DebugOutput(" Tick siguiente");
        mixer_.tickPosition = 0;                        // the tick just run is given a full length again
    } else {
        DebugOutput(" (Not Sync): Setting current tick to sincronice");
        sequencer_.SeekToTick(tick);
        positionJumped_ = true;
    }
    DebugOutput("\n");
}

}  // namespace vonta
