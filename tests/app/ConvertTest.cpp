#include <gtest/gtest.h>

#include <chrono>
#include <nlohmann/json.hpp>

#include "formats/Loaders.h"
#include "tests/support/Await.h"
#include "tests/support/RunVonta.h"
#include "tests/support/SmallXm.h"
#include "tests/support/SongBuilder.h"

namespace vonta::test {
namespace {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr int kSlowness = 4;
#else
constexpr int kSlowness = 1;
#endif

class ConvertTest : public testing::Test {
protected:
    Outcome Run(std::vector<std::string> arguments) { return RunVonta(arguments, directory_.Path()); }
    nlohmann::json Info(const std::string& name) {
        return nlohmann::json::parse(Run({"info", "--json", name}).out, nullptr, false);
    }
    TempDirectory directory_;
};

// The first sample of whatever it is.
std::uint32_t Frames(const nlohmann::json& file) {
    if (file.contains("instruments")) return Frames(file["instruments"][0]);
    return file.contains("samples") ? file["samples"][0]["frames"] : file["frames"];
}

TEST_F(ConvertTest, EveryKindBecomesEveryFormat) {
    directory_.Write("song.xm", AsText(SmallXm().Build()));
    ASSERT_EQ(Run({"convert", "song.xm", "part.vti"}).status, 0);
    ASSERT_EQ(Run({"convert", "song.xm", "LOUD.MOD"}).status, 0);
    ASSERT_EQ(Run({"convert", "part.vti", "wave.wav"}).status, 0);
    const struct { const char *extension, *format; } kTargets[] = {
        {".vtm", "VTM"}, {".xm", "XM"}, {".mod", "MOD"}, {".vti", "VTI"}, {".wav", "WAV"}};
    for (const std::string in : {"song.xm", "part.vti", "wave.wav"})
        for (const auto& target : kTargets) {
            const std::string out = std::string("out") + target.extension;
            const Outcome outcome = Run({"convert", in, out});
            ASSERT_EQ(outcome.status, 0) << in << " to " << out << ": " << outcome.err;
            const auto info = Info(out);
            EXPECT_EQ(info["format"], target.format) << in;
            const bool isMixdown = in == "song.xm" && out == "out.wav";
            EXPECT_NEAR(Frames(info), isMixdown ? 0.6 * 44100 : 4, isMixdown ? 4096 : 0) << in << " to " << out;
        }
}

TEST_F(ConvertTest, TellsWhatIsLostAndTakesTheInstrumentThatIsAskedFor) {
    XmBuilder xm = SmallXm();
    xm.channels = 34;
    xm.patterns = {{1, std::vector<std::uint8_t>(34, 0x80), 9, 0, {}}};
    xm.instruments.push_back(xm.instruments[0]);
    xm.instruments[1].name = "The second";
    directory_.Write("song.xm", AsText(xm.Build()));
    const Outcome song = Run({"convert", "song.xm", "out.mod"});
    EXPECT_EQ(song.status, 0);
    EXPECT_NE(song.err.find("vonta: out.mod: Channels above 32 left out: 2\n"), std::string::npos) << song.err;
    EXPECT_NE(Run({"convert", "song.xm", "out.vti"}).err.find("but instrument 1 left out"), std::string::npos);
    EXPECT_EQ(Run({"convert", "--instrument", "2", "song.xm", "out.vti"}).err, "");
    EXPECT_EQ(Info("out.vti")["name"], "The second");
    const Outcome wave = Run({"convert", "out.vti", "out.wav"});
    EXPECT_EQ(wave.err, "vonta: out.wav: Loops left out: 1\n"
                        "vonta: out.wav: Tunings left out: the file has one rate: 1\n");
}

TEST_F(ConvertTest, AFailureLeavesTheOldFile) {
    const std::string whole = AsText(SmallXm().Build());
    directory_.Write("song.xm", whole);
    directory_.Write("cut.xm", whole.substr(0, 100));
    for (const char* name : {"old.vtm", "old.mod", "old.vti", "old.wav"}) directory_.Write(name, "old");
    const auto before = directory_.List();
    const std::vector<std::string> kCases[] = {
        {"cut.xm", "old.vtm"}, {"missing.xm", "old.mod"}, {"song.xm", "old.vti", "--instrument", "99"},
        {"song.xm", "song.xm"}, {"song.xm", "old.wav", "--instrument", "99"},
    };
    for (auto arguments : kCases) {
        arguments.insert(arguments.begin(), "convert");
        const Outcome outcome = Run(arguments);
        EXPECT_EQ(outcome.status, 1) << arguments[2];
        EXPECT_TRUE(outcome.err.starts_with("vonta: ")) << outcome.err;
        EXPECT_EQ(directory_.Text(arguments[2]), arguments[2] == "song.xm" ? whole : "old");
    }
    EXPECT_EQ(directory_.List(), before);
}

// Waves of bass and pads pack some hundred times smaller; all of them come back, together and for themselves.
TEST_F(ConvertTest, LongTonalSamplesComeBackWholeFromACompressedSong) {
    SongBuilder song;
    for (int i = 0; i < 4; ++i) song.SampleInstrument(i, SineWave(20 * 44100, 2, 9000.0f, 200u + static_cast<unsigned>(i)), 2);
    DiskStream stream;
    ASSERT_TRUE(stream.Open(directory_.File("plain.vtm"), "wb"));
    ASSERT_EQ(SaveFile(&stream, SaveMode::Module, *song.Build(), {}), 0);
    EXPECT_EQ(Run({"convert", "--compress", "plain.vtm", "PACKED.VTM"}).err, "");
    EXPECT_LT(std::filesystem::file_size(directory_.File("PACKED.VTM")), 1u << 20);
    EXPECT_EQ(Run({"check", "PACKED.VTM"}).out, "PACKED.VTM: ok\n");
    const auto packed = Info("PACKED.VTM");
    for (const auto& instrument : packed["instruments"]) EXPECT_EQ(Frames(instrument), 20u * 44100);
}

TEST_F(ConvertTest, AModHoldsTheLongestOfASampleAndNamesWhatItCuts) {
    directory_.Write("long.raw", std::string(65536, 'a'));
    directory_.Write("endless.raw", std::string(200000, 'a'));
    EXPECT_EQ(Run({"convert", "long.raw", "long.mod"}).status, 0);
    EXPECT_EQ(Frames(Info("long.mod")), 65536u);
    const Outcome cut = Run({"convert", "endless.raw", "endless.mod"});
    EXPECT_NE(cut.err.find("Sample \"endless\" of instrument 1 cut from 200000 to 131070 frames"), std::string::npos) << cut.err;
    EXPECT_EQ(Frames(Info("endless.mod")), 131070u);
}

TEST_F(ConvertTest, WritesUnderTheVeryNameAndNeverOverAnother) {
    const std::string song = AsText(SmallXm().Build());
    directory_.Write("song.wav", song);
    directory_.Write("other.wav", "a recording");
    directory_.Write("song.xm", song);
    ASSERT_EQ(Run({"convert", "song.wav", "song.WAV"}).status, 0);
    ASSERT_EQ(Run({"convert", "song.xm", "other.WAV"}).status, 0);
    EXPECT_EQ(directory_.Text("song.wav"), song);
    EXPECT_EQ(directory_.Text("other.wav"), "a recording");
    for (const char* name : {"song.WAV", "other.WAV"}) EXPECT_TRUE(directory_.Text(name).starts_with("RIFF"));
}

TEST_F(ConvertTest, CutSongsGiveWhatTheyHoldAndAnInstrumentThatCannotBeWrittenItsReason) {
    const std::string whole = AsText(SmallXm().Build());
    directory_.Write("cut.xm", whole.substr(0, whole.size() - 2));
    EXPECT_EQ(Run({"convert", "cut.xm", "rescued.vtm"}).err,
              "vonta: cut.xm: The file ends in sample 1 of instrument 1: the rest is silent.\n");
    EXPECT_EQ(Frames(Info("rescued.vtm")), 2u);
    EXPECT_EQ(Run({"convert", "rescued.vtm", "no/such/place.vti", "--instrument", "1"}).err,
              "vonta: no/such/place.vti: cannot write: No such file or directory\n");
}

// Packing asks nobody on its way; the end comes all the same, and takes the unfinished file with it.
TEST_F(ConvertTest, SignalsEndAConversionAtOnceAndLeaveNothing) {
    directory_.Write("hour.raw", std::string(30'000'000, 'a'));
    directory_.Write("old.vtm", "old");
    const auto before = directory_.List();
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        Program program({"convert", "--compress", "hour.raw", "old.vtm"}, directory_.Path());
        ASSERT_TRUE(Await([&] { return directory_.List().size() > before.size(); }));
        const auto start = std::chrono::steady_clock::now();
        program.Signal(signal);
        program.Signal(signal);                      // terminals and shells send several
        EXPECT_EQ(program.Wait().status, 130);
        EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(500 * kSlowness));
        EXPECT_EQ(directory_.List(), before);
        EXPECT_EQ(directory_.Text("old.vtm"), "old");
    }
}

TEST_F(ConvertTest, CheckTellsOfEachFileWhetherItIsSound) {
    XmBuilder xm = SmallXm();
    directory_.Write("good.xm", AsText(xm.Build()));
    xm.bpm = 999;
    directory_.Write("fast.xm", AsText(xm.Build()));
    xm.bpm = 125;
    xm.instruments[0].samples[0].length = 50;
    directory_.Write("short.xm", AsText(xm.Build()));
    directory_.Write("diary.txt", "Dear diary");
    const Outcome sound = Run({"check", "good.xm", "fast.xm", "short.xm"});
    EXPECT_EQ(sound.status, 0);
    EXPECT_EQ(sound.out, "good.xm: ok\n"
                         "fast.xm: repaired: Starting BPM 999 became 255\n"
                         "short.xm: The file ends in sample 1 of instrument 1: the rest is silent.\n");
    const Outcome refused = Run({"check", "diary.txt", "good.xm"});
    EXPECT_EQ(refused.status, 1);
    EXPECT_EQ(refused.out, "diary.txt: cannot be loaded: not a song, an instrument or a sample this program knows\n"
                           "good.xm: ok\n");
}

}  // namespace
}  // namespace vonta::test
