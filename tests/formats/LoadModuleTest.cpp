#include <gtest/gtest.h>

#include "formats/Loaders.h"
#include "tests/support/TempDirectory.h"
#include "tests/support/XmBuilder.h"

namespace vonta {
namespace {

using test::XmBuilder;

TEST(LoadModule, WhatIsNoSongIsRefusedInOneLine) {
    const TempDirectory dir;
    const struct { std::string path, error; } cases[] = {
        {dir.File("missing"), "cannot open: No such file or directory"},
        {dir.File(""), "cannot open: Is a directory"},
        {dir.Write("empty", ""), "the file is empty"},
        {dir.Write("text", "just a letter to somebody"), "not a song this program knows"},
        {dir.Write("cut", "Extended Module: a title"), "the file is cut short in its header"},
    };
    for (const auto& c : cases) {
        LoadReport report;
        bool unknown = true;
        EXPECT_EQ(LoadModule(c.path, unknown, report), nullptr) << c.path;
        EXPECT_EQ(report.error, c.error);
        EXPECT_FALSE(unknown);
    }
}

TEST(LoadModule, TheSongIsValidated) {
    XmBuilder xm = XmBuilder::Small();
    xm.bpm = 999;
    xm.tempo = 0;
    xm.length = 0;
    xm.restart = 7;
    MemoryStream stream(xm.Build());
    LoadReport report;
    bool unknown = true;
    const auto song = LoadModule(stream, unknown, report);
    ASSERT_TRUE(song) << report.error;
    EXPECT_EQ(song->bpm, kMaxBpm);
    EXPECT_EQ(song->tempo, kMinTempo);
    EXPECT_EQ(song->length, 1u);
    EXPECT_EQ(song->restartPos, 0u);
    EXPECT_EQ(report.repairs.size(), 4u);
    EXPECT_EQ(report.repairs[0], "Starting BPM 999 became 255");
    EXPECT_FALSE(unknown);
}

TEST(LoadReport, HoldsTwentyLinesOfBoundedLengthAndTheFirstReason) {
    LoadReport report;
    for (int i = 0; i < 30; ++i) report.Add("%d\n%s", i, std::string(1000, 'x').c_str());
    ASSERT_EQ(report.lines.size(), 20u);
    for (const auto& line : report.lines) {
        EXPECT_EQ(line.size(), 255u);
        EXPECT_EQ(line.find('\n'), std::string::npos);
    }
    report.Fail("first %d", 1);
    report.Fail("second");
    EXPECT_EQ(report.error, "first 1");
}

}  // namespace
}  // namespace vonta
