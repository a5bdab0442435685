// Notes on their way to a MIDI output or a plug-in, with what was last sent to each output's channels.
//
// Each track holds at most one such note, in its Channel's MidiNoteState. Audio side.
#pragma once

#include <array>
#include <cstdint>
#include <memory>

#include "engine/mix/Mixer.h"

namespace vonta {

class MidiNotes {
public:
    MidiNotes(Mixer& mixer, const std::unique_ptr<Song>& song) : mixer_(mixer), song_(song) {}

    // The note of an instrument that plays MIDI or a plug-in takes the place of the one that the track holds. note 0 to
    // 95; volume above 128 is the sample's own; time in milliseconds.
    void Send(int track, int instrument, int note, int volume, std::uint32_t time);
    void SendOff(Channel& channel, std::uint32_t time);   // of the note that it holds, if it does
    // The row's effect as the controller that the track's note has for it. True if there is one: then it is no effect.
    bool SendController(int track, int effect, int param, std::uint32_t time);

    // A new receiver has heard nothing of what the former one was sent.
    void Forget() { ForgetFrom(0); }
    void ForgetSynths();

private:
    // What was last sent to a channel of an output; 65535 is nothing yet.
    struct Sent { std::uint16_t bank = 65535, program = 65535, volume = 65535, pan = 65535; };

    void SendSettings(DrvMIDIOUT& output, const Instrument& instrument, int outputNumber, std::uint32_t time);
    void ForgetFrom(std::size_t firstOutput);

    Mixer& mixer_;
    const std::unique_ptr<Song>& song_;            // the one that is played, whichever it is
    std::array<std::array<Sent, 16>, 256> sent_;   // per output number and MIDI channel
};

}  // namespace vonta
