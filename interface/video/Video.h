// The surfaces of the interface: a table of pictures named by slot, and the 800 by 600 back surface that is shown
// once a frame. Blits from an empty slot are skipped. Interface thread only.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/Display.h"
#include "platform/Surface.h"

namespace vonta {

class PackFile;
struct ImageRequest;

// How a colour is packed into a pixel of the mode.
struct PixelFormat {
    struct Channel {
        int bits = 8, shift = 0, loss = 0;       // loss is 8 minus bits
    };
    Channel red, green, blue;
    int bitsPerPixel = 32;                       // 16, 24 or 32
};

struct LockInfo {
    std::uint8_t* address = nullptr;
    int pitch = 0;                               // bytes from row to row
    int width = 0, height = 0;
    PixelFormat format;
};

struct Rect {
    int x = 0, y = 0, width = 0, height = 0;
};

class Video {
public:
    static constexpr int kSlots = 2000;
    static constexpr int kNoSlot = -1;

    explicit Video(Display& display) : display_(display) {}
    ~Video();
    Video(const Video&) = delete;
    Video& operator=(const Video&) = delete;

    // 0 on success, 1 if the mode cannot be had. bits: 16, 24 or 32.
    int SetMode(int bits, bool forceBlit, bool fullscreen, int width, int height);
    void ShutdownSurfaces();                     // releases all slots and the mode
    const PixelFormat& Format() const { return format_; }
    int DesktopBits() const { return display_.DesktopBits(); }   // 16, 24 or 32

    void Present();                              // shows the back surface
    void Repair();                               // shows it again without any drawing
    void Clear(std::uint32_t colour);            // packed, as all colours here
    bool IsLost() const;
    void Restore();
    void SetDialogMode();

    bool CreateSurface(int id, int width, int height);
    void ReleaseSurface(int id);
    bool Lock(int id, LockInfo& info);           // false if empty
    void Unlock(int id);
    std::uint8_t* LockBack(int& pitch);          // null on failure
    void UnlockBack();
    const Surface* Back() const { return back_.get(); }   // null before SetMode
    const Surface* Get(int id) const;            // null if empty

    void Blit(int x, int y, int sourceId, int targetId);
    void BlitToBack(int x, int y, int id);       // black is transparent if the picture has alpha
    void BlitPart(int x, int y, int width, int height, int id, bool transparent);
    void BlitColumns(int x, int y, int sourceX, int width, int id);
    void BlitScaled(int x, int y, int width, int height, int id);
    // The part of the source that lies at the same place of the screen, its corner standing at the origin there.
    void BlitRect(int x, int y, int originX, int originY, int width, int height, int id, bool transparent);
    void FillBack(const Rect& rect, std::uint32_t colour);
    void FillSurface(int id, const Rect& rect, std::uint32_t colour);
    void LoadPixels(int id, const std::uint32_t* pixels, int width, int height, int order = 1);   // 1 BGR, 2 RGB
    bool Reload(int slot);
    void RestoreOne(int id);

    // Each takes the next free slot and returns it; kNoSlot when all are used. A picture that cannot be read leaves a
    // slot without a surface. forceAlpha as `flag`: black is transparent whatever the depth of the file.
    int LoadBitmap(PackFile* pack, const std::string& name, bool forceAlpha = false);
    // Every frame-th column of the picture, from the first: frame n is n times narrower, and n of it side by side are as
    // wide as the whole.
    int LoadStrip(PackFile* pack, const std::string& name, int frame);
    int CreateEmpty(int width, int height);
    std::array<std::uint8_t, 3> ColourOfBitmap(PackFile* pack, const std::string& name);   // red, green, blue of the first pixel
    int WidthOf(int id) const;
    int HeightOf(int id) const;

    std::uint32_t PackColour(std::uint8_t red, std::uint8_t green, std::uint8_t blue) const;
    std::uint32_t PackVisible(std::uint8_t red, std::uint8_t green, std::uint8_t blue) const;   // never 0 but for black
    std::uint32_t Dimmed(std::uint32_t colour, int sixteenths) const;   // so much of a packed colour's light; never 0
    std::uint32_t PackRgb(std::uint32_t rgb) const;   // 0x00RRGGBB

    // Direct drawing on the back surface as it was locked; nothing with address null. Lines have a black shadow one
    // pixel below and to the right.
    void SetTarget(std::uint8_t* address, int pitch);
    void PutPixel(int x, int y, std::uint32_t colour);
    void DrawLine(int x0, int y0, int x1, int y1, std::uint32_t colour);
    void DrawPolyline(const std::pair<int, int>* points, int count, std::uint32_t colour);

private:
    struct Slot {
        std::string name;
        PackFile* pack = nullptr;
        std::unique_ptr<Surface> surface;
        int width = 0, height = 0;
        bool hasAlpha = false;
        bool used = false;
        int frames = 0;                          // of a strip; 0: a plain bitmap
    };

    Slot* Find(int id);                          // null if there is none
    int NextFreeSlot();                          // a released one serves again
    void BlitOntoBack(int sourceX, int sourceY, int width, int height, int x, int y, int id, bool keyed);
    int LoadPicture(PackFile* pack, const std::string& name, int frame, bool forceAlpha);
    bool Fill(int id, bool forceAlpha);          // reads the slot's file into its surface
    void Convert(const ImageRequest& image, int step, Surface& surface) const;

    Display& display_;
    PixelFormat format_;
    std::unique_ptr<Surface> back_;
    std::vector<Slot> slots_;                    // at most kSlots
    std::uint8_t* target_ = nullptr;
    int targetPitch_ = 0;
};

}  // namespace vonta
