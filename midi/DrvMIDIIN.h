// A MIDI input: the system's thread fills its ring, the interface thread reads it once a frame.
#pragma once

#include <cstdint>
#include <string>

namespace vonta {

class DrvMIDIIN {
public:
    virtual ~DrvMIDIIN() = default;

    virtual int Open(int device) = 0;                              // 0 on success
    virtual std::string GetName() const = 0;
    // 1 and a packed short message (status in bits 0 to 7, then two data bytes), or 0 if none waits.
    virtual int Read(std::uint32_t* message) = 0;
    virtual std::uint32_t GetLastTime() const = 0;                 // when a message last came
};

}  // namespace vonta
