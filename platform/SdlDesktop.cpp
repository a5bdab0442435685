#include "platform/SdlDesktop.h"

#include <SDL.h>

#include <cstdlib>

#include "platform/SdlDisplayLoss.h"

namespace vonta {
namespace {

// What the desktop knows the program by; its .desktop file bears the same name.
constexpr const char* kClassName = "vonta";

bool IsSet(const char* variable) {
    const char* value = std::getenv(variable);
    return value && *value;
}

// The kinds of display that the session names. Of itself SDL would also take the console, or draw where nobody sees it.
const char* NamedDisplays() {
    if (!IsSet("WAYLAND_DISPLAY")) return "x11";
    return IsSet("DISPLAY") ? "x11,wayland" : "wayland";
}

void SetHints() {
    setenv("SDL_VIDEO_X11_WMCLASS", kClassName, 0);
    setenv("SDL_VIDEO_WAYLAND_WMCLASS", kClassName, 0);
    SDL_SetHint(SDL_HINT_VIDEODRIVER, NamedDisplays());
    SDL_SetHint(SDL_HINT_NO_SIGNAL_HANDLERS, "1");               // Ctrl+C is the program's own business
    SDL_SetHint(SDL_HINT_VIDEO_ALLOW_SCREENSAVER, "1");
    SDL_SetHint(SDL_HINT_VIDEO_MINIMIZE_ON_FOCUS_LOSS, "0");     // full screen on one of two monitors stays
    SDL_SetHint(SDL_HINT_QUIT_ON_LAST_WINDOW_CLOSE, "0");        // closing is asked about
    SDL_SetHint(SDL_HINT_FRAMEBUFFER_ACCELERATION, "0");         // the software renderer draws in software
}

}  // namespace

bool HasDesktop() { return IsSet("DISPLAY") || IsSet("WAYLAND_DISPLAY") || IsSet("SDL_VIDEODRIVER"); }

SdlDesktop::SdlDesktop() {
    SetHints();
    if (!HasDesktop()) error_ = "There is no display: neither DISPLAY nor WAYLAND_DISPLAY is set";
    else if (SDL_InitSubSystem(SDL_INIT_VIDEO) != 0)
        error_ = std::string("The display that the session names cannot be opened: ") + SDL_GetError();
    else WatchDisplayLoss();
}

SdlDesktop::~SdlDesktop() {
    if (IsReady()) SDL_QuitSubSystem(SDL_INIT_VIDEO);
}

}  // namespace vonta
