// What other threads ask of the player: commands, notes of the keyboard, mutes of instruments. Any thread asks; the
// audio side takes, and never waits for those who ask.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>

#include "engine/mix/Mixer.h"
#include "engine/sequence/JamQueue.h"
#include "engine/sequence/PlayerCommand.h"

namespace vonta {

class Requests {
public:
    void Play(std::uint8_t flags);
    void Stop(std::uint8_t keepPlaying, std::uint32_t immediate);
    void KillChannel(int channel);

    // The channel taken, or 0 when 32 notes wait. volume 255 is the sample's own.
    int QueueNote(int note, int instrument, int volume);          // the tracks by turns
    int QueueNoteOn(int note, int instrument, int channel, int volume);
    int QueueStretch(int instrument, int sample, std::uint32_t from, std::uint32_t to);   // as SndPlayer has it

    void MuteInstrument(int instrument, bool on);
    void UnmuteInstruments();

    // Audio side.
    template <class Perform>
    void TakeCommands(Perform perform) { commands_.Drain(perform); }
    bool TakeNote(JamNote& note) { return jam_.Take(note); }
    void ApplyMutes(Mixer& mixer);                 // to the notes that sound

private:
    enum MuteRequest : std::uint8_t { kKeep, kUnmute, kMute };

    CommandList commands_;
    JamQueue jam_;
    // Of sounding notes, which the audio side alone can reach: channels change places under it.
    std::array<std::atomic<std::uint8_t>, kMaxInstruments> mutes_{};
    std::atomic<bool> muteRequested_{false}, unmuteAll_{false};
};

}  // namespace vonta
