#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "formats/Loaders.h"
#include "formats/native/SaverVTI.h"
#include "tests/support/RunVonta.h"
#include "tests/support/SmallXm.h"
#include "tests/support/SongBuilder.h"

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

TEST(Info, InstrumentsAndSamplesHaveTheirOwnFacts) {
    TempDirectory directory;
    const auto instrument = MakeInstrument(MakeSample(SineWave(100, 2), 2, {VTSAMPLE_LOOP_PINGPONG, 10, 90}));
    instrument->SetName("Two sides");
    instrument->SetKeySample(12, 4, 0, 63);
    instrument->volumeEnvelopes[1].enabled = instrument->volumeEnvelopes[1].sustainOn = 1;
    ASSERT_EQ(SaveInstrument(directory.File("i.vti"), *instrument), 0);
    LoadReport report;
    ASSERT_EQ(SaveSample(directory.File("s.wav"), *instrument->GetSample(0), report), 0);
    directory.Write("s.raw", "1234");
    const auto jsonOf = [&](const char* name) {
        return nlohmann::json::parse(RunVonta({"info", "--json", name}, directory.Path()).out);
    };
    const auto facts = jsonOf("i.vti");
    EXPECT_EQ(facts["format"], "VTI");
    EXPECT_EQ(facts["name"], "Two sides");
    EXPECT_EQ(facts["samples"][0]["loop"], nlohmann::json({{"type", "ping-pong"}, {"start", 10}, {"end", 90}}));
    EXPECT_EQ(facts["zones"].size(), 4u);            // keys below 12, two zones of 12, and the keys above
    EXPECT_EQ(facts["zones"][1], nlohmann::json({{"keys", {12, 12}}, {"velocities", {0, 63}}, {"samples", {5}}}));
    EXPECT_EQ(facts["envelopes"][0]["alternative"], 2);
    EXPECT_EQ(facts["envelopes"][0]["sustain"], 1);
    const auto wave = jsonOf("s.wav");
    EXPECT_EQ(wave["channels"], 2);
    EXPECT_EQ(wave["frames"], 100);
    EXPECT_EQ(wave["bits"], 16);
    EXPECT_NEAR(wave["middleRate"], 44100, 20);      // to the fine tune's step
    EXPECT_EQ(jsonOf("s.raw")["frames"], 4);
    const std::string text = RunVonta({"info", "i.vti"}, directory.Path()).out;
    EXPECT_NE(text.find("C-1 to C-1, velocity 0 to 63: 5\n"), std::string::npos) << text;
    EXPECT_NE(text.find("volume 2: 5 points, 160 ticks, sustain at point 1\n"), std::string::npos) << text;
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
