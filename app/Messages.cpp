#include "app/Messages.h"

#include <cstdint>
#include <cstdio>

namespace vonta {

const char* const kProgramTitle = "Vonta Tracker beta " VONTA_VERSION;
const char* const kCircleText = "the song runs in a circle; it was ended there";

namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";   // U+FFFD

struct Character {
    char32_t code = 0;
    std::size_t length = 0;                          // bytes; 0 if they are not UTF-8
};

// Strict: no overlong forms, no surrogates, nothing above U+10FFFF.
Character DecodeFirst(std::string_view text) {
    const auto byte = [&](std::size_t i) { return static_cast<std::uint8_t>(text[i]); };
    const std::uint8_t lead = byte(0);
    if (lead < 0x80) return {lead, 1};
    const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    if (lead < 0xC2 || lead > 0xF4 || text.size() < length) return {};
    char32_t code = lead & (0xFFu >> (length + 1));
    for (std::size_t i = 1; i < length; ++i) {
        if ((byte(i) & 0xC0) != 0x80) return {};
        code = code << 6 | (byte(i) & 0x3Fu);
    }
    constexpr char32_t kLeast[] = {0, 0, 0x80, 0x800, 0x10000};
    if (code < kLeast[length] || code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF)) return {};
    return {code, length};
}

bool IsControl(char32_t code) { return code < 0x20 || (code >= 0x7F && code < 0xA0); }

bool ChangesDirection(char32_t code) {
    return code == 0x061C || code == 0x200E || code == 0x200F || (code >= 0x2028 && code <= 0x202E) ||
           (code >= 0x2066 && code <= 0x2069);
}

}  // namespace

std::string Printable(std::string_view text, Layout layout) {
    std::string out;
    while (!text.empty()) {
        const Character first = DecodeFirst(text);
        const std::size_t length = first.length ? first.length : 1;
        const bool kept = layout == Layout::Keep && (first.code == '\n' || first.code == '\t');
        if (layout == Layout::Keep && first.code == '\r') out += '\n';   // how comments end their lines
        else if (!first.length || ChangesDirection(first.code)) out += kReplacement;
        else if (IsControl(first.code) && !kept) out += '?';
        else out += text.substr(0, length);
        text.remove_prefix(length);
    }
    return out;
}

void Complain(std::string_view subject, std::string_view reason) {
    std::fprintf(stderr, "vonta: %s: %s\n", Printable(subject).c_str(), Printable(reason).c_str());
}

void Complain(std::string_view reason) { std::fprintf(stderr, "vonta: %s\n", Printable(reason).c_str()); }

std::string ClockText(double seconds) {
    const auto whole = static_cast<long long>(seconds);
    char text[64];
    if (whole >= 3600)
        std::snprintf(text, sizeof text, "%lld:%02lld:%02lld", whole / 3600, whole / 60 % 60, whole % 60);
    else
        std::snprintf(text, sizeof text, "%lld:%02lld", whole / 60, whole % 60);
    return text;
}

std::string ClockTextTenths(double seconds) {
    const auto tenths = static_cast<long long>(seconds * 10.0 + 0.5);
    return ClockText(static_cast<double>(tenths / 10) + 0.01) + "." + std::to_string(tenths % 10);
}

}  // namespace vonta
