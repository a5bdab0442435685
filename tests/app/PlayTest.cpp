#include <gtest/gtest.h>

#include <algorithm>

#include "tests/support/Await.h"
#include "tests/support/RunVonta.h"
#include "tests/support/SmallXm.h"

namespace vonta::test {
namespace {

TEST(PlayDevice, PlaysToTheEndAndShowsOneLine) {
    TempDirectory directory;
    directory.Write("s.xm", AsText(SmallXm().Build()));
    const Outcome outcome = RunVonta({"play", "s.xm", "--device", "nosound"}, directory.Path());
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(std::ranges::count(outcome.out, '\n'), 1);
    EXPECT_TRUE(outcome.out.starts_with("position 000 of 001  pattern 000  row ")) << outcome.out;
    EXPECT_NE(outcome.out.find("125 BPM  load "), std::string::npos);
}

TEST(PlayDevice, TheDiskWriterLeavesSoundAndSecondsEndASongWithoutEnd) {
    TempDirectory directory;
    directory.Write("s.xm", AsText(CircleXm().Build()));
    EXPECT_EQ(RunVonta({"play", "s.xm", "--device", "diskwriter", "--seconds", "0.4"}, directory.Path()).status, 0);
    const auto bytes = directory.Bytes("diskwritter.raw");
    EXPECT_GT(bytes.size(), 20000u);                 // of 70 000, if the machine is busy
    EXPECT_TRUE(std::ranges::any_of(bytes, [](auto byte) { return byte != 0; }));
}

TEST(PlayDevice, CtrlCEndsItWithItsStatus) {
    TempDirectory directory;
    directory.Write("s.xm", AsText(CircleXm().Build()));
    Program program({"play", "--log", "s.xm", "--device", "nosound"}, directory.Path());
    ASSERT_TRUE(Await(
        [&] { return program.ErrorText().find("* Starting Mixer Engine...") != std::string::npos; }));
    program.Interrupt();
    EXPECT_EQ(program.Wait().status, 130);
}

TEST(PlayDevice, ADiskWriterThatCannotWriteSaysSoAndFails) {
    for (const bool full : {true, false}) {
        TempDirectory directory;
        directory.Write("s.xm", AsText(CircleXm().Build()));
        if (full) std::filesystem::create_symlink("/dev/full", directory.File("diskwritter.raw"));
        else std::filesystem::create_directory(directory.File("diskwritter.raw"));
        const Outcome outcome = RunVonta({"play", "s.xm", "--device", "diskwriter", "--seconds", "20"}, directory.Path());
        EXPECT_EQ(outcome.status, 1);
        EXPECT_NE(outcome.err.find(full ? "diskwritter.raw: No space left" : "diskwritter.raw: Is a directory"),
                  std::string::npos) << outcome.err;
    }
}

}  // namespace
}  // namespace vonta::test
