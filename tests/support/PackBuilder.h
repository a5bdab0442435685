// Packs and the pictures in them, put together by a test.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "app/pack/PackFile.h"
#include "tests/support/ByteBuilder.h"

namespace vonta::test {

// Rows from the top, 0xAARRGGBB; the file has them from the bottom.
inline std::vector<std::uint8_t> Tga(unsigned width, unsigned height, unsigned bits, const std::vector<std::uint32_t>& pixels,
                                     unsigned type = 2) {
    ByteBuilder out;
    out.U16(0).U8(type).Zeros(9).U16(width).U16(height).U8(bits).U8(0);
    for (std::size_t y = height; y-- > 0;)
        for (std::size_t x = 0; x < width && y * width + x < pixels.size(); ++x)
            for (unsigned shift = 0; shift < bits; shift += 8) out.U8(pixels[y * width + x] >> shift & 255);
    return out.bytes;
}

struct PackBuilder {
    std::vector<PackEntry> entries;

    PackBuilder& Add(std::string_view name, std::vector<std::uint8_t> data) {
        entries.push_back({std::string(name), std::move(data)});
        return *this;
    }
    PackBuilder& Picture(std::string_view name, unsigned width, unsigned height, std::uint32_t colour, unsigned bits = 24) {
        return Add(name, Tga(width, height, bits, std::vector<std::uint32_t>(width * height, colour)));
    }
    // A file's path.
    std::string WriteTo(const std::string& path) const {
        std::string error;
        return WritePack(path, entries, error) ? path : error;
    }
};

}  // namespace vonta::test
