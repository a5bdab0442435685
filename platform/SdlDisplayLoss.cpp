#include "platform/SdlDisplayLoss.h"

#include <SDL.h>
#include <SDL_syswm.h>
#include <dlfcn.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <thread>

#include "platform/Debug.h"
#include "platform/DisplayLoss.h"

namespace vonta {
namespace {

constexpr const char* kX11 = "libX11.so.6";
constexpr std::chrono::seconds kLongestEnd{3};

std::atomic<void (*)()> g_tell{nullptr};
SDL_Window* g_window = nullptr;                  // ours; of the thread that works on it
::Display* g_display = nullptr;                  // the connection that it is on

void Tell() {
    if (void (*tell)() = g_tell) tell();
}

bool SystemWindow(SDL_SysWMinfo& info) {
    SDL_VERSION(&info.version);
    return g_window && SDL_GetWindowWMInfo(g_window, &info) == SDL_TRUE && info.subsystem == SDL_SYSWM_X11;
}

// In the server's numbers, which change when SDL makes the window anew for another way to draw.
bool IsOurs(unsigned long window) {
    SDL_SysWMinfo info;
    return SystemWindow(info) && info.info.x11.window == window;
}

// The library's own would print and end the process, for a window that is gone as for a wish that was not granted.
int OnError(::Display*, XErrorEvent* error) {
    if ((error->error_code == BadWindow || error->error_code == BadDrawable) && IsOurs(error->resourceid)) Tell();
    else DebugOutput("* X11 error %d of request %d\n", int{error->error_code}, int{error->request_code});
    return 0;
}

// From here on every call to the library comes back at once and has done nothing.
void OnConnectionGone(::Display*, void*) { Tell(); }

// Older libraries end the process when this returns. Someone else ends it better.
int OnConnectionGoneForGood(::Display*) {
    Tell();
    while (g_tell) pause();
    return 0;
}
// SDL has a second connection of its own, which nobody can be asked to spare: the process would end with the wrong
// status when SDL closes it. Whoever watches the end is faster.
int PassOver(::Display* display) {
    if (display == g_display) return 0;
    Tell();
    std::this_thread::sleep_for(kLongestEnd);
    return 0;
}

// Null for another kind of display, and for what an older library does not have.
template <class Function>
Function* Find(const char* name) {
    void* library = dlopen(kX11, RTLD_LAZY | RTLD_NOLOAD);
    if (!library) return nullptr;
    auto* function = reinterpret_cast<Function*>(dlsym(library, name));
    dlclose(library);                            // SDL keeps it
    return function;
}

}  // namespace

void TellOfDisplayLoss(void (*tell)()) { g_tell = tell; }

void WatchDisplayLoss() {
    if (auto* set = Find<decltype(XSetErrorHandler)>("XSetErrorHandler")) set(OnError);
    if (auto* set = Find<decltype(XSetIOErrorHandler)>("XSetIOErrorHandler"))
        set(Find<decltype(XSetIOErrorExitHandler)>("XSetIOErrorExitHandler") ? PassOver : OnConnectionGoneForGood);
}

void WatchWindowLoss(SDL_Window* window) {
    SDL_SysWMinfo info;
    g_window = window;
    if (!SystemWindow(info)) return;
    g_display = info.info.x11.display;
    SDL_EventState(SDL_SYSWMEVENT, SDL_ENABLE);
    if (auto* set = Find<decltype(XSetIOErrorExitHandler)>("XSetIOErrorExitHandler"))
        set(info.info.x11.display, OnConnectionGone, nullptr);
}

// What the server says to it comes while somebody listens who does not end the process.
void DestroyWatched(SDL_Window* window) {
    SDL_SysWMinfo info;
    auto* sync = SystemWindow(info) ? Find<decltype(XSync)>("XSync") : nullptr;
    g_window = nullptr;
    if (window) SDL_DestroyWindow(window);
    if (sync) sync(info.info.x11.display, False);
}

void LookForDisplayLoss(const SDL_Event& event) {
    if (event.type == SDL_QUIT) return Tell();   // sent by nobody but a display that breaks
    if (event.type != SDL_SYSWMEVENT || event.syswm.msg->subsystem != SDL_SYSWM_X11) return;
    const XEvent& system = event.syswm.msg->msg.x11.event;
    if (system.type == DestroyNotify && IsOurs(system.xdestroywindow.window)) Tell();
}

}  // namespace vonta
