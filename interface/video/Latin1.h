// Texts as the fonts see them: UTF-8, character by character, as one of 256 glyphs.
#pragma once

#include <cstdint>
#include <string_view>

namespace vonta {

// The glyph of the character at `at`, which moves behind it. '?' for a character beyond Latin-1; a byte that begins no
// valid sequence is taken as the Latin-1 character of its value.
std::uint8_t NextGlyph(std::string_view text, std::size_t& at);

// Characters of the text, and the byte behind the first `characters` of them.
int CountCharacters(std::string_view text);
std::size_t BytesOf(std::string_view text, int characters);

}  // namespace vonta
