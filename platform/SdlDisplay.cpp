#include "platform/SdlDisplay.h"

#include <SDL.h>

#include <algorithm>
#include <cstring>

#include "platform/Debug.h"
#include "platform/SdlRenderer.h"

namespace vonta {
namespace {

constexpr int kTextureBits = 32;
constexpr int kSmallestShare = 4;                // the window shrinks to this part of the picture

SDL_Rect RectOf(const PictureFit& fit) { return {fit.x, fit.y, fit.width, fit.height}; }

const std::uint8_t* RowOf(const Surface& surface, int y) {
    return surface.Pixels() + static_cast<std::ptrdiff_t>(y) * surface.Pitch();
}

bool SameRow(const Surface& a, const Surface& b, int y) {
    return std::memcmp(RowOf(a, y), RowOf(b, y), static_cast<std::size_t>(a.Width() * a.Bits() / 8)) == 0;
}

}  // namespace

void SdlDisplay::Free::operator()(SDL_Renderer* renderer) const { SDL_DestroyRenderer(renderer); }
void SdlDisplay::Free::operator()(SDL_Texture* texture) const { SDL_DestroyTexture(texture); }

int SdlDisplay::Open(int width, int height, int bits, bool fullscreen) {
    width_ = width;
    height_ = height;
    bits_ = bits;
    last_ = Surface::Create(width, height, bits);
    wide_ = Surface::Create(width, height, kTextureBits);
    if (!window_ || !last_ || !wide_) return 1;
    if (!renderer_) renderer_.reset(CreateBestRenderer(window_));
    if (!renderer_ || !CreateTexture()) {
        DebugOutput("* ERROR opening the display: %s\n", SDL_GetError());
        return 1;
    }
    return Place(fullscreen) ? 0 : 1;
}

void SdlDisplay::Close() {
    ForgetTextures();
    last_.reset();
    wide_.reset();
}

bool SdlDisplay::Place(bool fullscreen) {
    SDL_SetWindowMinimumSize(window_, width_ / kSmallestShare, height_ / kSmallestShare);
    if (!placed_) {
        SDL_Rect room{0, 0, width_, height_};    // if the desktop does not tell
        SDL_GetDisplayUsableBounds(std::max(0, SDL_GetWindowDisplayIndex(window_)), &room);
        const WindowSize size = OpeningSize(width_, height_, room.w, room.h);
        SDL_SetWindowSize(window_, size.width, size.height);
        SDL_SetWindowPosition(window_, room.x + (room.w - size.width) / 2, room.y + (room.h - size.height) / 2);
    }
    placed_ = true;
    const bool had = SDL_SetWindowFullscreen(window_, fullscreen ? SDL_WINDOW_FULLSCREEN_DESKTOP : 0) == 0;
    SDL_ShowWindow(window_);
    return had;
}

bool SdlDisplay::CreateTexture() {
    texture_.reset(SDL_CreateTexture(renderer_.get(), SDL_PIXELFORMAT_RGB888, SDL_TEXTUREACCESS_STREAMING, width_, height_));
    exposed_ = true;
    if (!texture_) return false;
    Upload(0, height_);
    return true;
}

void SdlDisplay::ForgetTextures() {
    texture_.reset();
    enlarged_.reset();
    prescale_ = 0;
    exposed_ = true;
}

int SdlDisplay::DesktopBits() const {
    SDL_DisplayMode mode{};
    if (SDL_GetDesktopDisplayMode(std::max(0, SDL_GetWindowDisplayIndex(window_)), &mode) != 0) return 32;
    const int bytes = static_cast<int>(SDL_BYTESPERPIXEL(mode.format));
    return bytes == 2 || bytes == 3 ? 8 * bytes : 32;
}

void SdlDisplay::Present(const Surface& picture) {
    if (!renderer_ || !last_ || (!texture_ && !CreateTexture())) return;
    if (picture.Width() != width_ || picture.Height() != height_ || picture.Bits() != bits_) return;
    const bool changed = TakeChanges(picture);
    if (changed || exposed_) Draw();
}

bool SdlDisplay::TakeChanges(const Surface& picture) {
    int first = 0, end = height_;
    while (first < end && SameRow(picture, *last_, first)) ++first;
    while (end > first && SameRow(picture, *last_, end - 1)) --end;
    if (first == end) return false;
    last_->Blit(picture, 0, first, width_, end - first, 0, first, false);
    Upload(first, end);
    return true;
}

// At 32 bits: renderers stretch other depths pixel by pixel.
void SdlDisplay::Upload(int firstRow, int endRow) {
    const Surface* rows = last_.get();
    if (bits_ != kTextureBits) {
        wide_->Blit(*last_, 0, firstRow, width_, endRow - firstRow, 0, firstRow, false);
        rows = wide_.get();
    }
    const SDL_Rect rect{0, firstRow, width_, endRow - firstRow};
    SDL_UpdateTexture(texture_.get(), &rect, RowOf(*rows, firstRow), rows->Pitch());
}

OutputSize SdlDisplay::Output() const {
    OutputSize size;
    SDL_GetWindowSize(window_, &size.windowWidth, &size.windowHeight);
    if (!renderer_ || SDL_GetRendererOutputSize(renderer_.get(), &size.pixelWidth, &size.pixelHeight) != 0)
        return {size.windowWidth, size.windowHeight, size.windowWidth, size.windowHeight};
    return size;
}

PictureFit SdlDisplay::Fit() const {
    const OutputSize output = Output();
    return PictureFit::Of(width_, height_, output.pixelWidth, output.pixelHeight);
}

PicturePoint SdlDisplay::At(int windowX, int windowY) const {
    if (width_ == 0 || height_ == 0) return {windowX, windowY};
    return PictureAt(Fit(), Output(), width_, height_, windowX, windowY);
}

void SdlDisplay::Draw() {
    exposed_ = false;
    const PictureFit fit = Fit();
    const SDL_Rect shown = RectOf(fit);
    const bool sharp = fit.IsSharp(width_, height_);
    SDL_SetRenderDrawColor(renderer_.get(), 0, 0, 0, SDL_ALPHA_OPAQUE);
    if (sharp || fit.Prescale(width_) == 1 || !DrawEnlarged(fit)) {
        SDL_SetTextureScaleMode(texture_.get(), sharp ? SDL_ScaleModeNearest : SDL_ScaleModeLinear);
        SDL_RenderClear(renderer_.get());
        SDL_RenderCopy(renderer_.get(), texture_.get(), nullptr, &shown);
    }
    SDL_RenderPresent(renderer_.get());
}

bool SdlDisplay::DrawEnlarged(const PictureFit& fit) {
    const int factor = fit.Prescale(width_);
    if (factor != prescale_) {
        prescale_ = factor;
        enlarged_.reset(SDL_CreateTexture(renderer_.get(), SDL_PIXELFORMAT_RGB888, SDL_TEXTUREACCESS_TARGET,
                                          width_ * factor, height_ * factor));
    }
    if (!enlarged_ || SDL_SetRenderTarget(renderer_.get(), enlarged_.get()) != 0) return false;
    SDL_SetTextureScaleMode(texture_.get(), SDL_ScaleModeNearest);
    SDL_RenderCopy(renderer_.get(), texture_.get(), nullptr, nullptr);
    SDL_SetRenderTarget(renderer_.get(), nullptr);
    SDL_SetTextureScaleMode(enlarged_.get(), SDL_ScaleModeLinear);
    SDL_RenderClear(renderer_.get());
    const SDL_Rect shown = RectOf(fit);
    SDL_RenderCopy(renderer_.get(), enlarged_.get(), nullptr, &shown);
    return true;
}

}  // namespace vonta
