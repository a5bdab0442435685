// Damages the bytes of a small valid file in every place, or at each `step`th of a larger one.
#pragma once

#include <cstdint>
#include <vector>

namespace vonta::test {

using FileBytes = std::vector<std::uint8_t>;

template <class Try>
void TryPrefixes(const FileBytes& whole, Try&& attempt, std::size_t step = 1) {
    for (std::size_t size = 0; size < whole.size(); size += step)
        attempt(FileBytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size)));
}

// Sets the field of `width` bytes at each offset to what a count or a size could lie with, and turns each byte over.
template <class Try>
void TryFields(const FileBytes& whole, Try&& attempt, std::size_t step = 1) {
    constexpr std::uint64_t kOnes = ~std::uint64_t{0};
    for (const std::size_t width : {1, 2, 4}) {
        const std::uint64_t top = std::uint64_t{1} << (8 * width - 1);
        for (std::size_t at = 0; at + width <= whole.size(); at += step)
            for (const std::uint64_t value : {std::uint64_t{0}, std::uint64_t{1}, top - 1, top, kOnes}) {
                FileBytes bytes = whole;
                for (std::size_t i = 0; i < width; ++i) bytes[at + i] = static_cast<std::uint8_t>(value >> 8 * i);
                attempt(bytes);
            }
    }
    for (std::size_t at = 0; at < whole.size(); at += step) {
        FileBytes bytes = whole;
        bytes[at] = static_cast<std::uint8_t>(~bytes[at]);
        attempt(bytes);
    }
}

}  // namespace vonta::test
