#include "interface/video/Latin1.h"

namespace vonta {
namespace {

constexpr std::uint8_t kForeign = '?';

bool Continues(std::string_view text, std::size_t at) {
    return at < text.size() && (static_cast<std::uint8_t>(text[at]) & 0xC0) == 0x80;
}

// Bytes of the sequence that begins here; 1 if it is not valid.
std::size_t SequenceLength(std::string_view text, std::size_t at) {
    const auto lead = static_cast<std::uint8_t>(text[at]);
    const std::size_t length = lead >= 0xF0 && lead <= 0xF4 ? 4 : lead >= 0xE0 && lead < 0xF0 ? 3 : lead >= 0xC2 && lead < 0xE0 ? 2 : 1;
    for (std::size_t i = 1; i < length; ++i)
        if (!Continues(text, at + i)) return 1;
    return length;
}

}  // namespace

std::uint8_t NextGlyph(std::string_view text, std::size_t& at) {
    const auto lead = static_cast<std::uint8_t>(text[at]);
    const std::size_t length = SequenceLength(text, at);
    at += length;
    if (length == 1) return lead;
    if (length > 2 || lead > 0xC3) return kForeign;
    return static_cast<std::uint8_t>(lead << 6 | (text[at - 1] & 0x3F));
}

int CountCharacters(std::string_view text) {
    int count = 0;
    for (std::size_t at = 0; at < text.size(); ++count) at += SequenceLength(text, at);
    return count;
}

std::size_t BytesOf(std::string_view text, int characters) {
    std::size_t at = 0;
    for (int i = 0; i < characters && at < text.size(); ++i) at += SequenceLength(text, at);
    return at;
}

}  // namespace vonta
