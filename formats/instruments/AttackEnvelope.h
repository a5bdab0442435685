// The volume envelope that foreign instruments get: silence, up to the full level, and on to a sustained point.
#pragma once

#include <array>

#include "song/Envelope.h"

namespace vonta {

// y of each point, and the distance of its x from the point before in ticks of 20 ms; any number, moved into what an
// envelope holds. The last point is the sustained one.
struct AttackStep {
    double ticks = 0;
    std::uint16_t level = 0;
};
constexpr std::size_t kAttackPoints = 4;

void SetAttackEnvelope(Envelope& envelope, const std::array<AttackStep, kAttackPoints>& steps);

}  // namespace vonta
