#include "engine/sequence/Requests.h"

#include <algorithm>

namespace vonta {
namespace {

int NextJamChannel() {
    static std::atomic<std::uint32_t> rotation{0};
    return static_cast<int>(rotation++ % kTracks);
}

}  // namespace

void Requests::Play(std::uint8_t flags) {
    PlayerCommand command;
    command.type = PlayerCommand::Type::Play;
    command.playFlags = flags;
    commands_.Post(command);
}

void Requests::Stop(std::uint8_t keepPlaying, std::uint32_t immediate) {
    PlayerCommand command;
    command.type = PlayerCommand::Type::Stop;
    command.stopKeepPlaying = keepPlaying;
    command.stopImmediate = immediate;
    commands_.Post(command);
}

void Requests::KillChannel(int channel) {
    PlayerCommand command;
    command.type = PlayerCommand::Type::KillChannel;
    command.channel = static_cast<std::uint32_t>(channel);
    commands_.Post(command);
}

int Requests::QueueNote(int note, int instrument, int volume) {
    return QueueNoteOn(note, instrument, NextJamChannel(), volume);
}

int Requests::QueueStretch(int instrument, int sample, std::uint32_t from, std::uint32_t to) {
    JamNote entry;
    entry.instrument = static_cast<std::uint32_t>(instrument);
    entry.channel = static_cast<std::uint32_t>(NextJamChannel());
    entry.sample = sample;
    entry.from = from;
    entry.to = to;
    return jam_.Put(entry) ? static_cast<int>(entry.channel) : 0;
}

int Requests::QueueNoteOn(int note, int instrument, int channel, int volume) {
    const JamNote entry{static_cast<std::uint32_t>(instrument), static_cast<std::uint32_t>(note),
                        static_cast<std::uint32_t>(channel),
                        static_cast<std::uint8_t>(std::clamp(volume, 0, 255)), -1, 0, 0};
    return jam_.Put(entry) ? channel : 0;
}

void Requests::MuteInstrument(int instrument, bool on) {
    if (instrument < 0 || instrument >= kMaxInstruments) return;
    mutes_[static_cast<std::size_t>(instrument)] = on ? kMute : kUnmute;
    muteRequested_ = true;
}

void Requests::UnmuteInstruments() {
    for (auto& request : mutes_) request = kKeep;
    unmuteAll_ = true;
    muteRequested_ = true;
}

void Requests::ApplyMutes(Mixer& mixer) {
    if (!muteRequested_.exchange(false)) return;
    const bool all = unmuteAll_.exchange(false);
    std::array<std::uint8_t, kMaxInstruments> wanted;
    for (std::size_t i = 0; i < wanted.size(); ++i) wanted[i] = mutes_[i].exchange(kKeep);
    for (auto* table : {&mixer.channels, &mixer.reserve})
        for (const auto& channel : *table) {
            if (all) channel->instrumentMuted = 0;
            if (channel->instrument >= kMaxInstruments) continue;
            const std::uint8_t request = wanted[channel->instrument];
            if (request != kKeep) channel->instrumentMuted = request == kMute;
        }
}

}  // namespace vonta
