#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "tests/support/RunVonta.h"
#include "tests/support/SmallXm.h"

namespace vonta::test {
namespace {

nlohmann::json JsonOf(const XmBuilder& xm) {
    TempDirectory directory;
    directory.Write("s.xm", AsText(xm.Build()));
    const Outcome outcome = RunVonta({"info", "--json", "s.xm"}, directory.Path());
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    return nlohmann::json::parse(outcome.out);       // throws if it is none
}

TEST(Info, JsonHoldsWhatTheSongHolds) {
    const auto song = JsonOf(SmallXm());
    EXPECT_EQ(song["format"], "XM");
    EXPECT_EQ(song["channels"], 2);
    EXPECT_EQ(song["rows"], 4);
    EXPECT_EQ(song["order"], nlohmann::json({0}));
    EXPECT_EQ(song["end"], "song");
    EXPECT_NEAR(song["durationSeconds"], (1 + 4) * 6 * 0.02, 0.045);
    const auto& sample = song["instruments"][0]["samples"][0];
    EXPECT_EQ(sample["name"].get<std::string>().substr(0, 11), "Up and down");
    EXPECT_EQ(sample["frames"], 4);
    EXPECT_EQ(sample["middleRate"], 8363);
    EXPECT_EQ(sample["loop"], nlohmann::json({{"type", "forward"}, {"start", 0}, {"end", 4}}));
}

TEST(Info, TellsOfASongWithoutEnd) {
    const auto song = JsonOf(CircleXm());
    EXPECT_EQ(song["end"], "circle");
    EXPECT_NEAR(song["durationSeconds"], (1 + 3) * 6 * 0.02, 0.045);
}

TEST(Info, TheDurationIsThatOfTheRendering) {
    TempDirectory directory;
    XmBuilder xm = SmallXm();
    xm.bpm = 77;                                     // a tick of no whole number of frames
    xm.length = 40;
    directory.Write("s.xm", AsText(xm.Build()));
    ASSERT_EQ(RunVonta({"render", "s.xm"}, directory.Path()).status, 0);
    const double frames = static_cast<double>(directory.Bytes("s.wav").size() - 44) / 4;
    EXPECT_NEAR(JsonOf(xm)["durationSeconds"], frames / 44100, 1e-6);
}

TEST(Info, NamesOfFilesAreHarmlessInBothForms) {
    XmBuilder xm = SmallXm();
    xm.title = "\033]0;gotcha\007 \xFF\x9B";
    xm.instruments[0].name = "\r\n\x7F\xE2\x80\xAE";  // ends in a turn of the writing's direction
    const auto song = JsonOf(xm);
    EXPECT_EQ(song["title"].get<std::string>().substr(0, 15), "\033]0;gotcha\007 \xEF\xBF\xBD");

    TempDirectory directory;
    const std::string name = "\033[2Jx.xm";
    directory.Write(name, AsText(xm.Build()));
    for (const std::string& text : {RunVonta({"info", name}, directory.Path()).out,
                                    RunVonta({"info", "\033[2Jmissing.xm"}, directory.Path()).err}) {
        EXPECT_NE(text, "");
        for (const char c : text) EXPECT_TRUE(c == '\n' || static_cast<unsigned char>(c) >= ' ') << text;
        for (const char* bad : {"\x7F", "\xFF", "\x9B", "\xE2\x80\xAE"}) EXPECT_EQ(text.find(bad), std::string::npos);
    }
}

}  // namespace
}  // namespace vonta::test
