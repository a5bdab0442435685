// A line of Vonta.cfg, taken from left to right: words between blanks, and what the words mean.
#pragma once

#include <string_view>

namespace vonta {

class ConfigLine {
public:
    explicit ConfigLine(std::string_view text) : rest_(text) {}

    std::string_view Token();                        // the next word; empty at the end
    std::string_view Quoted();                       // between double quotes, blanks included; without them a word
    // The next word, or as much of it as is a number, else 0. Base 0: 0x is hexadecimal, a leading 0 octal. Without a
    // word 0 for base 0 and -1 for the others.
    int Integer(int base);
    float Real(float old);                           // 0 if there is none; old if it is not finite

private:
    void SkipBlanks();
    std::string_view Take(std::size_t size);

    std::string_view rest_;
};

}  // namespace vonta
