// Which frames of a wave are on view in the 800 columns of the sample editor, and which float stands in which column.
//
// All of it at first: a wave of at most 800 frames has a column a frame then, a longer one is stretched over them all.
// A view that is zoomed in is stretched over them too. Points of a wave count floats, as everywhere; columns count from
// 0.
#pragma once

#include <cstdint>

namespace vonta {

class WaveView {
public:
    static constexpr int kColumns = 800;
    static constexpr std::int64_t kLeastFrames = 16;   // on view

    // The wave that is on view. Another one is shown whole; one that was edited keeps the view as far as it goes.
    void Follow(const void* wave, std::uint32_t count, int channels);

    bool IsWhole() const { return first_ == 0 && frames_ >= Total(); }
    bool IsLong() const { return Total() > kColumns || !IsWhole(); }   // stretched
    std::int64_t Total() const { return count_ / channels_; }          // frames of the wave
    std::int64_t First() const { return first_; }
    std::int64_t Frames() const { return IsWhole() ? Total() : frames_; }

    void ShowAll();
    void Show(std::int64_t firstFrame, std::int64_t frames);           // limited to the wave
    void ZoomAt(int column, int notches);        // what stands there stays there; up is nearer
    void ScrollTo(std::int64_t firstFrame);

    std::int64_t ColumnOf(std::int64_t floats) const;      // may lie outside
    std::int64_t FloatsAt(int column) const;     // of a whole frame, 0 to count
    int ColumnOfReading(std::uint32_t floats) const;       // of what plays; -1 outside

    // The line through the wave: one point a column, or one a frame where there are fewer frames.
    int Points() const;                          // at most kColumns + 1
    struct Point {
        int column = 0;
        std::int64_t floats = 0;                 // of the frame's left side
    };
    Point PointAt(int index) const;

private:
    bool IsJoined() const { return !IsWhole() && frames_ < kColumns; }   // fewer frames than columns

    const void* wave_ = nullptr;
    std::int64_t count_ = 0, channels_ = 1;      // floats
    std::int64_t first_ = 0, frames_ = 0;        // on view; frames_ of Total or more is all
};

}  // namespace vonta
