// Writing pixels of two, three or four bytes: the code that does so is written once, for a number of bytes known at
// compile time.
#pragma once

#include <cstdint>
#include <cstring>
#include <type_traits>

namespace vonta {

template <int bytes>
void StorePixel(std::uint8_t* at, std::uint32_t colour) {
    std::memcpy(at, &colour, bytes);             // little-endian
}

template <int bytes>
void StorePixels(std::uint8_t* at, int count, std::uint32_t colour) {
    for (int i = 0; i < count; ++i) StorePixel<bytes>(at + i * bytes, colour);
}

// Calls work with an integral constant, the bytes of a pixel.
template <class Work>
void WithPixelBytes(int bitsPerPixel, Work work) {
    if (bitsPerPixel == 16) work(std::integral_constant<int, 2>());
    else if (bitsPerPixel == 24) work(std::integral_constant<int, 3>());
    else work(std::integral_constant<int, 4>());
}

}  // namespace vonta
