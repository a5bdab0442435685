#include "platform/Surface.h"

#include <SDL.h>

#include <cstring>

namespace vonta {
namespace {

std::uint32_t FormatOf(int bits) {
    switch (bits) {
    case 16: return SDL_PIXELFORMAT_RGB565;
    case 24: return SDL_PIXELFORMAT_BGR24;       // blue first in memory, as at 32 bits
    case 32: return SDL_PIXELFORMAT_RGB888;
    default: return SDL_PIXELFORMAT_UNKNOWN;
    }
}

constexpr int kMaxSide = 16384;

}  // namespace

void Surface::Free::operator()(SDL_Surface* surface) const { SDL_FreeSurface(surface); }

std::unique_ptr<Surface> Surface::Create(int width, int height, int bits) {
    const std::uint32_t format = FormatOf(bits);
    if (format == SDL_PIXELFORMAT_UNKNOWN || width < 1 || height < 1 || width > kMaxSide || height > kMaxSide) return nullptr;
    Handle plain(SDL_CreateRGBSurfaceWithFormat(0, width, height, bits, format));
    if (!plain) return nullptr;
    Handle keyed(SDL_CreateRGBSurfaceWithFormatFrom(plain->pixels, width, height, bits, plain->pitch, format));
    if (!keyed || SDL_SetColorKey(keyed.get(), SDL_TRUE, 0) != 0) return nullptr;
    return std::unique_ptr<Surface>(new Surface(std::move(plain), std::move(keyed)));
}

int Surface::Width() const { return plain_->w; }
int Surface::Height() const { return plain_->h; }
int Surface::Pitch() const { return plain_->pitch; }
int Surface::Bits() const { return 8 * plain_->format->BytesPerPixel; }
std::uint8_t* Surface::Pixels() { return static_cast<std::uint8_t*>(plain_->pixels); }
const std::uint8_t* Surface::Pixels() const { return static_cast<const std::uint8_t*>(plain_->pixels); }

std::uint32_t Surface::RgbAt(int x, int y) const {
    if (x < 0 || y < 0 || x >= Width() || y >= Height()) return 0;
    const int bytes = plain_->format->BytesPerPixel;
    std::uint32_t pixel = 0;
    std::memcpy(&pixel, Pixels() + static_cast<std::ptrdiff_t>(y) * Pitch() + x * bytes, static_cast<std::size_t>(bytes));
    std::uint8_t red, green, blue;
    SDL_GetRGB(pixel, plain_->format, &red, &green, &blue);
    return static_cast<std::uint32_t>(red << 16 | green << 8 | blue);
}

void Surface::Masks(std::uint32_t& red, std::uint32_t& green, std::uint32_t& blue) const {
    red = plain_->format->Rmask;
    green = plain_->format->Gmask;
    blue = plain_->format->Bmask;
}

void Surface::Blit(const Surface& source, int sourceX, int sourceY, int width, int height, int x, int y, bool keyed) {
    if (width < 1 || height < 1) return;
    const SDL_Rect from{sourceX, sourceY, width, height};
    SDL_Rect to{x, y, width, height};
    SDL_UpperBlit((keyed ? source.keyed_ : source.plain_).get(), &from, plain_.get(), &to);
}

void Surface::BlitScaled(const Surface& source, int x, int y, int width, int height) {
    if (width < 1 || height < 1) return;
    SDL_Rect to{x, y, width, height};
    SDL_UpperBlitScaled(source.plain_.get(), nullptr, plain_.get(), &to);
}

void Surface::Fill(int x, int y, int width, int height, std::uint32_t colour) {
    const SDL_Rect rect{x, y, width, height};
    SDL_FillRect(plain_.get(), &rect, colour);
}

}  // namespace vonta
