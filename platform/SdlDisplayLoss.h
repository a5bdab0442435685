// How the loss of the display shows under SDL: its library for X11 would end the process instead of telling.
#pragma once

struct SDL_Window;
union SDL_Event;

namespace vonta {

// Once the video subsystem runs, which has loaded that library.
void WatchDisplayLoss();
void WatchWindowLoss(SDL_Window* window);        // another client may destroy it
void DestroyWatched(SDL_Window* window);         // also one that is gone already, which is no error then
void LookForDisplayLoss(const SDL_Event& event);

}  // namespace vonta
