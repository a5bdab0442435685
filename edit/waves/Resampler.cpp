#include "edit/waves/Resampler.h"

#include <algorithm>
#include <cmath>

#include <soxr.h>

#include "platform/Clock.h"

namespace vonta {
namespace {

constexpr std::size_t kPiece = 4096;             // frames taken at a time

}  // namespace

void Resampler::Free::operator()(soxr* converter) const { soxr_delete(converter); }

Resampler::Resampler(std::span<const float> wave, int channels, double ratio, std::span<float> result)
    : wave_(wave), result_(result), width_(static_cast<std::size_t>(channels)) {
    const soxr_io_spec_t floats = soxr_io_spec(SOXR_FLOAT32_I, SOXR_FLOAT32_I);
    const soxr_quality_spec_t quality = soxr_quality_spec(SOXR_VHQ, 0);
    soxr_error_t error = nullptr;
    converter_.reset(soxr_create(1.0, ratio, static_cast<unsigned>(channels), &error, &floats, &quality, nullptr));
    failed_ = error || !converter_;
}

Resampler::~Resampler() = default;

std::uint64_t Resampler::FramesMade(std::uint64_t frames, double ratio) {
    return std::max<std::uint64_t>(static_cast<std::uint64_t>(std::llround(static_cast<double>(frames) * ratio)), 1);
}

float Resampler::Done() const {
    return static_cast<float>(made_) / static_cast<float>(std::max<std::size_t>(result_.size() / width_, 1));
}

// Behind the wave's end the rest is asked for until nothing more comes; what is not filled then stays silent.
bool Resampler::Work(int milliseconds) {
    const std::uint32_t start = Milliseconds();
    const std::size_t frames = wave_.size() / width_, wanted = result_.size() / width_;
    while (!failed_ && made_ < wanted) {
        const std::size_t piece = std::min(kPiece, frames - taken_);
        std::size_t took = 0, gave = 0;
        const float* from = piece > 0 ? wave_.data() + taken_ * width_ : nullptr;
        failed_ = soxr_process(converter_.get(), from, piece, &took, result_.data() + made_ * width_, wanted - made_,
                               &gave) != nullptr;
        taken_ += took;
        made_ += gave;
        if (piece == 0 && gave == 0) return false;
        if (Milliseconds() - start >= static_cast<std::uint32_t>(milliseconds)) break;
    }
    return !failed_ && made_ < wanted;
}

}  // namespace vonta
