#include "song/Pattern.h"

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <thread>

namespace vonta {
namespace {

constexpr Cell kSomeNote{48, 1, 64, 5, 6};

std::unique_ptr<Pattern> FullPattern(int rows) {
    auto pattern = std::make_unique<Pattern>();
    pattern->SetNumRows(rows);
    for (int row = 0; row < rows; ++row)
        for (int track = 0; track < kTracks; ++track) pattern->Write(row, track, kSomeNote);
    return pattern;
}

TEST(Pattern, ShrinkingLosesTheDroppedRowsAndGrowingFindsThemEmpty) {
    const auto pattern = FullPattern(64);
    pattern->SetNumRows(16);
    pattern->SetNumRows(kMaxRows);
    for (int row = 0; row < kMaxRows; ++row)
        for (int track = 0; track < kTracks; ++track)
            ASSERT_EQ(pattern->Read(row, track), row < 16 ? kSomeNote : Cell{}) << row << ' ' << track;
}

TEST(Pattern, RowCountStaysInsideItsLimitsAndIsTheSameInEveryTrack) {
    constexpr struct { int asked, rows; } cases[] = {{1, 1}, {256, 256}, {257, 256}, {0, 256}, {-1, 256}, {64, 64}};
    const auto pattern = std::make_unique<Pattern>();
    for (const auto& [asked, rows] : cases) {
        pattern->SetNumRows(asked);
        EXPECT_EQ(pattern->Rows(), rows) << asked;
        for (const Track& track : pattern->tracks) EXPECT_EQ(track.rows, rows) << asked;
    }
}

TEST(Pattern, OutsideNothingIsReadOrWritten) {
    constexpr struct { int row, track; } outside[] = {{-1, 0}, {16, 0}, {256, 0}, {0, -1}, {0, 64}};
    const auto pattern = FullPattern(16);
    for (const auto& [row, track] : outside) {
        pattern->Write(row, track, kSomeNote);
        EXPECT_EQ(pattern->Read(row, track), Cell{}) << row << ' ' << track;
    }
    pattern->SetNumRows(17);
    EXPECT_EQ(pattern->Read(16, 0), Cell{});
}

TEST(Pattern, ClearingLeavesNoVolumeRatherThanSilence) {
    const auto pattern = FullPattern(32);
    pattern->Clear();
    EXPECT_EQ(pattern->Rows(), 32);
    for (const Track& track : pattern->tracks)
        for (const Cell& cell : track.cells) ASSERT_EQ(cell, (Cell{128, 0, 129, 0, 0}));
}

TEST(Pattern, CopyingFillsTheSharedRowsAndKeepsTheTargetsSize) {
    constexpr struct { int source, target; } sizes[] = {{16, 64}, {64, 16}, {20, 20}};
    for (const auto& [sourceRows, targetRows] : sizes) {
        const auto source = FullPattern(sourceRows);
        const auto target = std::make_unique<Pattern>();
        target->SetNumRows(targetRows);
        target->Write(targetRows - 1, 63, {1, 2, 3, 4, 5});
        source->CopyTo(*target);
        EXPECT_EQ(target->Rows(), targetRows);
        EXPECT_EQ(target->Read(0, 0), kSomeNote);
        EXPECT_EQ(target->Read(targetRows - 1, 63), sourceRows < targetRows ? (Cell{1, 2, 3, 4, 5}) : kSomeNote);
    }
}

// What the thread checker is for: a player reads while the rows change and cells are written.
TEST(Pattern, AReaderNeverMeetsARowCountOrACellThatIsHalfDone) {
    const auto pattern = FullPattern(64);
    std::atomic<bool> done = false;
    std::thread player([&] {
        while (!done) {
            const int rows = pattern->Rows();
            EXPECT_TRUE(rows == 16 || rows == 64) << rows;
            for (int row = 0; row < rows; ++row) {
                const Cell cell = pattern->Read(row, 3);
                EXPECT_TRUE(cell.volume == kNoVolume || cell.volume == 64) << cell.volume;
            }
        }
    });
    for (int i = 0; i < 200; ++i) {
        pattern->SetNumRows(i % 2 ? 64 : 16);
        pattern->Write(i % 64, 3, kSomeNote);
    }
    done = true;
    player.join();
}

}  // namespace
}  // namespace vonta
