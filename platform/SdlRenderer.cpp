#include "platform/SdlRenderer.h"

#include <SDL.h>

#include <string>

namespace vonta {
namespace {

constexpr unsigned kGlRenderer = 0x1F01;         // OpenGL's name for the name of what draws

// Cards that are none.
constexpr const char* kEmulated[] = {"llvmpipe", "softpipe", "swrast", "SwiftShader", "Software Rasterizer"};

// Of a renderer just made, whose context is the current one; empty if it is not OpenGL's.
std::string CardName() {
    using GetString = const unsigned char* (*)(unsigned);
    const auto get = SDL_GL_GetCurrentContext() ? reinterpret_cast<GetString>(SDL_GL_GetProcAddress("glGetString")) : nullptr;
    const unsigned char* name = get ? get(kGlRenderer) : nullptr;
    return name ? reinterpret_cast<const char*>(name) : "";
}

bool IsEmulated() {
    const std::string card = CardName();
    for (const char* emulated : kEmulated)
        if (card.find(emulated) != std::string::npos) return true;
    return false;
}

}  // namespace

SDL_Renderer* CreateBestRenderer(SDL_Window* window) {
    SDL_Renderer* renderer = SDL_CreateRenderer(window, -1, SDL_RENDERER_ACCELERATED);
    if (renderer && (SDL_GetHint(SDL_HINT_RENDER_DRIVER) || !IsEmulated())) return renderer;
    if (renderer) SDL_DestroyRenderer(renderer);
    return SDL_CreateRenderer(window, -1, SDL_RENDERER_SOFTWARE);
}

}  // namespace vonta
