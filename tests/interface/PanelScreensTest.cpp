#include <gtest/gtest.h>

#include "interface/layout/ConfigLayout.h"
#include "interface/layout/DiskOpLayout.h"
#include "interface/layout/MainLayout.h"
#include "interface/layout/OptionsLayouts.h"
#include "interface/layout/QuestionLayouts.h"
#include "interface/layout/ScopesLayout.h"
#include "interface/layout/TextLayouts.h"
#include "interface/screens/HelpScreen.h"
#include "interface/screens/ScrolledText.h"
#include "interface/view/ListItems.h"
#include "platform/Clock.h"
#include "tests/support/BuiltPacks.h"
#include "tests/support/InterfaceRig.h"

namespace vonta {
namespace {

TEST(MainPanel, RowsBlocksAndBanksSelectTheirItems) {
    InterfaceRig rig;
    rig.Frame();
    const struct { int block; bool bank; int y, item; } cases[] = {
        {0, false, 4, 1}, {0, false, 122, 8}, {3, false, 5, 25}, {7, true, 110, 128}, {0, true, 20, 66},
    };
    for (const auto& [block, bank, y, item] : cases) {
        const bool isBank = rig.state.pending.m_nBlock[kListInstruments] >= 8;
        if (isBank != bank) rig.Click(kMainLayout, kMainBank);
        rig.Click(kMainLayout, kMainBlock + block);
        rig.Click(600, y);
        EXPECT_EQ(rig.state.pending.m_nSelected[kListInstruments], item);
    }
    rig.state.pending.m_nListScroll = 251;
    rig.Frame();
    rig.Click(600, 190);
    EXPECT_EQ(rig.state.pending.m_nSample, 255);
    rig.Click(kMainLayout, kMainSampleDown);
    EXPECT_EQ(rig.state.pending.m_nListScroll, 251);
}

TEST(MainPanel, TheRightButtonNamesAndShiftColours) {
    InterfaceRig rig;
    rig.Frame();
    rig.Click(600, 4 + 2 * 15, true);            // the third slot is empty
    rig.Type("Bass");
    const Instrument* instrument = rig.state.CurrentSong().GetInstrument(2);
    ASSERT_NE(instrument, nullptr);
    EXPECT_EQ(instrument->name, "Bass");
    EXPECT_NE(instrument->GetSample(0), nullptr);
    rig.ui.StopTextEdit();
    rig.Modifiers(kMaskShift, true);
    rig.MouseTo(600, 40);
    rig.MouseTo(640, 40, true);
    EXPECT_EQ(instrument->color, RainbowColour(90 * 0.0055555557f));
    rig.MouseTo(560, 90, true);                  // the drag stays with its row
    EXPECT_EQ(instrument->color, RainbowColour(10 * 0.0055555557f));
    rig.MouseTo(560, 90);
    rig.Click(530, 40);
    EXPECT_EQ(instrument->color, kPlainInstrument);
}

TEST(MainPanel, MutesTheItemOfTheRowAndPlaysAndStops) {
    InterfaceRig rig(SongBuilder().Channels(4).SineInstrument(0, 64).Build());
    rig.Frame();
    for (const bool muted : {true, false}) {
        rig.Click(kMainLayout, kMainMute);
        EXPECT_EQ(rig.state.CurrentSong().GetInstrument(0)->muted != 0, muted);
    }
    for (const bool playing : {true, false}) {
        rig.Click(kMainLayout, kMainPlay);
        EXPECT_EQ(rig.player.IsPlaying(), playing);
    }
    rig.Modifiers(kMaskShift, true);
    rig.Click(kMainLayout, kMainWindowMode);
    EXPECT_EQ(rig.host.videoRestarts, 1);
    EXPECT_EQ(rig.ui.ModifierMask(), 0) << "no release will come";
}

TEST(ListItems, TheRainbowRisesAndFallsOncePerColour) {
    const struct { float place; std::uint32_t colour; } cases[] = {
        {0, 0xFF5B00}, {0.25f, 0xAD00FF}, {1, 0xFF5B00}, {-3, 0xFF5B00}, {7, 0xFF5B00},
    };
    for (const auto& [place, colour] : cases) EXPECT_EQ(RainbowColour(place), colour) << place;
}

TEST(OptionPanels, AButtonShowsItsScreenAndHidesItAgain) {
    const struct { const ScreenLayout& layout; int id, slot; } cases[] = {
        {kLeftOptionsLayout, kLeftMultiFx, kScreenMultiFx},        {kLeftOptionsLayout, kLeftFilter, kScreenInstrumentFilter},
        {kLeftOptionsLayout, kLeftMixer, kScreenMixer},            {kLeftOptionsLayout, kLeftTrackEditor, kScreenTrackEditor},
        {kRightOptionsLayout, kRightSampleEditor, kScreenSampleEditor}, {kRightOptionsLayout, kRightSynth, kScreenSynth},
        {kRightOptionsLayout, kRightCpuScan, kScreenCpuScan},
    };
    InterfaceRig rig;
    rig.Frame();
    for (const auto& [layout, id, slot] : cases)
        for (const bool shown : {true, false}) {
            rig.Click(layout, id);
            EXPECT_EQ(rig.ui.IsVisible(slot), shown) << slot;
        }
    const int channels = rig.state.SongChannels();
    rig.Click(kLeftOptionsLayout, kLeftAdd);
    EXPECT_EQ(rig.state.SongChannels(), channels + 2);
    rig.Click(kRightOptionsLayout, kRightRecordPattern);
    rig.Click(kRightOptionsLayout, kRightPlaySong);          // what records goes on doing so
    EXPECT_TRUE(rig.player.IsPlaying() && rig.state.pending.m_bEditMode);
    rig.Click(kRightOptionsLayout, kRightStop);
    EXPECT_FALSE(rig.player.IsPlaying() || rig.state.pending.m_bEditMode);
    rig.Click(kRightOptionsLayout, kRightExit);
    EXPECT_TRUE(rig.state.m_bDialogOpen);
}

TEST(StartTempo, IsKeptShownAndSavedWhateverTheSongMakesOfIt) {
    constexpr std::uint8_t kTempoCommand = 15;
    InterfaceRig rig(SongBuilder().Channels(4).Bpm(125).Tempo(6).Pattern(0, 8).Effect(0, 0, kTempoCommand, 200)
                         .Effect(1, 0, kTempoCommand, 0).Build(), OpenBuiltPacks());
    const Song& song = rig.state.CurrentSong();
    const LayoutItem& field = ItemOf(kScopesLayout, kScopesPresent);
    const auto unchanged = rig.Pixels(field);
    const auto play = [&](int id) {
        rig.Click(kRightOptionsLayout, id);
        rig.Frame();
        EXPECT_EQ(song.GetTempo(), 6u);
        rig.Sound(400);
        return std::pair(static_cast<int>(rig.player.GetBPM()), static_cast<int>(song.GetTempo()));
    };
    for (const int id : {kRightPlaySong, kRightPlaySong, kRightPlayPattern}) {
        EXPECT_EQ(play(id), std::pair(200, 0));
        EXPECT_FALSE(rig.Pixels(field) == unchanged);
    }
    rig.state.m_szSongName = "kept";
    rig.ui.ShowScreen(kScreenDiskOp);
    rig.ui.DiskOp().GoTo(rig.directory.Path());
    for (const auto& [format, file] : {std::pair{kSaveNative, "kept.vtm"}, {kSaveXm, "kept.xm"}}) {
        rig.Frame();
        rig.Click(kDiskOpLayout, kDiskSave);
        rig.Click(kSaveLayout, format);
        rig.Click(kSaveLayout, kSaveGo);
        rig.ui.CloseQuestion();
        LoadReport report;
        bool unknown = false;
        const auto saved = LoadModule(rig.directory.File(file), unknown, report);
        ASSERT_TRUE(saved) << file;
        EXPECT_EQ(std::pair(saved->GetBPM(), saved->GetTempo()), std::pair(125u, 6u)) << file;
    }
    rig.ui.ShowScreen(kScreenScopes);
    rig.Frame();
    rig.Click(kScopesLayout, kScopesBpmUp);
    rig.Click(kScopesLayout, kScopesTicksDown);
    EXPECT_EQ(std::pair(rig.player.GetBPM(), song.GetTempo()), std::pair(126.0f, 5u)) << "what is set is heard";
    EXPECT_TRUE(rig.Pixels(field) == unchanged);
}

TEST(ConfigScreen, TheAmplificationIsTheSongsTheSoundsAndTheOneThatIsKept) {
    InterfaceRig rig;
    rig.ui.ShowScreen(kScreenConfig);
    rig.state.requests.song.object = Song::MakeDefault();
    rig.state.requests.song.object->SetMasterVolume(0.5f);
    rig.Frame();
    rig.Click(kConfigLayout, kConfigSave);
    EXPECT_FLOAT_EQ(rig.config.amplification, 0.5f);
    rig.Click(kConfigLayout, kConfigAmplificationUp);
    EXPECT_FLOAT_EQ(rig.state.CurrentSong().masterVolume, 0.51f);
    EXPECT_FLOAT_EQ(rig.player.GetMixer().masterAmp, 0.51f);
    rig.state.NewSong();
    rig.Frame();
    EXPECT_FLOAT_EQ(rig.player.GetMixer().masterAmp, 0.51f);
}

TEST(ConfigScreen, TheLatencyIsWhatTheDeviceHas) {
    InterfaceRig rig;
    rig.ui.ShowScreen(kScreenConfig);
    rig.device->latency = 44100 * 4 / 20;        // the device has made 50 ms of the 100 that were wished
    rig.Frame();
    EXPECT_EQ(rig.config.latency, 100);
    rig.Click(kConfigLayout, kConfigLatencyUp);
    rig.Frame();
    EXPECT_EQ(rig.config.latency, 51);
    rig.device->latency = 44100 * 4 / 500 + 20;  // 2 ms
    rig.Frame();
    rig.Click(kConfigLayout, kConfigLatencyDown);
    rig.Frame();
    EXPECT_EQ(rig.config.latency, 2);
}

// A port that is asked when it was last busy.
struct QuietInput final : DrvMIDIIN {
    int Open(int) override { return 0; }
    std::string GetName() const override { return "Quiet"; }
    int Read(std::uint32_t*) override { return 0; }
    std::uint32_t GetLastTime() const override { return last; }
    std::uint32_t last = 0;
};

TEST(ConfigScreen, ALightTellsOfMessagesOfTheChosenInput) {
    InterfaceRig rig(nullptr, OpenBuiltPacks());
    auto input = std::make_unique<QuietInput>();
    QuietInput& port = *input;
    rig.player.GetMixer().midiIn[1] = std::move(input);
    rig.ui.ShowScreen(kScreenConfig);
    const LayoutItem& light = ItemOf(kConfigLayout, kConfigMidiInLight);
    const auto dark = rig.Pixels(light);
    port.last = Milliseconds() - 10;
    EXPECT_TRUE(rig.Pixels(light) == dark) << "another input";
    rig.Click(kConfigLayout, kConfigMidiInUp);
    port.last = Milliseconds() - 10;
    EXPECT_FALSE(rig.Pixels(light) == dark);
    port.last = Milliseconds() - 1000;
    EXPECT_TRUE(rig.Pixels(light) == dark);
}

TEST(ConfigScreen, RowsChangeTheirValueWhatHangsOnItAndStopAtTheEnds) {
    InterfaceRig rig;
    rig.ui.ShowScreen(kScreenConfig);
    rig.Frame();
    const auto press = [&](int id, int times = 1) {
        for (int i = 0; i < times; ++i) rig.Click(kConfigLayout, id);
    };
    press(kConfigAmplificationUp, 30);
    EXPECT_FLOAT_EQ(rig.config.amplification, 1.0f);
    press(kConfigInterpolationUp, 3);
    EXPECT_EQ(rig.player.GetMixer().interpolation, static_cast<std::uint32_t>(Interpolation::Cubic));
    press(kConfigMidiOutUp, 20);
    press(kConfigMidiDelayUp, 2);
    EXPECT_EQ(rig.config.midiOutDelay[15], 2);
    press(kConfigMidiInUp, 20);
    EXPECT_EQ(rig.config.midiInput, kMaxMidiInput);
    press(kConfigChannelsDown, 4);
    rig.Frame();
    EXPECT_EQ(rig.state.frame.m_nVisibleChannels, 8);
    press(kConfigKeyRateDown, 60);
    EXPECT_EQ(rig.config.keyboardTicksPerSecond, 1);
    press(kConfigMouseDelayUp);
    EXPECT_EQ(rig.config.mouseRepeatDelay, 8);
    press(kConfigHexadecimal);
    rig.Frame();
    EXPECT_TRUE(rig.state.frame.m_bHexMode && rig.config.patternNumberMode == 1);
    const std::uint32_t flags = rig.config.flags;
    press(kConfigVelocity);
    press(kConfigAutoTune);
    EXPECT_EQ(rig.config.flags, flags ^ kRecordVelocity ^ kAutoTuneSample);
    EXPECT_EQ(rig.host.configSaves, 0);
    press(kConfigSave);
    EXPECT_EQ(rig.host.configSaves, 1);
    press(kConfigExit);
    EXPECT_FALSE(rig.ui.IsVisible(kScreenConfig));
}

TEST(HelpScreen, AMissingTextIsAnEmptyPageAndTheOthersScroll) {
    TempDirectory temp;
    std::string error, lines;
    for (int i = 0; i < 30; ++i) lines += "line " + std::to_string(i) + "\r\n";
    ASSERT_TRUE(WritePack(temp.File("Vonta.dat"), {{"data\\effects.txt", {lines.begin(), lines.end()}},
                                                   {"data\\faqs.txt", {'?'}}}, error));
    ResourcePacks packs;
    packs.m_pDataPack = std::make_unique<PackFile>(temp.File("Vonta.dat"));
    InterfaceRig rig(nullptr, std::move(packs));
    rig.ui.ShowScreen(kScreenHelp);
    rig.Frame();
    auto& help = static_cast<HelpScreen&>(rig.ui.GetScreen(kScreenHelp));
    EXPECT_EQ(help.Page(0).Lines(), 30);
    EXPECT_EQ(help.Page(1).Lines(), 0);
    EXPECT_EQ(help.Page(2).Lines(), 1);
    rig.input.OnWheel(-3);
    rig.Frame();
    EXPECT_EQ(help.Page(0).First(), 3);
    rig.Click(kHelpLayout, kHelpDown);
    EXPECT_EQ(help.Page(0).First(), 4);
    rig.input.OnWheel(-90);
    rig.Frame();
    EXPECT_EQ(help.Page(0).First(), 13);         // the last page is full
    rig.Click(kHelpLayout, kHelpLimits);
    rig.Click(kHelpLayout, kHelpDown);
    EXPECT_EQ(help.Page(1).First(), 0);
}

TEST(ScrolledText, BreaksLinesAtBlanksAndCountsCharactersNotBytes) {
    using Lines = std::vector<std::string>;
    const struct { const char* text; Lines lines; } cases[] = {
        {"", {}},
        {"one\n\ntwo", {"one", "", "two"}},
        {"one two three", {"one two", "three"}},
        {"unbreakable", {"unbreaka", "ble"}},
        {"a\tb", {"a      ", "b"}},
        {"\xC3\xBC\xC3\xBC\xC3\xBC\xC3\xBC\xC3\xBC\xC3\xBC\xC3\xBC\xC3\xBC", {"\xC3\xBC\xC3\xBC\xC3\xBC\xC3\xBC\xC3\xBC\xC3\xBC\xC3\xBC\xC3\xBC"}},
    };
    for (const auto& [text, lines] : cases) EXPECT_EQ(BreakLines(text, 8), lines) << text;
}

}  // namespace
}  // namespace vonta
