#include "platform/ShortMessage.h"

#include <gtest/gtest.h>

#include <vector>

namespace vonta {
namespace {

TEST(ShortMessage, HasAsManyBytesAsItsStatusSays) {
    struct Case { std::vector<std::uint8_t> bytes; std::uint32_t message; };
    for (const auto& [bytes, message] : {
             Case{{0x91, 60, 100}, 0x643C91}, {{0x8F, 1, 2}, 0x02018F}, {{0xC2, 127}, 0x7FC2}, {{0xD0, 5}, 0x05D0},
             {{0xE3, 0, 64}, 0x4000E3}, {{0xF2, 1, 2}, 0x0201F2}, {{0xF8}, 0xF8},
         }) {
        EXPECT_EQ(PackShortMessage(bytes), message);
        const ShortMessageBytes unpacked = UnpackShortMessage(message);
        EXPECT_EQ(std::vector<std::uint8_t>(unpacked.bytes.begin(), unpacked.bytes.begin() + static_cast<long>(unpacked.size)),
                  bytes);
    }
}

TEST(ShortMessage, WhatIsNoneIsLeftOut) {
    for (const std::vector<std::uint8_t>& bytes : {std::vector<std::uint8_t>{}, {60, 100}, {0x90, 60}, {0x90}, {0xC0, 1, 2},
                                                   {0xF0, 1, 0xF7}, {0x90, 60, 100, 61, 100}})
        EXPECT_EQ(PackShortMessage(bytes), std::nullopt) << bytes.size();
    EXPECT_EQ(UnpackShortMessage(0x643C40).size, 0u);
}

}  // namespace
}  // namespace vonta
