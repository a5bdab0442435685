// SDL's events as ours. One of theirs can be several of ours, or none.
#pragma once

#include <deque>

#include "platform/OsWindow.h"

union SDL_Event;

namespace vonta {

class SdlDisplay;

class SdlEvents {
public:
    explicit SdlEvents(SdlDisplay& display) : display_(display) {}

    void Take(const SDL_Event& event);
    bool Next(WindowEvent& event);               // false if none is left

private:
    WindowEvent& Add(WindowEventKind kind);
    void AddMouse(WindowEventKind kind, int windowX, int windowY);
    void OnButton(const SDL_Event& event, bool down);
    void OnKey(const SDL_Event& event, bool down);
    void OnText(const char* text);
    void OnWindow(const SDL_Event& event);

    SdlDisplay& display_;
    std::deque<WindowEvent> queue_;
    bool left_ = false, right_ = false;
};

}  // namespace vonta
