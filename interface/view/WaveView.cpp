#include "interface/view/WaveView.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace vonta {
namespace {

constexpr int kLast = WaveView::kColumns - 1;
constexpr double kZoomOfNotch = 1.5;
constexpr int kMostNotches = 40;                 // at once: beyond any wave
constexpr float kColumnOfCount = 0.0012515645f;  // 1 / kLast
constexpr std::int64_t kAll = std::numeric_limits<std::int64_t>::max();

// Towards the lower column, on both sides of zero.
std::int64_t FloorOf(std::int64_t value, std::int64_t by) { return value / by - (value % by < 0 ? 1 : 0); }

}  // namespace

void WaveView::Follow(const void* wave, std::uint32_t count, int channels) {
    const bool another = wave != wave_;
    wave_ = wave;
    count_ = count;
    channels_ = std::max(channels, 1);
    if (another || first_ >= Total()) ShowAll();
    else if (frames_ != kAll) Show(first_, frames_);
}

void WaveView::ShowAll() {
    first_ = 0;
    frames_ = kAll;
}

void WaveView::Show(std::int64_t firstFrame, std::int64_t frames) {
    frames = std::max(frames, kLeastFrames);
    if (frames >= Total()) return ShowAll();
    frames_ = frames;
    first_ = std::clamp<std::int64_t>(firstFrame, 0, Total() - frames);
}

void WaveView::ScrollTo(std::int64_t firstFrame) {
    if (!IsWhole()) Show(firstFrame, frames_);
}

void WaveView::ZoomAt(int column, int notches) {
    const std::int64_t frame = FloatsAt(column) / channels_;
    const double factor = std::pow(kZoomOfNotch, -std::clamp(notches, -kMostNotches, kMostNotches));
    const double wanted = std::min(static_cast<double>(Frames()) * factor, static_cast<double>(Total()));
    const auto frames = std::max(static_cast<std::int64_t>(wanted), kLeastFrames);
    Show(frame - frames * std::clamp(column, 0, kLast) / kLast, frames);
}

std::int64_t WaveView::ColumnOf(std::int64_t floats) const {
    if (!IsLong()) return floats / channels_;
    if (IsWhole()) return floats * kLast / std::max<std::int64_t>(count_, 1);
    return FloorOf((floats / channels_ - first_) * kLast, frames_);
}

std::int64_t WaveView::FloatsAt(int column) const {
    const std::int64_t x = std::clamp(column, 0, kLast);
    const std::int64_t floats = !IsLong()   ? x * channels_
                                : IsWhole() ? count_ * x / kLast
                                            : (first_ + (frames_ * x + kLast / 2) / kLast) * channels_;
    return std::min(floats, count_) / channels_ * channels_;
}

int WaveView::ColumnOfReading(std::uint32_t floats) const {
    if (!IsLong() || count_ == 0) return -1;
    const std::int64_t column = IsWhole() ? static_cast<std::int64_t>(static_cast<float>(floats) /
                                                                      (static_cast<float>(count_) * kColumnOfCount))
                                          : ColumnOf(floats);
    return column >= 0 && column < kColumns ? static_cast<int>(column) : -1;
}

int WaveView::Points() const {
    if (IsJoined()) return static_cast<int>(std::min(frames_ + 1, Total() - first_));
    if (IsLong()) return kColumns;
    return static_cast<int>(std::max<std::int64_t>(channels_ == 1 ? count_ : count_ / 2 - 2, 0));
}

// A stereo wave that is whole leaves its last frame out.
WaveView::Point WaveView::PointAt(int index) const {
    if (IsJoined()) return {static_cast<int>(index * kLast / frames_), (first_ + index) * channels_};
    if (!IsLong()) return {index, index * channels_};
    if (!IsWhole()) return {index, (first_ + index * frames_ / kColumns) * channels_};
    const std::int64_t reached = channels_ == 1 ? count_ : count_ - 2;
    return {index, index * reached / kColumns / channels_ * channels_};
}

}  // namespace vonta
