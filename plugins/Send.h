// One send of an instrument or a synth plug-in into an effect slot.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace vonta {

constexpr int kSends = 16;        // held and saved
constexpr int kMixedSends = 8;    // the first eight feed the send slots

struct Send {
    std::uint8_t on = 0;
    float level = 1.0f;           // linear
    std::uint8_t slot = 0;        // effect slot; by default the send's own index
};

using Sends = std::array<Send, kSends>;

constexpr Sends DefaultSends() {
    Sends sends{};
    for (std::size_t i = 0; i < sends.size(); ++i) sends[i].slot = static_cast<std::uint8_t>(i);
    return sends;
}

}  // namespace vonta
