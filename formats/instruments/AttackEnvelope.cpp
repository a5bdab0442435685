#include "formats/instruments/AttackEnvelope.h"

#include <algorithm>

namespace vonta {

void SetAttackEnvelope(Envelope& envelope, const std::array<AttackStep, kAttackPoints>& steps) {
    int x = 0;
    for (std::size_t i = 0; i < steps.size(); ++i) {
        x = std::min(x + static_cast<int>(std::clamp<double>(steps[i].ticks, 0, kMaxEnvelopeX)), kMaxEnvelopeX);
        envelope.points[i] = {static_cast<std::uint16_t>(x), steps[i].level};
    }
    envelope.numPoints = kAttackPoints;
    envelope.timeBased = 1;
    envelope.enabled = 1;
    envelope.sustainOn = 1;
    envelope.sustainPoint = kAttackPoints - 1;
}

}  // namespace vonta
