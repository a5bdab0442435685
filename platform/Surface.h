// A picture in memory, with blits onto others of the same mode.
#pragma once

#include <cstdint>
#include <memory>
#include <utility>

struct SDL_Surface;

namespace vonta {

class Surface {
public:
    // Black. bits: 16 (5-6-5), 24 or 32. Null if it cannot be had.
    static std::unique_ptr<Surface> Create(int width, int height, int bits);

    int Width() const;
    int Height() const;
    int Pitch() const;                           // bytes from row to row
    int Bits() const;
    std::uint8_t* Pixels();
    const std::uint8_t* Pixels() const;
    std::uint32_t RgbAt(int x, int y) const;     // 0x00RRGGBB; black outside
    void Masks(std::uint32_t& red, std::uint32_t& green, std::uint32_t& blue) const;

    // The part of the source onto this one, clipped at both; keyed: pixels of value 0 are left out. Nothing with a
    // width or height below 1.
    void Blit(const Surface& source, int sourceX, int sourceY, int width, int height, int x, int y, bool keyed);
    void BlitScaled(const Surface& source, int x, int y, int width, int height);
    void Fill(int x, int y, int width, int height, std::uint32_t colour);   // packed

private:
    struct Free { void operator()(SDL_Surface* surface) const; };
    using Handle = std::unique_ptr<SDL_Surface, Free>;

    Surface(Handle plain, Handle keyed) : plain_(std::move(plain)), keyed_(std::move(keyed)) {}
    Handle plain_;
    Handle keyed_;                               // the same pixels seen with 0 transparent; goes first
};

}  // namespace vonta
