#include "audio/DrvDiskWritter.h"

#include <algorithm>
#include <array>

#include "audio/Truncated16.h"
#include "engine/mix/Mixer.h"

namespace vonta {

int DrvDiskWritter::Init(void*, int, int, Mixer& mixer, TickHandler* tickHandler) {
    position_.Restart(mixer.sampleRate);
    file_.reset(std::fopen(kFileName, "wb"));
    timer_.Init(tickHandler, kTimerPeriodMs);
    return 1;
}

void DrvDiskWritter::WriteBlock(float* const* outputs, int frames, std::uint32_t) {
    if (!file_) return;
    std::array<std::int16_t, kBlockFloats> values;
    const float* next = outputs[0];
    for (auto left = static_cast<std::size_t>(frames) * 2; left > 0;) {
        const std::size_t now = std::min(left, values.size());
        std::transform(next, next + now, values.begin(), Truncated16);
        std::fwrite(values.data(), sizeof values[0], now, file_.get());
        next += now;
        left -= now;
    }
    std::fflush(file_.get());
}

int DrvDiskWritter::GetPosition(std::uint32_t* bytes) {
    *bytes = position_.Advance();
    return 1;
}

}  // namespace vonta
