// What stands in the two packs of the program.
#pragma once

#include <string>
#include <vector>

#include "app/pack/PackFile.h"
#include "tools/skin/Glyphs.h"

namespace vonta::skin {

// The default skin: the marker of its version, then every picture, font and colour that the program names.
// Throws std::runtime_error for a bitmap that nothing draws.
std::vector<PackEntry> SkinEntries(const FontSet& fonts);

// The data pack; textDirectory holds effects.txt, bugs.txt and faqs.txt. Throws std::runtime_error if one is missing.
std::vector<PackEntry> DataEntries(const FontSet& fonts, const std::string& textDirectory);

}  // namespace vonta::skin
