// A MIDI output as the player sees it: a port of the system, or the MIDI face of an instrument plug-in.
// Sends come from the audio thread alone; they queue, and never wait.
#pragma once

#include <cstdint>
#include <string>

namespace vonta {

// A data byte of a message; a song's numbers may be any, and one above 127 would be taken for a status.
constexpr int kMidiMax = 127;
constexpr int MidiData(int value) { return value < 0 ? 0 : value > kMidiMax ? kMidiMax : value; }

class DrvMIDIOUT {
public:
    virtual ~DrvMIDIOUT() = default;

    virtual int Open(int device) { return device < 0 ? 1 : 0; }    // 0 on success
    virtual std::string GetName() const { return {}; }

    // note, velocity, controller, value and program 0 to 127, channel 0 to 15; time in Milliseconds().
    virtual void NoteOn(int note, int channel, int velocity, std::uint32_t time) = 0;
    virtual void NoteOff(int note, int channel, std::uint32_t time) = 0;
    virtual void ProgramChange(int channel, int program, std::uint32_t time) = 0;
    virtual void ControlChange(int channel, int controller, int value, std::uint32_t time) = 0;

    virtual void Flush(std::uint32_t /*now*/) {}                   // once a block: sends what is due
    virtual std::uint32_t GetDelay() const { return 0; }           // milliseconds
    virtual void SetDelay(std::uint32_t /*ms*/) {}
    virtual std::uint32_t GetLastTime() const { return 0; }        // when a message last left
};

}  // namespace vonta
