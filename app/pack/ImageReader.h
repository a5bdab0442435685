// Reads the pictures of the interface: uncompressed true-colour TGA of 24 or 32 bits.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace vonta {

class PackFile;

enum ImageResult : int { kImageOk = 0, kImageNotFound = 1, kImageWrongType = 2, kImageWrongDepth = 3 };

struct ImageRequest {
    PackFile* pack = nullptr;                    // null: the name is a path
    std::string name;
    std::uint32_t width = 0, height = 0;         // out
    std::uint32_t bits = 0;                      // out: 24 or 32
    std::vector<std::uint8_t> pixels;            // out: blue, green, red of each pixel, the top row first
    bool invertAlpha = false;                    // turns the alpha rule round
};

constexpr std::uint32_t kMaxImageBytes = 800 * 600 * 3;   // the largest picture; larger ones are refused as wrong depth

// Tries each registered reader; there is the TGA one.
int LoadImage(ImageRequest& request);

}  // namespace vonta
