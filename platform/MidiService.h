// The system's MIDI ports: numbered devices with a name each, outputs that take short messages, inputs that call back
// for every message that comes.
//
// A short message is packed in 32 bits: status in bits 0 to 7, then two data bytes. Devices are those found when the
// service was made, numbered from 0; the list does not change, so ports that we open never show up in it.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

namespace vonta {

// An open output. Destroying it closes it.
class MidiOutPort {
public:
    virtual ~MidiOutPort() = default;
    // Hands a short message on. Never waits, so the audio thread may call it; one thread at a time. False if the port
    // cannot take the message now.
    virtual bool Send(std::uint32_t message) = 0;
};

enum class MidiInEvent {
    Opened,                                        // before the first message, on the thread that opens
    Closed,                                        // after the last one, on the thread that closes
    Message,                                       // on the system's thread
};

class MidiInListener {
public:
    virtual ~MidiInListener() = default;
    virtual void OnMidiIn(MidiInEvent event, std::uint32_t message) = 0;   // message is 0 but with Message
};

// An open input, silent until started. Destroying it closes it; no call reaches the listener afterwards.
class MidiInPort {
public:
    virtual ~MidiInPort() = default;
    virtual bool Start() = 0;                      // false if it cannot be started
};

class MidiService {
public:
    virtual ~MidiService() = default;
    virtual int OutputCount() const = 0;
    virtual int InputCount() const = 0;
    virtual std::string OutputName(int device) const = 0;      // empty outside the list, as for inputs
    virtual std::string InputName(int device) const = 0;
    // Null if there is no such device or it cannot be opened. The listener outlives the port.
    virtual std::unique_ptr<MidiOutPort> OpenOutput(int device) = 0;
    virtual std::unique_ptr<MidiInPort> OpenInput(int device, MidiInListener& listener) = 0;
};

// The devices of the JACK server, if one answers and has any, else those of ALSA. Without the libraries or their
// servers there are none. Never null.
std::unique_ptr<MidiService> CreateSystemMidi();

}  // namespace vonta
