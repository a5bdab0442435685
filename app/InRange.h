// The range check of numeric options. What is no number at all is out of every range.
#pragma once

#include <CLI/CLI.hpp>
#include <string>

namespace vonta {

template <class Number>
CLI::Validator InRange(Number least, Number most) {
    const auto check = [least, most](std::string& text) {
        Number value{};
        const bool inside = CLI::detail::lexical_cast(text, value) && value >= least && value <= most;
        return inside ? std::string() : "Value " + text + " not in range " + std::to_string(least) + " to " + std::to_string(most);
    };
    return CLI::Validator(check, "");
}

}  // namespace vonta
