// A running envelope: where a note stands on one of its instrument's curves.
#pragma once

#include <cstdint>

#include "song/Envelope.h"

namespace vonta {

struct EnvelopeState {
    const Envelope* envelope = nullptr;   // of the instrument that plays; not owned
    std::uint8_t on = 0;
    float position = 0;                   // ticks
    std::uint8_t base = 0;                // pan only: the pan that the curve bends
    std::int32_t value = 0;               // last y, 0 to 64
};

// Evaluates at the position and moves it on: by `step` ticks if the envelope is time based, by 1 otherwise. A held
// sustain point keeps the position until key off. Nothing if the state is off.
void AdvanceEnvelope(EnvelopeState& state, bool keyOff, float step);

}  // namespace vonta
