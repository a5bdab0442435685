#include "audio/Mixdown.h"

#include <gtest/gtest.h>

#include <cstring>
#include <limits>

#include "formats/samples/WavFormat.h"
#include "tests/support/FileSizeLimit.h"
#include "tests/support/SongBuilder.h"
#include "tests/support/TempDirectory.h"
#include "tests/support/TestDevice.h"

namespace vonta {
namespace {

using Names = std::set<std::string>;
constexpr int kPatternJump = 11, kTempoCommand = 15;   // effect codes
constexpr std::uint32_t kTickFrames = 882;             // at 125 BPM and 44100 Hz

constexpr LoopFrames kLoop{VTSAMPLE_LOOP_FORDWARD, 0, 1024};

// Gives one constant value at its side's layout.
class ConstantEffect final : public EffectSlot {
public:
    explicit ConstantEffect(int stereo) : stereo_(stereo) { on = 1; }
    bool Load(const std::string&) override { return true; }
    bool Init(int, int, int, std::uint32_t) override { return true; }
    void Uninit() override {}
    std::string GetPath() const override { return {}; }
    int OutputIsStereo() const override { return stereo_; }
    int Process(float* buffer, int frames, int) override {
        std::fill(buffer, buffer + frames * (stereo_ ? 2 : 1), 0.25f);
        return 1;
    }

private:
    int stereo_;
};

class ConstantSynth final : public SynthPlugin {
public:
    bool Load(const std::string&) override { return true; }
    int Work(float* part, int frames, int) override {
        std::fill(part, part + 2 * frames, 0.125f);
        return 1;
    }
    bool Init(int, int, int, std::uint32_t) override { return true; }
    std::string GetPath() const override { return {}; }
    std::string GetName() const override { return {}; }
    void SetName(const std::string&) override {}
    void NoteOn(int, int, int) override {}
    void NoteOff(int) override {}
};

class MixdownTest : public testing::Test {
protected:
    MixdownTest() {
        auto own = std::make_unique<TestDevice>();
        device = own.get();
        EXPECT_EQ(player.StartSound(nullptr, static_cast<int>(DeviceKind::NoSound), 0, nullptr, 44100, std::move(own)), 0);
    }

    MixdownResult Run(const MixdownOptions& options = {}, const MixdownLimits& limits = {},
                      MixdownProgress* progress = nullptr) {
        return Mixdown(player, directory.File("mix"), options, limits, progress);
    }
    std::uint32_t Frames(const std::string& name, std::uint32_t frameBytes = 4) {
        const auto bytes = directory.Bytes(name).size();
        EXPECT_GE(bytes, kWavHeadBytes) << name;
        return static_cast<std::uint32_t>(bytes - kWavHeadBytes) / frameBytes;
    }
    template <class Stored>
    std::vector<Stored> Data(const std::string& name) {
        const auto file = directory.Bytes(name);
        std::vector<Stored> values((file.size() - kWavHeadBytes) / sizeof(Stored));
        std::memcpy(values.data(), file.data() + kWavHeadBytes, values.size() * sizeof(Stored));
        return values;
    }

    const TempDirectory directory;
    SndPlayer player;
    TestDevice* device;
};

SongBuilder Sines(int rows) {
    SongBuilder builder;
    builder.Channels(4).SineInstrument(0, 1024, kLoop).SineInstrument(1, 1024, kLoop, 2).Pattern(0, rows);
    builder.Note(0, 0, 48, 1).Note(1, 1, 55, 2);
    return builder;
}

std::uint32_t WholeBlocks(std::uint32_t frames) { return (frames + kRenderFrames - 1) / kRenderFrames * kRenderFrames; }

TEST_F(MixdownTest, TheLastBlockIsWrittenWhole) {
    for (const int rows : {1, 2, 7, 64}) {
        player.SetSong(SongBuilder().Tempo(1).Pattern(0, rows).Build());
        const auto result = Run();
        ASSERT_TRUE(result.ok) << result.error;
        EXPECT_EQ(result.end, MixdownEnd::SongEnd);
        const auto frames = WholeBlocks(kTickFrames * static_cast<std::uint32_t>(rows + 1));   // a tempo of silence first
        EXPECT_EQ(Frames("mix.wav"), frames) << rows;
        EXPECT_EQ(result.frames, frames);
    }
    EXPECT_EQ(directory.List(), Names{"mix.wav"});
}

TEST_F(MixdownTest, PlaysTheSongAsOftenAsAsked) {
    player.SetSong(SongBuilder().Tempo(1).Pattern(0, 40).Build());
    ASSERT_TRUE(Run({}, {.loops = 3}).ok);
    EXPECT_EQ(Frames("mix.wav"), WholeBlocks(kTickFrames * (3 * 40 + 1)));
}

TEST_F(MixdownTest, ASongThatJumpsBackEndsWhereTheCircleCloses) {
    for (const int loops : {1, 2, 3}) {
        player.SetSong(SongBuilder().Tempo(1).Pattern(0, 32).Effect(31, 0, kPatternJump, 1)
                           .Pattern(1, 32).Effect(19, 0, kPatternJump, 1).Order({0, 1, 0, 1}).Build());
        const auto result = Run({}, {.loops = loops});
        ASSERT_TRUE(result.ok) << result.error;
        EXPECT_EQ(result.end, MixdownEnd::JumpedBack);
        EXPECT_EQ(Frames("mix.wav"), WholeBlocks(kTickFrames * static_cast<std::uint32_t>(1 + 32 + 20 * loops)));
    }
}

TEST_F(MixdownTest, JumpsOnThatMeetNoOldRowDoNotEndTheSong) {
    player.SetSong(SongBuilder().Tempo(1).Pattern(0, 8).Effect(3, 0, kPatternJump, 2).Pattern(1, 8)
                       .Pattern(2, 8).Effect(3, 0, kPatternJump, 1).Order({0, 1, 2, 1}).Build());
    // 0 to row 3, 2 to row 3, 1 whole, and on into row 0 of position 2 without a jump; then 1 again, by one.
    const auto result = Run();
    EXPECT_EQ(result.end, MixdownEnd::JumpedBack);
    EXPECT_EQ(Frames("mix.wav"), WholeBlocks(kTickFrames * (1 + 4 + 4 + 8 + 4)));
}

TEST_F(MixdownTest, EndsAtTheLimitOfMinutes) {
    player.SetSong(SongBuilder().Tempo(31).Pattern(0, 256).Build());
    const auto result = Run({}, {.maxMinutes = 0.01});
    EXPECT_TRUE(result.ok);
    EXPECT_EQ(result.end, MixdownEnd::TimeLimit);
    EXPECT_EQ(Frames("mix.wav"), WholeBlocks(26460));
}

TEST_F(MixdownTest, ASongThatStopsItsTempoEndsAndGetsItBack) {
    player.SetSong(SongBuilder().Tempo(3).Bpm(140).Pattern(0, 8).Effect(0, 0, kTempoCommand, 200)
                       .Effect(4, 0, kTempoCommand, 0).Build());
    const auto result = Run({}, {.loops = 5});
    EXPECT_TRUE(result.ok);
    EXPECT_EQ(result.end, MixdownEnd::SongEnd);
    EXPECT_LT(result.frames, 44100u);
    EXPECT_EQ(player.GetSong().GetTempo(), 3u);
    EXPECT_EQ(player.GetSong().GetBPM(), 140u);

    player.GetSong().KeepStart();                    // as an interface does; now the song has been played
    player.SetTempo(0);
    player.SetBPM(60);
    EXPECT_EQ(Run({}, {.loops = 5}).frames, result.frames);
    EXPECT_EQ(player.GetSong().GetTempo(), 0u);
    EXPECT_EQ(player.GetSong().GetBPM(), 60u);
}

TEST_F(MixdownTest, TheRateIsInTheHeadAndThePitchAndLengthStay) {
    const auto crossings = [&](std::uint32_t rate) {
        player.SetSong(Sines(16).Build());
        EXPECT_TRUE(Run({.sampleRate = rate}).ok);
        WavFormat format;
        MemoryStream file(directory.Bytes("mix.wav"));
        Reader in(file);
        in.Skip(20);
        RecordReader record(in);
        WavFormatRecord(record, format);
        EXPECT_EQ(format.sampleRate, rate);
        EXPECT_EQ(format.bytesPerSecond, rate * 4);
        EXPECT_NEAR(Frames("mix.wav") / static_cast<double>(rate), 17 * 6 * 0.02, 1024.0 / rate);
        const auto data = Data<std::int16_t>("mix.wav");
        int count = 0;
        for (std::size_t i = 2; i < data.size(); i += 2) count += (data[i - 2] < 0) != (data[i] < 0);
        return count;
    };
    const int reference = crossings(44100);
    EXPECT_GT(reference, 100);
    EXPECT_NEAR(crossings(8000), reference, reference / 50);
    EXPECT_NEAR(crossings(192000), reference, reference / 50);
}

TEST_F(MixdownTest, TheSameSongGivesTheSameBytes) {
    player.SetSong(Sines(16).Build());
    ASSERT_TRUE(Run({.bits = 32}).ok);
    const auto first = directory.Bytes("mix.wav");
    player.SetPosition(0);
    player.PerformPlay(0);
    player.Render(777);                                // leave something behind
    ASSERT_TRUE(Run({.bits = 32}).ok);
    EXPECT_EQ(directory.Bytes("mix.wav"), first);
}

TEST_F(MixdownTest, ByPartsMakesAFileForWhatExists) {
    auto song = Sines(4).Build();
    song->GetInstrument(0)->groupOutput = 2;
    song->SetInstrument(99, std::make_unique<Instrument>());
    song->GetInstrument(99)->groupOn = 0;
    song->GetInstrument(99)->groupOutput = 7;
    song->SetSynth(127, std::make_unique<ConstantSynth>());
    player.SetSong(std::move(song));
    player.GetMixer().SetEffect(3, std::make_unique<ConstantEffect>(1));
    player.GetMixer().SetEffect(8, std::make_unique<ConstantEffect>(1));   // a master slot has no file
    const auto result = Run({.byParts = 1});
    ASSERT_TRUE(result.ok) << result.error;
    const Names expected{"mix_Master01.wav",   "mix_Master03.wav",   "mix_Effect04.wav",   "mix_SubGroup01.wav",
                         "mix_SubGroup02.wav", "mix_SubGroup03.wav", "mix_SubGroup04.wav", "mix_Instr001.wav",
                         "mix_Instr002.wav",   "mix_Instr100.wav",   "mix_Synth128.wav"};
    EXPECT_EQ(directory.List(), expected);
    EXPECT_EQ(result.files.size(), expected.size());
    for (const auto& name : expected) EXPECT_EQ(Frames(name), result.frames) << name;
}

TEST_F(MixdownTest, EffectsAndSynthsStandInTheirFilesAtTheirPanAndLevel) {
    auto song = SongBuilder().Tempo(1).Pattern(0, 8).Build();
    song->SetSynth(0, std::make_unique<ConstantSynth>());
    song->GetSynth(0)->pan = 0.75f;
    song->GetSynth(0)->volume = 0.5f;
    player.SetSong(std::move(song));
    for (const int stereo : {0, 1}) {
        auto effect = std::make_unique<ConstantEffect>(stereo);
        effect->pan = 0.25f;
        effect->volume = 0.5f;
        player.GetMixer().SetEffect(stereo, std::move(effect));
    }
    ASSERT_TRUE(Run({.byParts = 1}).ok);
    const struct { const char* name; std::int16_t left, right; } files[] = {
        {"mix_Effect01.wav", 3072, 1024},              // 0.25 x 0.5 x 32768, three quarters and one
        {"mix_Effect02.wav", 3072, 1024},
        {"mix_Synth001.wav", 1024, 3072},              // 0.125 x 0.5 x 65536
        {"mix_SubGroup01.wav", 0, 0}};
    for (const auto& file : files) {
        const auto data = Data<std::int16_t>(file.name);
        for (std::size_t i = 0; i < data.size(); i += 2) {
            ASSERT_EQ(data[i], file.left) << file.name << " at " << i / 2;
            ASSERT_EQ(data[i + 1], file.right) << file.name << " at " << i / 2;
        }
    }
}

TEST_F(MixdownTest, TheInstrumentsAddUpToTheMaster) {
    player.SetSong(Sines(16).Build());
    ASSERT_TRUE(Run({.bits = 32, .byParts = 1}).ok);
    const auto one = Data<std::int32_t>("mix_Instr001.wav"), two = Data<std::int32_t>("mix_Instr002.wav"),
               master = Data<std::int32_t>("mix_Master01.wav");
    ASSERT_EQ(one.size(), master.size());
    std::int64_t loudest = 0;
    for (std::size_t i = 0; i < master.size(); ++i) {
        ASSERT_NEAR(static_cast<double>(one[i]) + two[i], master[i], 1024) << i / 2;   // a 64th of a 16-bit step
        loudest = std::max(loudest, std::abs(std::int64_t{master[i]}));
    }
    EXPECT_GT(loudest, 1000 * 65536);
}

struct CancelAfter : MixdownProgress {
    int left = 3;
    MixdownState last;
    bool OnBlock(const MixdownState& state) override {
        last = state;
        return --left > 0;
    }
};

TEST_F(MixdownTest, CancellingLeavesNoFileAndAPlayerAsItWas) {
    player.SetSong(Sines(64).Build());
    player.SetMixerOn(true);
    CancelAfter cancel;
    const auto result = Run({.sampleRate = 8000, .byParts = 1}, {}, &cancel);
    EXPECT_FALSE(result.ok);
    EXPECT_EQ(result.end, MixdownEnd::Cancelled);
    EXPECT_FALSE(result.error.empty());
    EXPECT_EQ(cancel.last.frames, 3u * kRenderFrames);
    EXPECT_TRUE(directory.List().empty());
    EXPECT_TRUE(player.IsMixerOn());
    EXPECT_FALSE(player.IsPlaying());
    EXPECT_FALSE(player.HasEnded());
    EXPECT_EQ(player.GetMixer().sampleRate, 44100u);
    EXPECT_EQ(player.GetMixer().clearIdle, 0);
}

TEST_F(MixdownTest, AFullDiskLeavesNoFileAndSaysSo) {
    player.SetSong(Sines(64).Build());
    for (const auto* name : {"mix.wav", "mix_Instr001.wav"}) {
        const MixdownOptions options{.byParts = static_cast<std::uint8_t>(std::strcmp(name, "mix.wav") ? 1 : 0)};
        std::filesystem::create_symlink("/dev/full", directory.Path() / name);
        const auto result = Run(options);
        EXPECT_FALSE(result.ok);
        EXPECT_EQ(result.end, MixdownEnd::Failed);
        EXPECT_NE(result.error.find(name), std::string::npos) << result.error;
        EXPECT_EQ(directory.List(), Names{name});
        std::filesystem::remove(directory.Path() / name);
    }
}

TEST_F(MixdownTest, ADiskThatFillsUpLeavesTheOldFile) {
    player.SetSong(Sines(64).Build());
    directory.Write("mix.wav", "old");
    for (const rlim_t bytes : {rlim_t{0}, rlim_t{44}, rlim_t{100000}}) {
        const MixdownResult result = [&] {
            const test::FileSizeLimit disk(bytes);
            return Run();
        }();
        EXPECT_EQ(result.end, MixdownEnd::Failed);
        EXPECT_NE(result.error.find("File too large"), std::string::npos) << result.error;
        EXPECT_EQ(directory.Text("mix.wav"), "old");
        EXPECT_EQ(directory.List(), Names{"mix.wav"});
    }
}

TEST_F(MixdownTest, APartWhoseFileCannotBeOpenedIsLeftOut) {
    player.SetSong(Sines(4).Build());
    std::filesystem::create_directory(directory.Path() / "mix_SubGroup02.wav");
    const auto result = Run({.byParts = 1});
    EXPECT_TRUE(result.ok) << result.error;
    EXPECT_EQ(result.dropped, std::vector{directory.File("mix_SubGroup02.wav")});
    EXPECT_EQ(result.files.size(), 6u);
    EXPECT_FALSE(Mixdown(player, directory.File("missing/mix"), {}).ok);
    EXPECT_FALSE(Mixdown(player, directory.File("missing/mix"), {.byParts = 1}).ok);
}

TEST_F(MixdownTest, RefusesWhatItCannotWrite) {
    const struct { MixdownOptions options; MixdownLimits limits; } asked[] = {
        {{.sampleRate = 7999}, {}}, {{.sampleRate = 192001}, {}}, {{.bits = 24}, {}}, {{.bits = 0}, {}},
        {{}, {.loops = 0}}, {{}, {.maxMinutes = 0}}, {{}, {.maxMinutes = std::numeric_limits<double>::quiet_NaN()}}};
    for (const auto& [options, limits] : asked) {
        const auto result = Run(options, limits);
        EXPECT_FALSE(result.ok);
        EXPECT_FALSE(result.error.empty());
    }
    EXPECT_TRUE(directory.List().empty());
}

}  // namespace
}  // namespace vonta
