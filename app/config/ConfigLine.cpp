#include "app/config/ConfigLine.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <string>

namespace vonta {
namespace {
constexpr std::string_view kBlanks = " \t";
}

void ConfigLine::SkipBlanks() { rest_.remove_prefix(std::min(rest_.find_first_not_of(kBlanks), rest_.size())); }

std::string_view ConfigLine::Take(std::size_t size) {
    const std::string_view taken = rest_.substr(0, size);
    rest_.remove_prefix(taken.size());
    return taken;
}

std::string_view ConfigLine::Token() {
    SkipBlanks();
    return Take(rest_.find_first_of(kBlanks));
}

std::string_view ConfigLine::Quoted() {
    SkipBlanks();
    if (!rest_.starts_with('"')) return Token();
    rest_.remove_prefix(1);
    return Take(rest_.find('"'));
}

int ConfigLine::Integer(int base) {
    const std::string token(Token());
    if (token.empty()) return base == 0 ? 0 : -1;
    constexpr long long low = std::numeric_limits<int>::min(), high = std::numeric_limits<int>::max();
    return static_cast<int>(std::clamp(std::strtoll(token.c_str(), nullptr, base), low, high));
}

float ConfigLine::Real(float old) {
    std::string_view token = Token();
    if (token.starts_with('+')) token.remove_prefix(1);
    float value = 0;
    // Not strtof: the point is a point, whatever the user's language.
    const auto result = std::from_chars(token.data(), token.data() + token.size(), value);
    return result.ec == std::errc::result_out_of_range || !std::isfinite(value) ? old : value;
}

}  // namespace vonta
