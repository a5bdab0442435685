// SDL's audio subsystem, started while one of these lives: nothing that needs no sound device makes one.
//
// On the main thread. When the last one goes the subsystem ends, so that the next finds the devices of that day.
#pragma once

#include <string>
#include <vector>

namespace vonta {

class SdlAudio {
public:
    SdlAudio();
    ~SdlAudio();
    SdlAudio(const SdlAudio&) = delete;
    SdlAudio& operator=(const SdlAudio&) = delete;

    // The system's outputs by name, behind an empty one that stands for the system's choice. None at all without a
    // sound server or card.
    std::vector<std::string> DeviceNames() const;

private:
    bool ready_;
};

// As a person reads it.
inline std::string ShownName(const std::string& device) { return device.empty() ? "System default" : device; }

}  // namespace vonta
