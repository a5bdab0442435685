#include "audio/DrvDiskWritter.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <system_error>

#include "audio/Truncated16.h"
#include "engine/mix/Mixer.h"

namespace vonta {

int DrvDiskWritter::Init(void*, int, int, Mixer& mixer, TickHandler* tickHandler) {
    position_.Restart(mixer.sampleRate);
    file_.reset(std::fopen(kFileName, "wb"));
    error_ = 0;
    Check(file_ != nullptr);
    timer_.Init(tickHandler, kTimerPeriodMs);
    return 1;
}

void DrvDiskWritter::WriteBlock(float* const* outputs, int frames, std::uint32_t) {
    if (error_) return;
    std::array<std::int16_t, kBlockFloats> values;
    const float* next = outputs[0];
    for (auto left = static_cast<std::size_t>(frames) * 2; left > 0;) {
        const std::size_t now = std::min(left, values.size());
        std::transform(next, next + now, values.begin(), Truncated16);
        Check(std::fwrite(values.data(), sizeof values[0], now, file_.get()) == now);
        next += now;
        left -= now;
    }
    Check(std::fflush(file_.get()) == 0);
}

void DrvDiskWritter::Check(bool done) {
    if (!done && !error_) error_ = errno ? errno : EIO;
}

std::string DrvDiskWritter::GetFailure() const {
    return error_ ? std::string(kFileName) + ": " + std::generic_category().message(error_) : std::string();
}

int DrvDiskWritter::GetPosition(std::uint32_t* bytes) {
    *bytes = position_.Advance();
    return 1;
}

}  // namespace vonta
