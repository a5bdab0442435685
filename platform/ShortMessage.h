// Packed short messages and the bytes that travel.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace vonta {

constexpr std::uint8_t kMidiStatusBit = 0x80;
constexpr std::size_t kMaxShortMessage = 3;        // bytes

struct ShortMessageBytes {
    std::array<std::uint8_t, kMaxShortMessage> bytes{};
    std::size_t size = 0;                          // 0 if there is no short message of that status
};

// By status: program change and channel pressure have one data byte, the other channel messages two.
constexpr std::size_t ShortMessageSize(std::uint8_t status) {
    constexpr std::size_t kChannelMessages[] = {3, 3, 3, 3, 2, 2, 3};              // 0x80 to 0xE0
    constexpr std::size_t kSystemMessages[] = {0, 2, 3, 2, 0, 0, 1, 0, 1, 0, 1, 1, 1, 0, 1, 1};   // 0xF0 to 0xFF
    if (status < kMidiStatusBit) return 0;
    return status < 0xF0 ? kChannelMessages[(status >> 4) - 8] : kSystemMessages[status & 15];
}

constexpr ShortMessageBytes UnpackShortMessage(std::uint32_t message) {
    const auto byte = [message](int number) { return static_cast<std::uint8_t>(message >> 8 * number); };
    return {{byte(0), byte(1), byte(2)}, ShortMessageSize(byte(0))};
}

// Nothing if the bytes are no whole short message: exclusive messages, fragments.
constexpr std::optional<std::uint32_t> PackShortMessage(std::span<const std::uint8_t> bytes) {
    if (bytes.empty() || bytes.size() != ShortMessageSize(bytes[0])) return std::nullopt;
    std::uint32_t message = 0;
    for (std::size_t i = 0; i < bytes.size(); ++i) message |= std::uint32_t{bytes[i]} << 8 * i;
    return message;
}

}  // namespace vonta
