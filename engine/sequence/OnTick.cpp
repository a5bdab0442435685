// The block cycle: what happens each time the device can take more sound.
#include <algorithm>

#include "engine/SndPlayer.h"
#include "platform/FaultGuard.h"
#include "platform/FlushToZero.h"

namespace vonta {
namespace {
constexpr std::uint32_t kChunkBytes = kRenderFrames * kDeviceFrameBytes;
}

// A fault ends the sound and its timer but not the program: the handler saves the song. inCallback stays set then,
// since what the cycle held is lost.
bool SndPlayer::Cycle::OnTick() {
    const auto run = [](void* player) { static_cast<SndPlayer*>(player)->BlockCycle(); };
    if (RunGuarded(run, &player_)) return false;
    player_.device_.Gate().Lose();
    if (player_.crashHandler_) player_.crashHandler_->OnCrash(1);
    return true;
}

void SndPlayer::BlockCycle() {
    if (!device_.Gate().Enter()) return;
    const FlushToZero flush;
    requests_.TakeCommands([this](const PlayerCommand& command) { PerformCommand(command); });
    const bool synced = mixer_->device->IsSynced();
    if (synced) {
        const std::uint32_t hostRate = mixer_->device->GetSyncSampleRate();
        if (hostRate && hostRate != mixer_->sampleRate) SetSampleRate(hostRate);
    }
    mixer_->cpuScan->Begin(kCpuPrecalcs);
    mixer_->blockBytes = BytesWanted();
    if (synced) sync_.Follow();
    const std::uint32_t base = mixer_->playPosition;
    mixer_->cpuScan->End(kCpuPrecalcs);

    WriteBlocks(mixer_->blockBytes & ~(kDeviceFrameBytes - 1));
    mixer_->cpuScan->EndBlock();
    mixer_->writePosition = base;
    mixer_->restartBlock = 0;
    notice_.Report({song_->GetBPM(), sequencer_.PatternNumber(), sequencer_.Row()});
    device_.Gate().Leave();
}

void SndPlayer::PerformCommand(const PlayerCommand& command) {
    switch (command.type) {
        case PlayerCommand::Type::KillChannel: 
            notes_.Kill(static_cast<int>(command.channel % kTracks), Milliseconds());
            break;
        case PlayerCommand::Type::Play: PerformPlay(command.playFlags); break;
        case PlayerCommand::Type::Stop: PerformStop(command.stopKeepPlaying, command.stopImmediate); break;
    }
}

// How far the device has moved since the last block. The first block after a start is a fixed little one.
std::uint32_t SndPlayer::BytesWanted() {
    const std::uint32_t size = mixer_->device->GetBufferSize();
    mixer_->device->GetPosition(&mixer_->playPosition);
    const std::uint32_t play = mixer_->playPosition, written = mixer_->writePosition;
    const std::uint32_t moved = play >= written ? play - written : play - written + size;
    return std::min(mixer_->restartBlock ? mixer_->sampleRate * 20 / 1000 : moved, size);
}

void SndPlayer::WriteBlocks(std::uint32_t bytes) {
    while (bytes > 0) {
        const std::uint32_t chunk = std::min(bytes, kChunkBytes);
        const int frames = static_cast<int>(chunk / kDeviceFrameBytes);
        Render(frames);
        mixer_->cpuScan->Begin(kCpuSend);
        mixer_->device->WriteBlock(mixer_->outputs.data(), frames, mixer_->writePosition);
        mixer_->cpuScan->End(kCpuSend);
        mixer_->writePosition += chunk;
        bytes -= chunk;
    }
}

}  // namespace vonta
