#include <gtest/gtest.h>

#include "audio/Mixdown.h"
#include "tests/support/Await.h"
#include "tests/support/RunVonta.h"
#include "tests/support/SmallXm.h"

namespace vonta::test {
namespace {

class RenderTest : public testing::Test {
protected:
    RenderTest() {
        directory_.Write("small.xm", AsText(SmallXm().Build()));
        directory_.Write("circle.xm", AsText(CircleXm().Build()));
    }
    Outcome Render(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), "render");
        return RunVonta(arguments, directory_.Path());
    }
    unsigned Field(const std::string& name, std::size_t at, int bytes) const {
        const auto data = directory_.Bytes(name);
        unsigned value = 0;
        for (int i = 0; i < bytes; ++i) value |= static_cast<unsigned>(data.at(at + static_cast<std::size_t>(i))) << 8 * i;
        return value;
    }
    TempDirectory directory_;
};

TEST_F(RenderTest, WritesTheSongsNameInTheCurrentDirectory) {
    std::filesystem::create_directory(directory_.Path() / "sub");
    const Outcome outcome = RunVonta({"render", "../small.xm"}, directory_.Path() / "sub");
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(outcome.err, "");                      // no progress bar where there is no terminal
    EXPECT_TRUE(outcome.out.starts_with("small.wav: 0:00.6 of sound, made in ")) << outcome.out;
    EXPECT_TRUE(std::filesystem::exists(directory_.Path() / "sub/small.wav"));
    EXPECT_FALSE(std::filesystem::exists(directory_.Path() / "small.wav"));
}

TEST_F(RenderTest, TheOptionsReachTheFile) {
    const struct {
        std::vector<std::string> arguments;
        std::string file;
        unsigned rate, bits;
    } kCases[] = {
        {{"small.xm", "-o", "a"}, "a.wav", 44100, 16},
        {{"small.xm", "-o", "b.wav", "--bits", "8"}, "b.wav", 44100, 8},
        {{"small.xm", "-o", "c", "--bits", "32", "--rate", "192000"}, "c.wav", 192000, 32},
        {{"small.xm", "-o", ".", "--rate", "8000", "--interpolation", "cubic"}, "small.wav", 8000, 16},
    };
    for (const auto& test : kCases) {
        EXPECT_EQ(Render(test.arguments).status, 0);
        EXPECT_EQ(Field(test.file, 24, 4), test.rate) << test.file;
        EXPECT_EQ(Field(test.file, 34, 2), test.bits) << test.file;
        const unsigned seconds = Field(test.file, 40, 4) * 100 / (test.rate * test.bits / 4);
        EXPECT_NEAR(seconds, 66, 7) << test.file;    // hundredths; the last block is written whole
    }
}

TEST_F(RenderTest, LoopsAndTheTimeLimitSetTheLength) {
    const auto bytes = [&](std::vector<std::string> arguments) {
        arguments.insert(arguments.end(), {"-o", "x"});
        EXPECT_EQ(Render(arguments).status, 0);
        return Field("x.wav", 40, 4);
    };
    const double second = 44100 * 4;
    EXPECT_NEAR(bytes({"small.xm", "--loops", "4"}) / second, 4 * 0.48 + 0.12, 0.05);
    EXPECT_NEAR(bytes({"small.xm", "--loops", "1000", "--max-minutes", "0.1"}) / second, 6.0, 0.05);
    EXPECT_NEAR(bytes({"circle.xm"}) / second, 0.48, 0.05);
}

TEST_F(RenderTest, PartsAreListedAndCounted) {
    const Outcome outcome = Render({"small.xm", "--parts", "-o", "p"});
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    for (const char* name : {"p_Master01.wav", "p_SubGroup01.wav", "p_Instr001.wav"}) {
        EXPECT_TRUE(directory_.List().contains(name));
        EXPECT_NE(outcome.out.find(std::string(name) + "\n"), std::string::npos);
    }
    EXPECT_NE(outcome.out.find("6 files: 0:00.6 of sound"), std::string::npos) << outcome.out;
}

TEST_F(RenderTest, ASongThatIsNamedLikeItsRenderingStaysWhole) {
    directory_.Write("song.wav", AsText(SmallXm().Build()));
    const auto before = directory_.Bytes("song.wav");
    EXPECT_EQ(Render({"song.wav"}).status, 1);
    EXPECT_EQ(directory_.Bytes("song.wav"), before);
}

TEST_F(RenderTest, ANameThatLooksLikeAnOptionIsReachedBehindTwoDashes) {
    directory_.Write("-x.xm", AsText(SmallXm().Build()));
    EXPECT_EQ(Render({"--", "-x.xm"}).status, 0);
    EXPECT_TRUE(directory_.List().contains("-x.wav"));
}

TEST_F(RenderTest, CtrlCRemovesTheUnfinishedFileAndKeepsTheOldOne) {
    directory_.Write("long.wav", "an older rendering");
    const auto before = directory_.List();
    Program program({"render", "small.xm", "-o", "long", "--loops", "1000", "--max-minutes", "100000", "--rate", "192000"},
                    directory_.Path());
    ASSERT_TRUE(Await([&] { return directory_.List().size() > before.size(); }));
    program.Interrupt();
    EXPECT_EQ(program.Wait().status, 130);
    EXPECT_EQ(directory_.List(), before);
    EXPECT_EQ(directory_.Text("long.wav"), "an older rendering");
}

}  // namespace
}  // namespace vonta::test
