#include "app/Messages.h"

#include <gtest/gtest.h>

namespace vonta {
namespace {

TEST(Messages, PrintableKeepsTextAndDisarmsTheRest) {
    const std::string kMark = "\xEF\xBF\xBD";
    const struct {
        std::string text, printable;
    } kCases[] = {
        {"Grüße, 世界 🎵", "Grüße, 世界 🎵"},
        {"a\033[0m\tb\n", "a?[0m?b?"},
        {"\xC2\x9B", "?"},                           // a control of eight bits, as UTF-8
        {"\xE2\x80\xAEx", kMark + "x"},              // right to left from here
        {"\xC0\xAF", kMark + kMark},                 // overlong
        {"\xED\xA0\x80", kMark + kMark + kMark},     // a surrogate
        {"\xF4\x90\x80\x80", kMark + kMark + kMark + kMark},
        {"cut \xF0\x9F\x8E", "cut " + kMark + kMark + kMark},
        {std::string("\0x", 2), "?x"},
    };
    for (const auto& test : kCases) EXPECT_EQ(Printable(test.text), test.printable);
    EXPECT_EQ(Printable("a\tb\n\r", Layout::Keep), "a\tb\n\n");
}

TEST(Messages, ClockTextCarriesItsTenths) {
    const struct {
        double seconds;
        const char *whole, *tenths;
    } kCases[] = {{0, "0:00", "0:00.0"},     {59.96, "0:59", "1:00.0"},       {107.66, "1:47", "1:47.7"},
                  {3599.99, "59:59", "1:00:00.0"}, {3661.2, "1:01:01", "1:01:01.2"}};
    for (const auto& test : kCases) {
        EXPECT_EQ(ClockText(test.seconds), test.whole);
        EXPECT_EQ(ClockTextTenths(test.seconds), test.tenths);
    }
}

}  // namespace
}  // namespace vonta
