// One client of the system's MIDI through RtMidi, whose C interface is looked up at run time, so that the program starts
// without it.
#pragma once

#include <rtmidi_c.h>

#include <cstdint>
#include <string>
#include <vector>

namespace vonta {

// Sees the ports of the other side from the start; has one itself once it is open.
class RtMidiClient {
public:
    enum class Direction { Out, In };
    static constexpr const char* kName = "Vonta Tracker";       // what other programs' views of the ports show

    RtMidiClient(RtMidiApi api, Direction direction);
    ~RtMidiClient();                                            // closes; no callback runs afterwards
    RtMidiClient(const RtMidiClient&) = delete;
    RtMidiClient& operator=(const RtMidiClient&) = delete;

    std::vector<std::string> PortNames();
    // Connects a port of ours, shown as `ownName`, to the one of that name. False if it has gone or will not open.
    bool Open(const std::string& portName, const std::string& ownName);
    void SetCallback(RtMidiCCallback callback, void* userData); // of an input, before Open
    void Send(std::uint32_t message);                           // of an output; may wait. Failures stay quiet

private:
    Direction direction_;
    RtMidiPtr handle_ = nullptr;                                // null without the library
};

}  // namespace vonta
