// A curve of up to twelve points over ticks: x 0 to 420, y 0 to 64.
#pragma once

#include <array>
#include <cstdint>

namespace vonta {

constexpr int kEnvelopePoints = 12;
constexpr int kMaxEnvelopeX = 420;
constexpr int kMaxEnvelopeY = 64;

struct EnvelopePoint {
    std::uint16_t x = 0;
    std::uint16_t y = 0;
    bool operator==(const EnvelopePoint&) const = default;
};

constexpr std::array<EnvelopePoint, kEnvelopePoints> DefaultEnvelopePoints() {
    std::array<EnvelopePoint, kEnvelopePoints> points{};
    for (std::uint16_t i = 0; i < 5; ++i) points[i] = {static_cast<std::uint16_t>(40 * i), 32};
    return points;
}

// 56 bytes in this order, also the form in which files hold it.
struct Envelope {
    std::array<EnvelopePoint, kEnvelopePoints> points = DefaultEnvelopePoints();
    std::uint8_t enabled = 0;
    std::uint8_t numPoints = 5;          // 1 to 12
    std::uint8_t sustainOn = 0;
    std::uint8_t sustainPoint = 0;
    std::uint8_t loopOn = 0;
    std::uint8_t loopStart = 0, loopEnd = 0;   // point numbers
    std::uint8_t timeBased = 0;          // 1: keeps its speed in seconds when the BPM changes

    bool operator==(const Envelope&) const = default;

    void InsertPoint(int after);         // nothing if full or out of range
    void DeletePoint(int index);         // nothing for the first point
    void Validate();
};
static_assert(sizeof(Envelope) == 56);

}  // namespace vonta
