// Most inputs are kept small: one of many patterns or long waves costs as much as fifty others and reaches nothing new.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace vonta {

// Clears bits of a field. An input whose title starts with 'L' stays as it is.
class SmallInput {
public:
    SmallInput(std::vector<std::uint8_t>& bytes, std::size_t titleAt)
        : bytes_(bytes), active_(bytes.size() > titleAt && bytes[titleAt] != 'L') {}
    void Keep(std::size_t at, std::uint8_t bits) {
        if (active_ && at < bytes_.size()) bytes_[at] &= bits;
    }

private:
    std::vector<std::uint8_t>& bytes_;
    bool active_;
};

}  // namespace vonta
