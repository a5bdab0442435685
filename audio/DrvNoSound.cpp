#include "audio/DrvNoSound.h"

#include "engine/mix/Mixer.h"

namespace vonta {

int DrvNoSound::Init(void*, int, int, Mixer& mixer, TickHandler* tickHandler) {
    position_.Restart(mixer.sampleRate);
    timer_.Init(tickHandler, kTimerPeriodMs);
    return 1;
}

int DrvNoSound::GetPosition(std::uint32_t* bytes) {
    *bytes = position_.Advance();
    return 1;
}

}  // namespace vonta
