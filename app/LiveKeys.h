// The keys of a MIDI input play one instrument of the song, beside what plays already.
#pragma once

#include <array>

#include "engine/SndPlayer.h"
#include "midi/NoteMessage.h"

namespace vonta {

class LiveKeys {
public:
    // input may be null: then nothing is played. It must stay open as long as this lives. instrument counts from 0.
    LiveKeys(SndPlayer& player, DrvMIDIIN* input, int instrument) : player_(player), input_(input), instrument_(instrument) {
        channels_.fill(kNone);
    }

    // Plays what has come since the last call.
    void Poll() {
        std::uint32_t message = 0;
        while (input_ && input_->Read(&message)) Take(DecodeNote(message));
    }

private:
    static constexpr int kNone = -1;

    void Take(const NoteMessage& note) {
        if (note.kind == NoteMessage::Kind::Other) return;
        int& channel = channels_[static_cast<std::size_t>(note.note)];
        if (channel != kNone) player_.QueueKeyOff(channel);
        channel = note.kind == NoteMessage::Kind::On ? player_.QueueNote(note.note, instrument_, note.velocity) : kNone;
    }

    SndPlayer& player_;
    DrvMIDIIN* input_;
    int instrument_;
    std::array<int, kKeys> channels_;                // on which a key that is held down sounds
};

}  // namespace vonta
