// Which of SDL's renderers draws a window.
#pragma once

struct SDL_Renderer;
struct SDL_Window;

namespace vonta {

// The graphics card's, or SDL's own in software where there is none: an emulated card is slower than both. Null, with
// SDL's error set, if there is none at all. The caller destroys it.
SDL_Renderer* CreateBestRenderer(SDL_Window* window);

}  // namespace vonta
