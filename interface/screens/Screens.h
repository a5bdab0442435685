// The table of the 24 screens: what stands at each slot and in which group. A new screen is a row.
//
// Groups say which screens replace one another: 1 the whole window, 2 the bottom, 3 the top left and the right options,
// 4 the top left information, 5 the channel pair, 6 the main panel, 7 the question.
#pragma once

#include <memory>

#include "interface/screens/Screen.h"

namespace vonta {

constexpr int kScreenGroups = 7;

int GroupOfScreen(int slot);
// A slot without a class of its own shows its layout's picture; one without a layout shows nothing.
std::unique_ptr<Screen> CreateScreen(TrackerInterface& ui, int slot);

}  // namespace vonta
