// How notes begin and end on the tracks: by a row's cell, or by a key.
//
// A note finds its sample and pitch, moves the old sound to the reserve, and starts up to four voices. Audio side.
#pragma once

#include <array>
#include <cstdint>
#include <memory>

#include "engine/channels/ChannelMemory.h"
#include "engine/channels/MidiNotes.h"
#include "engine/mix/Mixer.h"
#include "engine/sequence/JamQueue.h"

namespace vonta {

class NoteStarter {
public:
    NoteStarter(Mixer& mixer, const std::unique_ptr<Song>& song, MidiNotes& midi)
        : mixer_(mixer), song_(song), midi_(midi) {}

    // note 0 to 95; offset in floats into the wave; volume above 128 is the sample's own; pan with any of bits 8 to 15
    // set is that in its low byte, else the sample's; time in milliseconds, for MIDI. Ignored if nothing can sound.
    void PlayNote(int instrument, int note, int offset, int volume, int channel, int pan, std::uint32_t time);
    void PlayStretch(const JamNote& stretch, int channel, std::uint32_t time);   // of one sample, whatever the keys say
    void KeyOff(int channel, std::uint32_t time);
    // What note and instrument column (from 1; 0 none) of a cell ask for. True if a note was started.
    bool Trigger(int channel, int note, int instrument, int volume, bool restartEnvelopes, std::uint32_t time);
    // The row's effect as a controller of the MIDI note that sounds there; false if it is none of its.
    bool SendController(int channel, int effect, int param, std::uint32_t time) {
        return midi_.SendController(channel, effect, param, time);
    }

    void ReleaseAll(std::uint32_t time);           // each as its key were let go
    void StopAll(std::uint32_t time);              // at once
    void StopInstrument(int instrument, std::uint32_t time);   // at once, those of one
    void Kill(int channel, std::uint32_t time);
    void KillTracks(std::uint32_t time);
    void KeepPitch();                              // of what sounds, at the mixer's new rate

    ChannelMemory& Memory(int channel) { return memory_[static_cast<std::size_t>(channel)]; }
    Channel& GetChannel(int channel) { return *mixer_.channels[static_cast<std::size_t>(channel)]; }
    void ForgetMemories() { memory_.fill({}); }
    void RestartRandom() { random_ = 1; }          // so that each time through the song sounds the same

private:
    struct NoteStart;                              // what PlayNote has found out: PlayNote.cpp

    void TriggerInstrumentAlone(int channel, int instrument, int volume, bool restartEnvelopes, std::uint32_t time);
    void RestartEnvelopes(Channel& channel, Instrument& instrument, std::uint8_t pan);
    void SetupNextEnvelopes(Channel& channel, Instrument& instrument, std::uint8_t pan, float cutoff, float resonance);
    float StepCutoffLfo(Instrument& instrument);
    void MoveOldSoundOut(int channel);
    Channel& TakeChannel(int channel, int instrument, int pan, int volume);
    void StartVoices(const NoteStart& note);

    Mixer& mixer_;
    const std::unique_ptr<Song>& song_;            // the one that is played, whichever it is
    MidiNotes& midi_;
    std::array<ChannelMemory, kTracks> memory_;
    std::uint32_t random_ = 1;                     // of the cutoff LFO
};

}  // namespace vonta
