#include "platform/SdlAudio.h"

#include <SDL.h>

#include "platform/Debug.h"

namespace vonta {
namespace {

// How a sound server's own panel shows us.
constexpr const char* kProgramName = "Vonta Tracker";

// What a sound server is asked to hold. SDL by itself asks for one chunk, which a busy desktop does not always refill in
// time. Somebody who wants another figure has set it already.
constexpr const char* kServerLatency = "PULSE_LATENCY_MSEC";
constexpr const char* kServerMilliseconds = "40";

bool StartAudio() {
    SDL_setenv(kServerLatency, kServerMilliseconds, 0);
    SDL_SetHint(SDL_HINT_NO_SIGNAL_HANDLERS, "1");   // Ctrl+C is the program's own business
    SDL_SetHint(SDL_HINT_APP_NAME, kProgramName);
    SDL_SetHint(SDL_HINT_AUDIO_DEVICE_STREAM_NAME, kProgramName);
    if (SDL_InitSubSystem(SDL_INIT_AUDIO) == 0) return true;
    DebugOutput("\t- ERROR: sound system: %s\n", SDL_GetError());
    return false;
}

}  // namespace

SdlAudio::SdlAudio() : ready_(StartAudio()) {}

SdlAudio::~SdlAudio() {
    if (ready_) SDL_QuitSubSystem(SDL_INIT_AUDIO);
}

// Without any output the system has no choice to make either; less than none is a system that cannot count them.
std::vector<std::string> SdlAudio::DeviceNames() const {
    std::vector<std::string> names;
    const int count = ready_ ? SDL_GetNumAudioDevices(0) : 0;
    if (count != 0) names.emplace_back();
    for (int i = 0; i < count; ++i)
        if (const char* name = SDL_GetAudioDeviceName(i, 0)) names.emplace_back(name);
    return names;
}

}  // namespace vonta
