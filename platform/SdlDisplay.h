// Shows the picture in an SDL window: one streaming texture, enlarged by whole factors with hard edges, and by others
// with edges that are soft for less than a pixel. What has not changed is not drawn again.
#pragma once

#include <memory>

#include "platform/Display.h"
#include "platform/PictureFit.h"
#include "platform/Surface.h"

struct SDL_Renderer;
struct SDL_Texture;
struct SDL_Window;

namespace vonta {

class SdlDisplay final : public Display {
public:
    explicit SdlDisplay(SDL_Window* window) : window_(window) {}

    int Open(int width, int height, int bits, bool fullscreen) override;
    void Close() override;
    void Present(const Surface& picture) override;
    bool IsLost() const override { return false; }   // the last picture is kept here and uploaded anew
    int DesktopBits() const override;

    void Expose() { exposed_ = true; }           // the window's contents are gone
    void ForgetTextures();                       // the graphics device's are gone
    PicturePoint At(int windowX, int windowY) const;

private:
    struct Free {
        void operator()(SDL_Renderer* renderer) const;
        void operator()(SDL_Texture* texture) const;
    };
    using Texture = std::unique_ptr<SDL_Texture, Free>;

    bool Place(bool fullscreen);                 // false if the desktop refuses the mode
    bool CreateTexture();
    bool TakeChanges(const Surface& picture);    // false if there are none
    void Upload(int firstRow, int endRow);       // of last_
    void Draw();
    bool DrawEnlarged(const PictureFit& fit);    // false if the device has no room for it
    OutputSize Output() const;
    PictureFit Fit() const;

    SDL_Window* window_;
    std::unique_ptr<SDL_Renderer, Free> renderer_;   // before the textures, which go first
    Texture texture_, enlarged_;
    int prescale_ = 0;                           // of enlarged_
    int width_ = 0, height_ = 0, bits_ = 0;      // of the picture
    std::unique_ptr<Surface> last_, wide_;       // as texture_ holds it, in the picture's depth and in the texture's
    bool placed_ = false;                        // the window has been given its first size
    bool exposed_ = true;
};

}  // namespace vonta
