#include <gtest/gtest.h>

#include "tests/support/RunVonta.h"
#include "tests/support/SmallXm.h"

namespace vonta::test {
namespace {

TEST(CommandLine, EndsWithTheStatusAndTheLineThatTellWhatIsWrong) {
    const struct {
        std::vector<std::string> arguments;
        int status;
        std::string error;                           // its first line begins with this
    } kCases[] = {
        {{"--sing"}, 2, "vonta: unknown sub-command or option: --sing"},
        {{"dance"}, 2, "vonta: unknown sub-command or option: dance"},
        {{"render"}, 2, "vonta: SONG is required"},
        {{"render", "s.xm", "--bits", "12"}, 2, "vonta: --bits: 12"},
        {{"render", "s.xm", "--rate", "7999"}, 2, "vonta: --rate: "},
        {{"render", "s.xm", "--rate", "192001"}, 2, "vonta: --rate: "},
        {{"render", "s.xm", "--interpolation", "sinc"}, 2, "vonta: --interpolation: "},
        {{"render", "s.xm", "--loops", "0"}, 2, "vonta: --loops: "},
        {{"render", "s.xm", "--max-minutes", "-1"}, 2, "vonta: --max-minutes: "},
        {{"play", "s.xm", "--device", "gramophone"}, 2, "vonta: --device: "},
        {{"info", "s.xm", "t.xm"}, 2, "vonta: "},
        {{"convert", "s.xm", "s.flac"}, 2, "vonta: OUT: the name must end in one of .vtm, "},
        {{"convert", "s.xm", "s.mod", "--compress"}, 2, "vonta: --compress: "},
        {{"render", "missing.xm"}, 1, "vonta: missing.xm: "},
        {{"info", "text.xm"}, 1, "vonta: text.xm: not a song, an instrument or a sample this program knows\n"},
        {{"info", "empty.xm"}, 1, "vonta: empty.xm: the file is empty\n"},
        {{"info", "."}, 1, "vonta: .: "},
        {{"play", "cut.xm"}, 1, "vonta: cut.xm: "},
        {{"render", "s.xm", "-o", "nowhere/out"}, 1, "vonta: nowhere/out.wav: "},
    };
    TempDirectory directory;
    const std::string whole = AsText(SmallXm().Build());
    directory.Write("s.xm", whole);
    directory.Write("cut.xm", whole.substr(0, 100));
    directory.Write("text.xm", "Dear diary");
    directory.Write("empty.xm", "");
    const auto before = directory.List();
    for (const auto& test : kCases) {
        const Outcome outcome = RunVonta(test.arguments, directory.Path());
        EXPECT_EQ(outcome.status, test.status) << outcome.err;
        EXPECT_TRUE(outcome.err.starts_with(test.error)) << outcome.err;
        EXPECT_EQ(outcome.out, "");
    }
    EXPECT_EQ(directory.List(), before);
}

TEST(CommandLine, HelpAndVersionAreEverywhere) {
    TempDirectory directory;
    for (const char* command : {"", "render", "convert", "info", "check", "play"})
        for (const char* request : {"--help", "--version"}) {
            std::vector<std::string> arguments{request};
            if (*command) arguments.insert(arguments.begin(), command);
            const Outcome outcome = RunVonta(arguments, directory.Path());
            EXPECT_EQ(outcome.status, 0) << command;
            EXPECT_EQ(outcome.err, "");
            EXPECT_NE(outcome.out.find(*request == '-' && request[2] == 'h' ? "--version" : "0.81"), std::string::npos);
        }
}

TEST(CommandLine, LogGoesToTheErrorOutputWithoutWhatAFileCouldDoToATerminal) {
    TempDirectory directory;
    XmBuilder xm = SmallXm();
    xm.instruments[0].name = "\033[31mred\007";
    directory.Write("s.xm", AsText(xm.Build()));
    const Outcome outcome = RunVonta({"info", "--log", "s.xm"}, directory.Path());
    EXPECT_EQ(outcome.status, 0);
    EXPECT_NE(outcome.err.find("* Init program...\n"), std::string::npos);
    EXPECT_NE(outcome.err.find("?[31mred?"), std::string::npos);
    EXPECT_EQ(outcome.err.find('\033'), std::string::npos);
}

TEST(CommandLine, AFullDiskBehindTheOutputIsAFailure) {
    ASSERT_TRUE(std::filesystem::exists("/dev/full"));
    TempDirectory directory;
    directory.Write("s.xm", AsText(SmallXm().Build()));
    const std::string command =
        "cd '" + directory.Path().string() + "' && " VONTA_PROGRAM " info s.xm >/dev/full 2>err";
    EXPECT_EQ(WEXITSTATUS(std::system(command.c_str())), 1);
    EXPECT_TRUE(directory.Text("err").starts_with("vonta: standard output: "));
}

}  // namespace
}  // namespace vonta::test
