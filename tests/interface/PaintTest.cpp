#include <gtest/gtest.h>

#include "interface/layout/QuestionLayouts.h"
#include "tests/support/BuiltPacks.h"
#include "tests/support/InterfaceRig.h"

namespace vonta {
namespace {

TEST(Paint, WhileAQuestionIsOpenItsButtonsAloneAreLive) {
    InterfaceRig rig;
    rig.Frame();
    EXPECT_GT(rig.ui.Regions().List().size(), 50u);
    rig.ui.AskToQuit();
    rig.Frame();
    EXPECT_EQ(rig.ui.Regions().List().size(), 2u);
    rig.Click(kDialogLayout, kDialogNo);
    EXPECT_FALSE(rig.state.m_bDialogOpen || rig.state.m_bQuit);
    rig.ui.AskToQuit();
    rig.Frame();
    rig.Click(kDialogLayout, kDialogYes);
    EXPECT_TRUE(rig.state.m_bQuit);
}

TEST(Paint, RecordingAndWorkOnFilesAreShown) {
    InterfaceRig rig(SongBuilder().SineInstrument(0, 64).Note(12, 3, 50, 1).Build(), OpenBuiltPacks());
    const auto corner = [&] { return rig.Pixels(2, 2, 1, 1); };
    const auto middle = [&] { return rig.Pixels(290, 290, 1, 1); };
    const auto plain = corner(), pattern = middle();
    rig.state.pending.m_bEditMode = true;
    EXPECT_NE(corner(), plain);
    rig.state.m_bLoadRequested = true;
    EXPECT_NE(middle(), pattern);
    rig.ui.CloseQuestion();                      // there was no such file
    EXPECT_EQ(middle(), pattern);
    const auto box = [&] {
        rig.state.m_bLoadRequested = true;
        const auto pixels = rig.Pixels(kLoadingLayout.x, kLoadingLayout.y, kLoadingLayout.width, kLoadingLayout.height);
        rig.ui.CloseQuestion();
        return pixels;
    };
    rig.player.SetRow(10);
    const auto above = box();
    rig.player.SetRow(20);
    EXPECT_TRUE(box() == above);                 // no text of the pattern comes through
}

TEST(Paint, ANewVideoModeShowsTheSamePicture) {
    InterfaceRig rig({}, OpenBuiltPacks());
    const auto picture = [&] { return rig.Pixels(0, 0, kPictureWidth, kPictureHeight, 1); };
    rig.Frame();
    const auto before = picture();
    EXPECT_EQ(rig.ui.Start(false), 0);
    EXPECT_TRUE(picture() == before);
    rig.display.refuse = true;
    EXPECT_EQ(rig.ui.Start(false), 1);
    rig.Frame();                                 // without a mode nothing is painted, and nothing breaks
    EXPECT_TRUE(rig.ui.Regions().List().empty());
}

TEST(Curtain, OpensByItselfOrAtATouchAndClosesInSilence) {
    InterfaceRig rig({}, OpenBuiltPacks());
    const std::uint32_t start = rig.now;
    rig.ui.RunCurtain([&] {
        rig.now += 20;
        return true;
    });
    EXPECT_NEAR(rig.now - start, 4000 + 29 * 20, 60);   // 29 squared is wider than the picture
    rig.ui.RunCurtain([&] {
        rig.Key(kKeySpace, true);
        return true;
    });
    rig.ui.RunCurtain([] { return false; });
    rig.player.SetMasterVolume(0.8f);
    float last = 1;
    rig.ui.FadeOut([&] {
        rig.now += 20;
        EXPECT_LE(rig.player.GetSong().masterVolume, last);
        last = rig.player.GetSong().masterVolume;
    });
    EXPECT_EQ(last, 0);
}

TEST(Solo, LeavesTheSelectedInstrumentAloneAndLetsAllSoundAgain) {
    InterfaceRig rig(SongBuilder().SineInstrument(0, 64).SineInstrument(1, 64).SineInstrument(2, 64).Build());
    const auto muted = [&] {
        rig.Frame();
        std::string text;
        for (int i = 0; i < 3; ++i) text += std::to_string(rig.player.GetSong().GetInstrument(i)->muted);
        return text;
    };
    rig.state.ToggleSolo();
    EXPECT_EQ(muted(), "011");
    rig.state.SelectItem(kListInstruments, 3);
    EXPECT_EQ(muted(), "110");
    rig.state.requests.song.object =
        SongBuilder().SineInstrument(0, 64).SineInstrument(1, 64).SineInstrument(2, 64).Build();
    EXPECT_EQ(muted(), "110");
    rig.state.ToggleSolo();
    EXPECT_EQ(muted(), "000");
}

}  // namespace
}  // namespace vonta
