// The weights of the cubic interpolation: a Catmull-Rom spline over four frames, one row for each of 1024 places
// between the second and the third of them.
#pragma once

#include <array>
#include <cstddef>

namespace vonta {

constexpr int kTableBits = 10;                    // the upper bits of a voice's fraction choose the row
constexpr std::size_t kTableRows = std::size_t{1} << kTableBits;

struct CubicTable {
    alignas(64) std::array<float, 4 * kTableRows> weights{};   // rows of four: whole vectors, whole cache lines
};

constexpr CubicTable MakeCubicTable() {
    CubicTable table;
    for (std::size_t row = 0; row < kTableRows; ++row) {
        const double t = static_cast<double>(row) / kTableRows;   // exact in double up to the third power
        table.weights[4 * row] = static_cast<float>((1 - 0.5 * t) * t * t - 0.5 * t);
        table.weights[4 * row + 1] = static_cast<float>(1.5 * t * t * t - 2.5 * t * t + 1);
        table.weights[4 * row + 2] = static_cast<float>(((2 - 1.5 * t) * t + 0.5) * t);
        table.weights[4 * row + 3] = static_cast<float>(0.5 * t * t * t - 0.5 * t * t);
    }
    return table;
}

inline constexpr CubicTable cubicTable = MakeCubicTable();

}  // namespace vonta
