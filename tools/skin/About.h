// The pictures of the About screen, as interface/skin/AboutEffect.h describes them.
#pragma once

#include <cstdint>
#include <vector>

#include "tools/skin/Canvas.h"

namespace vonta::skin {

Canvas PaintAboutPicture(const FontSet& fonts);  // with clear pixels
std::vector<std::uint8_t> AboutTable();
std::vector<std::uint8_t> AboutTexture();

}  // namespace vonta::skin
