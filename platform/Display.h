// Where the finished picture is shown. The window's own, or one that keeps it for tests.
#pragma once

namespace vonta {

class Surface;

class Display {
public:
    virtual ~Display() = default;
    // 0 on success. The picture has the given size; the window scales it.
    virtual int Open(int width, int height, int bits, bool fullscreen) = 0;
    virtual void Close() = 0;
    virtual void Present(const Surface& picture) = 0;
    virtual bool IsLost() const = 0;             // the picture must be drawn anew
    virtual int DesktopBits() const = 0;         // 16, 24 or 32
};

}  // namespace vonta
