// What the interface asks of the program around it.
#pragma once

#include <string>
#include <vector>

namespace vonta {

struct MixdownOptions;
struct Song;

class InterfaceHost {
public:
    virtual ~InterfaceHost() = default;

    virtual void SaveConfig() = 0;
    virtual void SaveEnvironment() = 0;
    virtual void RequestVideoRestart() = 0;
    virtual const std::string& GetStartDir() const = 0;
    // The song that plays, to WAV files; the window shows how far it is, and Escape cancels. 0 on success, and notes tell
    // if it ended early; else error says why. A cancelled mixdown is 1 with an empty error.
    virtual int MixDown(const std::string& base, const MixdownOptions& options, std::string& error,
                        std::vector<std::string>& notes) = 0;
    // A song is about to be saved over this file: what stood there is kept, unless the user wants none of it.
    virtual void KeepFormer(const std::string& path) = 0;
    virtual bool HasSoundDevice() const = 0;     // false: the configured one could not be had, nothing sounds
};

}  // namespace vonta
