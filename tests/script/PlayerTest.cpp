#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "script/host/ScriptInstance.h"
#include "script/song/ScriptPlayer.h"
#include "script/song/Wrappers.h"
#include "tests/support/Await.h"
#include "tests/support/ScriptRig.h"

namespace vonta::test {
namespace {

using Lines = std::vector<std::string>;

constexpr const char* kStart = "d = VTDictionary() d:Set('OutputMode', 'NoSound') vtPlayer:Init(d)\n"
                               "vtApp:RegisterScript('s', vtScript)\n";

// A loud square wave on every row of channel 0.
constexpr const char* kSong = R"(
song = VTSong()
song:SetTempo(2)
song:SetBPM(255)
wave = VTArray(VT_SBYTE, 64)
for i = 0, 63 do wave:Set(i, math.mod(i, 32) < 16 and 100 or -100) end
sample = VTSample()
sample:SetData(wave, 1)
sample:SetLoopType(VTSAMPLE_LOOP_FORDWARD)
sample:SetLoopEnd(63)
instrument = VTInstrument()
instrument:SetSample(0, sample)
song:SetInstrument(0, instrument)
pattern = song:GetPattern(0)
for row = 0, 63 do
    pattern:SetNote(0, row, 48)
    pattern:SetInstr(0, row, 1)
end
vtPlayer:SetCurrentSong(song)
)";

TEST(SampleData, IsConvertedFromEveryTypeToTheScaleOf16Bits) {
    const struct {
        const char* type;
        double value;
        float stored;
    } kCases[] = {
        {"VT_UBYTE", 0, -32768}, {"VT_UBYTE", 255, 32512}, {"VT_SBYTE", -128, -32768}, {"VT_UWORD", 0, -32768},
        {"VT_UWORD", 65535, 32767}, {"VT_SWORD", -5, -5}, {"VT_UDWORD", 0, -32768}, {"VT_UDWORD", 2147483648.0, 0},
        {"VT_SDWORD", -2147483648.0, -32768}, {"VT_SDWORD", 65536, 1}, {"VT_FLOAT", 0.5, 16384}, {"VT_FLOAT", 2, 32767},
        {"VT_FLOAT", -2, -32768}, {"VT_DOUBLE", 1, 32767}, {"VT_DOUBLE", -0.25, -8192},
    };
    for (const auto& test : kCases) {
        ScriptRig rig;
        char script[300];
        std::snprintf(script, sizeof script, "a = VTArray(%s, 2) a:Set(1, %.17g) s = VTSample() s:SetData(a, 2)\n"
                      "vtApp:CreateDictionary('d') vtApp:GetDictionary('d'):Set('s', s)", test.type, test.value);
        rig.Run(script);
        ScriptObject* object = nullptr;
        ASSERT_TRUE(rig.scripting.GetDictionary("d")->GetObject("s", object)) << test.type;
        const Sample& sample = *static_cast<VTSample*>(object)->held->Find();
        ASSERT_EQ(sample.Count(), 2u);
        EXPECT_EQ(sample.Channels(), 2);
        EXPECT_EQ(sample.Wave()[1], test.stored) << test.type << " " << test.value;
    }
}

TEST(SampleData, AStereoLoopIsStoredInElements) {
    ScriptRig rig;
    rig.Run("s = VTSample() s:SetData(VTArray(VT_SWORD, 2000), 2) s:SetLoopEnd(999)\n"
            "vtApp:CreateDictionary('d') vtApp:GetDictionary('d'):Set('s', s)");
    ScriptObject* object = nullptr;
    ASSERT_TRUE(rig.scripting.GetDictionary("d")->GetObject("s", object));
    EXPECT_EQ(static_cast<VTSample*>(object)->held->Find()->data->loopEnd, 1998u);
}

TEST(PatternCells, CommandsOfTheVolumeColumnAndHighEffectsReadAsNone) {
    ScriptRig rig;
    rig.Run(std::string(kStart) + "song = VTSong() song:GetPattern(0) vtPlayer:SetCurrentSong(song)\n"
            "function Look() local p = vtPlayer:GetCurrentSong():GetPattern(0)\n"
            "vtDebug:ODS(p:GetVolume(0, 0) .. ' ' .. p:GetEffect(0, 0)) end");
    Cell cell;
    cell.volume = kVolumeCommand | 0x35;
    cell.effect = 20;
    rig.scripting.Player().Get()->GetSong().GetPattern(0)->Write(0, 0, cell);
    rig.Take();
    rig.scripting.FindScript("s")->Execute("Look", nullptr, nullptr);
    EXPECT_EQ(rig.Take(), Lines{"129 0"});
}

TEST(PlayThread, ASongThatAScriptMadeIsHeardAndItsPositionTold) {
    ScriptRig rig;
    rig.Run(std::string(kStart) + kSong + R"(
vtApp:RegisterAction("moved", "s", "Moved")
vtPlayer:SetAction("SongPos", "moved")
peak, calls = 0, 0
function Moved()
    calls = calls + 1
    local out, channel = vtPlayer:GetOutputData(0), vtPlayer:GetChannelData(0)
    for i = 0, 255 do peak = math.max(peak, math.min(math.abs(out:Get(i)), math.abs(channel:Get(i)))) end
    if (calls >= 4 and peak > 0.01) or calls > 2000 then
        vtDebug:ODS(vtPlayer:GetPlayMode())
        vtPlayer:StopSong()
        vtApp:Quit()
    end
end
function Play() vtPlayer:PlaySong("Song") vtApp:Run() vtDebug:ODS(peak > 0.01 and peak <= 1 and "heard" or "silent") end
)");
    rig.Take();
    EXPECT_TRUE(rig.scripting.FindScript("s")->Execute("Play", nullptr, nullptr));
    EXPECT_EQ(rig.Take(), (Lines{"Play", "heard"}));
}

TEST(Scopes, EachHalfOfEachOutputHasItsOwnAtItsScale) {
    constexpr int kPair = 3;
    ScriptRig rig;
    rig.Run(std::string(kStart) + kSong);
    ScriptPlayer& player = rig.scripting.Player();
    player.Get()->SetMixerOn(false);
    player.Get()->GetSong().instruments[0]->groupOutput = kPair;
    player.Get()->PerformPlay(0);
    player.OutputData(0);                            // from here on they are kept
    for (int i = 0; i < 20; ++i) player.Get()->Render(kRenderFrames);
    const auto highest = [](const ScriptRef<VTArray>& array) {
        double peak = 0;
        for (int i = 0; i < array->Size(); ++i) peak = std::max(peak, std::abs(array->Get(i)));
        return peak;
    };
    for (int half = 0; half < ScriptPlayer::kOutputHalves; ++half) {
        const double peak = highest(player.OutputData(half));
        if (half / 2 == kPair) EXPECT_TRUE(peak > 0.01 && peak <= 0.5) << half << ": " << peak;
        else EXPECT_EQ(peak, 0) << half;
    }
    EXPECT_GT(highest(player.ChannelData(0)), 0.01);
    EXPECT_EQ(highest(player.ChannelData(1)), 0);
}

TEST(PlayThread, PlayModesFollowThePlayer) {
    ScriptRig rig;
    rig.Run(std::string(kStart) + kSong + "function Mode() vtDebug:ODS(vtPlayer:GetPlayMode()) end\n"
            "function Pattern() vtPlayer:PlaySong('Pattern') end function Stop() vtPlayer:StopSong() end");
    ScriptInstance& script = *rig.scripting.FindScript("s");
    const auto becomes = [&](const char* mode) {
        return Await([&] {
            rig.Take();
            script.Execute("Mode", nullptr, nullptr);
            return rig.Take() == Lines{mode};
        });
    };
    EXPECT_TRUE(becomes("Stop"));
    script.Execute("Pattern", nullptr, nullptr);
    EXPECT_TRUE(becomes("Play"));
    script.Execute("Stop", nullptr, nullptr);
    EXPECT_TRUE(becomes("PlayPattern"));
}

TEST(PlayThread, PartsOfASongThatPlaysAreExchangedAndChanged) {
    ScriptRig rig;
    rig.Run(std::string(kStart) + kSong + R"(
vtPlayer:PlaySong("Song")
for i = 1, 300 do
    local made, part = VTInstrument(), VTSample()
    part:SetData(wave, 1 + math.mod(i, 2))
    made:SetSample(0, part)
    song:SetInstrument(0, made)
    made:SetKeybSampleNum(math.mod(i, 128), 0)
    made:SetFadeOut(i)
    part:SetVolume(math.mod(i, 128))
    part:SetLoopStart(math.mod(i, 20))
    song:GetPattern(math.mod(i, 256)):SetNote(0, 0, 40)
    song:GetPattern(0):SetNumRows(1 + math.mod(i, 256))
    song:SetBPM(32 + math.mod(i, 200))
    if math.mod(i, 50) == 0 then
        song = VTSong()
        song:SetInstrument(0, made)
        song:SetInstrument(1, vtPlayer:GetCurrentSong():GetInstrument(0))
        vtPlayer:SetCurrentSong(song)
    end
end
vtDebug:ODS("done")
)");
    EXPECT_EQ(rig.Take().back(), "done");
}

TEST(PlayThread, EndAndTheLastPlayerOfAllScriptsStopTheSound) {
    ScriptRig rig;
    rig.Run("d = VTDictionary() d:Set('OutputMode', 'NoSound') vtPlayer:Init(d) vtPlayer:PlaySong('Song')");
    EXPECT_EQ(rig.scripting.Player().Get(), nullptr);   // its state has gone
    rig.Run("d = VTDictionary() d:Set('OutputMode', 'DirectSound') vtDebug:ODS(vtBinUtils:ToString(vtPlayer:Init(d)))\n"
            "function F() vtPlayer:End() vtDebug:ODS(vtBinUtils:ToString(vtPlayer:Init(d))) end", "F");
    EXPECT_EQ(rig.Take(), (Lines{"true", "true"}));
}

TEST(Songs, LoadedAndDroppedTheyLeaveNoMemoryBehind) {
    ScriptRig rig;
    EXPECT_TRUE(rig.Run(std::string(kStart) + kSong + R"(
function F()
    vtPlayer:SaveSong("song.vtm")
    for i = 1, 200 do
        local song = vtPlayer:LoadSong("song.vtm")
        held = song:GetInstrument(0):GetSample(0)
    end
    vtDebug:ODS(held:GetVolume())
end)", "F"));
    EXPECT_EQ(rig.Take(), Lines{"128"});             // the sample's song is still there
}

TEST(Folders, EveryScriptBelowOneIsRunByName) {
    ScriptRig rig;
    std::filesystem::create_directories("all/sub");
    std::filesystem::create_directory_symlink("../../all", "all/sub/loop");
    for (const std::string name : {"b.vtc", "a.VTC", "sub/c.vtc", "d.lua", "vtc"})
        rig.directory.Write("all/" + name, "function F(d) d:Set('n', d:Get('n') + 1) vtDebug:ODS('" + name + "') end");
    rig.directory.Write("all/bad.vtc", "x = = 1");
    for (const char* folder : {"all", "all/", "./all/"}) {
        const auto count = MakeObject<VTDictionary>();
        count->SetNumber("n", 0);
        rig.Run(std::string("function F(d) vtApp:ExecuteDir('") + folder + "', 'F', d) end", "F", count.Get());
        Lines lines = rig.Take();
        const auto told = [](const std::string& line) { return line.starts_with("ERROR") || line.starts_with("WARNING"); };
        std::erase_if(lines, told);
        EXPECT_EQ(lines, (Lines{"a.VTC", "b.vtc", "sub/c.vtc"}));
        double n = 0;
        EXPECT_TRUE(count->GetNumber("n", n));
        EXPECT_EQ(n, 3);
    }
}

}  // namespace
}  // namespace vonta::test
