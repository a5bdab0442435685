#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <thread>

#include "tests/support/RunVonta.h"
#include "tests/support/SmallXm.h"

namespace vonta::test {
namespace {

std::string Example(const char* name) { return std::string(VONTA_DOCS "/scripts/") + name; }

TEST(Script, RunsAFileAndItsFunctionWithTheValues) {
    TempDirectory directory;
    directory.Write("s.vtc", "vtDebug:ODS('top')\nfunction Main(d) vtDebug:ODS('main') end\n"
                             "function F(d) vtDebug:ODS(d:GetItemType('n') .. d:GetItemType('t') .. d:Get('t')) end\n"
                             "function Bad() local x = nil + 1 end");
    directory.Write("wrong.vtc", "x = = 1");
    directory.Write("broken.vtc", "local x = nil + 1");
    const struct {
        std::vector<std::string> arguments;
        int status;
        std::string out;                             // begins so
    } kCases[] = {
        {{"s.vtc"}, 0, "top\nmain\n"},
        {{"s.vtc", "F", "n=1.5", "t=007=x"}, 0, "top\nNumberString007=x\n"},
        {{"s.vtc", "Bad"}, 1, "top\nERROR: s.vtc:"},
        {{"s.vtc", "None"}, 1, "top\nWARNING: The script function (None) in script (s.vtc) does not exist\n"},
        {{"wrong.vtc"}, 1, "ERROR: wrong.vtc:"},
        {{"broken.vtc"}, 1, ""},
        {{"missing.vtc"}, 1, "WARNING: Can't open (missing.vtc) script file\n"},
        {{"s.vtc", "F", "G"}, 2, ""},
        {{}, 2, ""},
    };
    for (const auto& test : kCases) {
        std::vector<std::string> arguments = test.arguments;
        arguments.insert(arguments.begin(), "script");
        const Outcome outcome = RunVonta(arguments, directory.Path());
        EXPECT_EQ(outcome.status, test.status) << outcome.out << outcome.err;
        EXPECT_TRUE(outcome.out.starts_with(test.out)) << outcome.out;
    }
    EXPECT_TRUE(RunVonta({"script", "broken.vtc"}, directory.Path()).err.starts_with("vonta: broken.vtc: "));
}

TEST(Script, ComesFromTheStandardInputToo) {
    TempDirectory directory;
    const std::string command = "cd '" + directory.Path().string() +
        "' && echo 'function F(d) vtDebug:ODS(d:Get(\"x\")) end' | " VONTA_PROGRAM " script - F x=piped > out";
    EXPECT_EQ(std::system(command.c_str()), 0);
    EXPECT_EQ(directory.Text("out"), "piped\n");
}

TEST(Script, CtrlCEndsItWhateverItDoes) {
    TempDirectory directory;
    const char* const kScripts[] = {
        "vtDebug:WARNING('x') while true do end",
        "vtApp:Run()",
        "string.find(string.rep('a', 10000), string.rep('a-', 200) .. 'b')",     // for ages, inside the library
    };
    for (const char* script : kScripts) {
        directory.Write("s.vtc", script);
        Program program({"script", "s.vtc"}, directory.Path());
        std::this_thread::sleep_for(std::chrono::milliseconds(300));
        program.Interrupt();
        const auto start = std::chrono::steady_clock::now();
        EXPECT_EQ(program.Wait().status, 130) << script;
        // Half a second, on a machine that has nothing else to do.
        EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(3)) << script;
    }
}

TEST(Script, ExamplesDoWhatTheySay) {
    TempDirectory directory;
    const auto run = [&](std::vector<std::string> arguments) {
        const Outcome outcome = RunVonta(arguments, directory.Path());
        EXPECT_EQ(outcome.status, 0) << arguments[1] << outcome.out << outcome.err;
        return outcome.out;
    };
    EXPECT_EQ(run({"script", Example("generate.vtc"), "Main", "file=sketch.vtm"}), "wrote sketch.vtm\n");
    run({"render", "sketch.vtm", "--rate", "8000"});
    EXPECT_GT(directory.Bytes("sketch.wav").size(), 8000u * 4 * 20);
    EXPECT_NE(run({"info", "sketch.vtm"}).find("Sketch in four chords"), std::string::npos);

    const std::string statistics = run({"script", Example("statistics.vtc"), "Main", "file=sketch.vtm"});
    EXPECT_TRUE(statistics.starts_with("Sketch in four chords\n1 patterns in 4 positions, ")) << statistics;
    EXPECT_NE(statistics.find("uses of instrument 3: "), std::string::npos);

    std::filesystem::create_directory(directory.Path() / "songs");
    directory.Write("songs/s.xm", AsText(SmallXm().Build()));
    EXPECT_EQ(run({"script", Example("transpose.vtc"), "Main", "folder=songs", "semitones=2"}), "s.xm -> s-new.vtm\n");
    EXPECT_GT(directory.Bytes("songs/s-new.vtm").size(), 0u);

    EXPECT_EQ(run({"script", Example("wav.vtc")}), "tone.wav: 44100 Hz, 16 bits, peak 19999\n");
    run({"info", "tone.wav"});

    const std::string positions = run({"script", Example("position.vtc"), "Main", "file=sketch.vtm", "lines=3"});
    EXPECT_EQ(std::ranges::count(positions, '\n'), 3) << positions;
}

}  // namespace
}  // namespace vonta::test
