#include "interface/layout/Layout.h"

#include <array>

namespace vonta {
namespace {

// A row a screen; its table is in the header of its name.
constexpr std::array<const ScreenLayout*, 0> kLayouts{};

}  // namespace

std::span<const ScreenLayout* const> AllLayouts() { return kLayouts; }

}  // namespace vonta
