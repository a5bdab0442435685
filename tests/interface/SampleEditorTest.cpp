// The sample editor by its mouse, its keys and its typed numbers: what they leave in the song, and what is heard.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "formats/samples/SampleSetup.h"
#include "interface/screens/SampleEditorScreen.h"
#include "tests/support/BuiltPacks.h"
#include "tests/support/InterfaceRig.h"

namespace vonta {
namespace {

constexpr int kSelectAllKey = 183, kShowRangeKey = 184, kZoomOutKey = 185, kCutKey = 186, kCopyKey = 187, kPasteKey = 188,
              kCropKey = 189, kMiddleY = 380;

struct Editing {
    explicit Editing(const std::vector<float>& wave, int channels = 1, LoopFrames loop = {}, ResourcePacks packs = {})
        : rig(SongBuilder().SampleInstrument(0, wave, channels, loop).Build(), std::move(packs)) {
        rig.ui.ShowScreen(kScreenSampleEditor);
        rig.Frame();
    }
    Sample& Object() { return *rig.player.GetSong().Find({0, 0}); }
    std::vector<float> Wave() { return {Object().Wave(), Object().Wave() + Object().Count()}; }
    SampleEditorScreen& Screen() { return static_cast<SampleEditorScreen&>(rig.ui.GetScreen(kScreenSampleEditor)); }
    void Click(int id) { rig.Click(kSampleEditorLayout, id); }
    void Drag(int fromX, int fromY, int toX, int toY) {
        rig.MouseTo(fromX, fromY);
        rig.MouseTo(fromX, fromY, true);
        rig.MouseTo((fromX + toX) / 2, toY, true);
        rig.MouseTo(toX, toY, true);
        rig.MouseTo(toX, toY);
    }
    void Type(int field, const std::string& text) {
        Click(NumberId(field));
        rig.Type(text);
        rig.ui.OnCharacter("\r");
        rig.Frame();
        rig.Frame();
    }
    std::size_t Steps() { return rig.state.Edits().Steps().UndoCount(); }
    // The loudest that is heard in so much time.
    float Hear(int milliseconds) {
        rig.player.GetMixer().scope.Watch();
        rig.player.GetMixer().scope.TakePeak(0);
        rig.Sound(milliseconds);
        return rig.player.GetMixer().scope.TakePeak(0);
    }

    InterfaceRig rig;
};

std::vector<float> Ramp(int count) {
    std::vector<float> values;
    for (int i = 0; i < count; ++i) values.push_back(static_cast<float>(i));
    return values;
}

TEST(SampleEditor, ADragSelectsWholeFramesEitherWayAndTheRightButtonLetsGo) {
    for (const int channels : {1, 2}) {
        Editing editing(Ramp(8000 * channels), channels);
        editing.Drag(400, kMiddleY, 100, kMiddleY);
        const int width = channels;
        EXPECT_EQ(editing.Object().selActive, 1);
        EXPECT_EQ(editing.Object().selStart, 8000 * width * 100 / 799 / width * width);
        EXPECT_EQ(editing.Object().selEnd, 8000 * width * 400 / 799 / width * width);
        editing.Drag(700, kMiddleY, 900, 100);   // out of the picture and out of the wave
        EXPECT_EQ(editing.Object().selEnd, 8000 * width);
        editing.rig.MouseTo(300, kMiddleY);
        editing.rig.MouseTo(300, kMiddleY, false, true);
        editing.rig.MouseTo(300, kMiddleY, false, true);
        editing.rig.MouseTo(300, kMiddleY);
        EXPECT_EQ(editing.Object().selActive, 0);
        EXPECT_EQ(editing.Steps(), 0u);          // looking is no step
    }
}

TEST(SampleEditor, KeysCutCopyPasteAndCropWhatIsSelected) {
    Editing editing(Ramp(400));
    const auto before = editing.Wave();
    editing.Drag(100, kMiddleY, 200, kMiddleY);  // a column a frame
    editing.rig.TapAction(kCutKey);
    EXPECT_EQ(editing.Object().Count(), 300u);
    EXPECT_EQ(editing.Object().selActive, 0);
    editing.Drag(100, kMiddleY, 100, kMiddleY);
    editing.rig.TapAction(kPasteKey);
    EXPECT_EQ(editing.Object().Count(), 400u);
    EXPECT_EQ(editing.Wave()[150], before[150]);
    editing.rig.TapAction(kSelectAllKey);
    EXPECT_EQ(editing.Object().selEnd, 400);
    editing.rig.TapAction(kCopyKey);
    EXPECT_EQ(editing.Object().Count(), 400u);
    editing.Drag(10, kMiddleY, 30, kMiddleY);
    editing.rig.TapAction(kCropKey);
    EXPECT_EQ(editing.Object().Count(), 20u);
    EXPECT_EQ(editing.Steps(), 3u);
    while (editing.rig.state.Edits().Steps().Undo()) {}
    EXPECT_EQ(editing.Wave(), before);
    editing.rig.ui.ToggleScreen(kScreenSampleEditor);
    editing.rig.Frame();
    editing.rig.TapAction(kSelectAllKey);        // Alt+A jumps to a track again
    EXPECT_EQ(editing.rig.state.pending.m_nCursorChannel, 8);
}

TEST(SampleEditor, EachDragOfAMarkerIsOneStepAndPassesNoOther) {
    Editing editing(Ramp(16000), 1, {VTSAMPLE_LOOP_FORDWARD, 4000, 12000});
    const SampleData& data = *editing.Object().data;
    const int startX = 4000 * 799 / 16000, endX = 12000 * 799 / 16000;
    editing.Drag(startX + 5, 258, startX + 105, 300);      // beside its middle: no jump
    EXPECT_NEAR(data.loopStart, 6000, 25);
    EXPECT_EQ(editing.Steps(), 1u);
    editing.Drag(startX + 100, 258, 790, 300);
    EXPECT_EQ(data.loopStart, 12000u);
    EXPECT_EQ(editing.Steps(), 2u);
    editing.Drag(endX, 500, 2, 400);
    EXPECT_EQ(data.loopEnd, 12000u);
    editing.Drag(endX, 500, 850, 400);
    EXPECT_EQ(data.loopEnd, 16000u);
    EXPECT_EQ(editing.Steps(), 3u);
    editing.rig.state.Edits().Steps().Undo();
    editing.rig.state.Edits().Steps().Undo();
    editing.rig.state.Edits().Steps().Undo();
    EXPECT_EQ(data.loopStart, 4000u);
    EXPECT_EQ(data.loopEnd, 12000u);

    editing.Click(kSmpLoopType + int{VTSAMPLE_LOOP_PINGPONG});
    EXPECT_EQ(data.loopType, VTSAMPLE_LOOP_PINGPONG);
    editing.Click(kSmpLoopStartUp);
    EXPECT_EQ(data.loopStart, 4001u);
    editing.Click(kSmpLoopEndDown);
    EXPECT_EQ(data.loopEnd, 11999u);
}

TEST(SampleEditor, ZoomKeepsWhatIsUnderTheMouseAndShowsTheRange) {
    Editing editing(Ramp(80000));
    const WaveView& view = editing.Screen().View();
    editing.rig.MouseTo(600, kMiddleY);
    const auto under = view.FloatsAt(600);
    for (int i = 0; i < 6; ++i) {
        editing.rig.input.OnWheel(1);
        editing.rig.Frame();
    }
    EXPECT_LT(view.Frames(), 80000 / 10);
    EXPECT_NEAR(static_cast<double>(view.FloatsAt(600)), static_cast<double>(under), 40);
    editing.Drag(200, kMiddleY, 600, kMiddleY);
    const auto from = editing.Object().selStart, to = editing.Object().selEnd;
    editing.rig.TapAction(kShowRangeKey);
    EXPECT_EQ(view.First(), from);
    EXPECT_EQ(view.Frames(), to - from);
    for (int i = 0; i < 60; ++i) {               // far in: every frame can be chosen
        editing.rig.input.OnWheel(1);
        editing.rig.Frame();
    }
    EXPECT_EQ(view.Frames(), WaveView::kLeastFrames);
    EXPECT_EQ(view.ColumnOf(view.FloatsAt(400)), view.ColumnOf(view.First() + view.Frames() / 2));
    const LayoutItem& bar = ItemOf(kSampleEditorLayout, kSmpScroll);
    editing.Drag(bar.x + 100, bar.y + 8, bar.x + 500, bar.y + 8);
    EXPECT_EQ(view.First(), 80000 - WaveView::kLeastFrames);
    for (int i = 0; i < 30; ++i) editing.rig.TapAction(kZoomOutKey);
    EXPECT_TRUE(view.IsWhole());
    editing.rig.MouseTo(600, 100);               // over the panels the wheel is theirs
    editing.rig.input.OnWheel(1);
    editing.rig.Frame();
    EXPECT_TRUE(view.IsWhole());
}

TEST(SampleEditor, EightHundredFramesHaveAColumnEachAndMoreAreSampled) {
    WaveView view;
    int wave = 0;
    view.Follow(&wave, 800, 1);
    EXPECT_FALSE(view.IsLong());
    EXPECT_EQ(view.PointAt(799).floats, 799);
    view.Follow(&wave, 801, 1);
    EXPECT_TRUE(view.IsLong());
    EXPECT_EQ(view.Points(), 800);
    EXPECT_EQ(view.PointAt(799).floats, 799 * 801 / 800);
    view.Follow(&wave, 1600, 2);
    EXPECT_EQ(view.Points(), 798);
    EXPECT_EQ(view.FloatsAt(10), 20);
    view.Follow(&wave, 1602, 2);
    EXPECT_EQ(view.PointAt(799).floats, 799 * 1600 / 800);
    EXPECT_EQ(view.ColumnOfReading(1602), 799);
    view.Follow(&wave, 100000, 2);
    view.Show(100, 20);                          // joined, from edge to edge
    EXPECT_EQ(view.Points(), 21);
    EXPECT_EQ(view.PointAt(20).column, 799);
    EXPECT_EQ(view.PointAt(20).floats, 240);
    EXPECT_EQ(view.ColumnOf(198), -40);
}

// Rows of the picture in which a column holds the colour of the wave's lines.
TEST(SampleEditor, TheWaveAndItsSelectionAreSeenWhereTheyAre) {
    std::vector<float> wave(8000, 0.0f);
    std::fill(wave.begin() + 4000, wave.end(), 20000.0f);
    Editing editing(wave, 1, {}, OpenBuiltPacks());
    const auto isLine = [&](int x, int y) { return editing.rig.display.PixelAt(x, y) == 0x6FD3E3; };
    editing.rig.Frame();
    EXPECT_TRUE(isLine(200, 379));
    EXPECT_TRUE(isLine(600, 379 + 39));          // positive lies below
    EXPECT_FALSE(isLine(200, 379 + 39));
    const auto ground = editing.rig.display.PixelAt(300, 300);
    editing.Drag(250, kMiddleY, 350, kMiddleY);
    EXPECT_NE(editing.rig.display.PixelAt(300, 300), ground);
    EXPECT_EQ(editing.rig.display.PixelAt(200, 300), editing.rig.display.PixelAt(400, 300));
    EXPECT_EQ(editing.rig.display.PixelAt(400, 300), ground);
}

TEST(SampleEditor, PlaysAllTheSelectionOrFromTheMouseAndStops) {
    std::vector<float> wave = SineWave(40000);
    std::fill(wave.begin(), wave.begin() + 20000, 0.0f);   // silent before the middle
    Editing editing(wave, 1, {VTSAMPLE_LOOP_FORDWARD, 20000, 40000});
    TuneSample(editing.Object(), 44100);
    EXPECT_EQ(editing.Hear(100), 0);
    editing.Click(kSmpPlay);
    EXPECT_EQ(editing.Hear(100), 0);
    EXPECT_GT(editing.Hear(600), 1000);
    EXPECT_GT(editing.Hear(2000), 1000);         // it loops
    const ScopeTap& scope = editing.rig.player.GetMixer().scope;
    int reading = 0;
    for (int track = 0; track < kTracks; ++track) reading += scope.ReadingsOf(track)[0].wave == editing.Object().Wave();
    EXPECT_EQ(reading, 1);
    editing.Click(kSmpStop);
    editing.Hear(100);
    EXPECT_EQ(editing.Hear(100), 0);

    editing.Drag(410, kMiddleY, 450, kMiddleY);
    editing.Click(kSmpPlayRange);
    EXPECT_GT(editing.Hear(30), 1000);
    editing.Hear(200);
    EXPECT_EQ(editing.Hear(300), 0);             // once

    editing.rig.Modifiers(kMaskShift, true);
    editing.Drag(600, kMiddleY, 600, kMiddleY);
    editing.rig.Modifiers(kMaskShift, false);
    EXPECT_GT(editing.Hear(60), 1000);
    EXPECT_LT(editing.Object().selEnd, 23000);   // and selects nothing
    editing.Click(kSmpStop);
    editing.Hear(100);
    editing.Click(kSmpPlayAtMouse);
    editing.Drag(600, kMiddleY, 700, kMiddleY);
    EXPECT_GT(editing.Hear(60), 1000);
}

TEST(SampleEditor, NumbersAreTypedAndUsed) {
    Editing editing(std::vector<float>(2000, 8000.0f), 1, {VTSAMPLE_LOOP_FORDWARD, 0, 2000});
    editing.Type(kNumberLoopStart, "3E8");
    EXPECT_EQ(editing.Object().data->loopStart, 1000u);
    editing.Type(kNumberLoopStart, "no number");
    editing.Type(kNumberLoopEnd, "FFFFFFFFFFFF");
    EXPECT_EQ(editing.Object().data->loopStart, 1000u);
    EXPECT_EQ(editing.Object().data->loopEnd, 2000u);
    editing.Type(kNumberVolume, "50");
    editing.Click(kSmpVolume);
    EXPECT_EQ(editing.Wave()[500], 4000);
    editing.Type(kNumberCrossfade, "-5");        // at least one frame
    editing.Click(kSmpCrossfade);
    EXPECT_EQ(editing.Steps(), 3u);
    editing.Click(kSmpTool + static_cast<int>(WaveTool::Silence));
    EXPECT_EQ(editing.Wave()[500], 0);
}

TEST(SampleEditor, ResamplingGoesOnBetweenFramesAndEscapeEndsIt) {
    Editing editing(SineWave(3000000, 2), 2);
    TuneSample(editing.Object(), 44100);
    editing.Type(kNumberRate, "48000");
    editing.Click(kSmpResample);
    ASSERT_TRUE(editing.Screen().IsWorking());
    editing.rig.ui.OnEscape();
    EXPECT_FALSE(editing.Screen().IsWorking());
    EXPECT_FALSE(editing.rig.state.m_bDialogOpen);
    EXPECT_EQ(editing.Object().Count(), 6000000u);
    editing.Click(kSmpCrop);                     // nothing is selected
    editing.Drag(0, kMiddleY, 1, kMiddleY);
    editing.Click(kSmpCrop);
    editing.Click(kSmpResample);
    for (int i = 0; i < 1000 && editing.Screen().IsWorking(); ++i) editing.rig.Frame();
    EXPECT_EQ(editing.Steps(), 2u);
    EXPECT_NEAR(editing.Object().Count(), 6000000 / 799 * 48000.0 / 44100, 30);
}

// Whatever is pressed where there is little or nothing to work on.
TEST(SampleEditor, NothingBreaksWithoutInstrumentSampleOrWave) {
    struct Case { const char* name; void (*make)(Song&); };
    const Case cases[] = {
        {"no instrument", [](Song& song) { song.SetInstrument(0, nullptr); }},
        {"no sample", [](Song& song) { song.GetInstrument(0)->SetSample(0, nullptr, 1); }},
        {"empty wave", [](Song& song) { song.Find({0, 0})->SetData({}, 1); }},
        {"no wave", [](Song& song) { song.GetInstrument(0)->SetSample(0, std::make_unique<Sample>(), 1); }},
        {"one frame", [](Song& song) { song.Find({0, 0})->SetData(std::vector<float>{5, 6}, 2); }},
        {"odd floats", [](Song& song) { song.Find({0, 0})->SetData(Ramp(2001), 2); }},
        {"clone of nothing", [](Song& song) { song.Find({0, 0})->MakeClone(); }},
        {"bad points", [](Song& song) {
             SampleData& data = *song.Find({0, 0})->data;
             data.loopStart = 4000000000u;
             data.loopEnd = 3;
             data.loopType = 1;
             song.Find({0, 0})->selEnd = -7;
         }},
    };
    for (const Case& c : cases)
        for (const bool selected : {false, true}) {
            SCOPED_TRACE(c.name);
            Editing editing(Ramp(1000));
            {
                const MixerPause pause(editing.rig.player);
                c.make(editing.rig.player.GetSong());
            }
            for (const LayoutItem& item : kSampleEditorItems) {
                if (item.id == kNoControl || item.id == kSmpExit) continue;
                if (selected) editing.rig.TapAction(kSelectAllKey);
                editing.Click(item.id);
                editing.Drag(item.x + 1, item.y + 2, item.x + 9, item.y + 4);
                editing.rig.input.OnWheel(1);
                editing.Hear(20);
                editing.rig.ui.CloseQuestion();
            }
            EXPECT_TRUE(editing.rig.ui.IsVisible(kScreenSampleEditor));
        }
}

TEST(SampleEditor, AWaveIsCoveredByACloneOnlyWhenThatIsAnswered) {
    Editing editing(Ramp(1000));
    {
        const MixerPause pause(editing.rig.player);
        editing.rig.player.GetSong().GetInstrument(0)->SetSample(1, MakeSample(Ramp(50)), 1);
    }
    editing.rig.state.pending.m_nSourceSample = 1;
    editing.Click(kSmpClone);
    ASSERT_TRUE(editing.rig.state.m_bDialogOpen);
    editing.rig.ui.AnswerNo();
    EXPECT_EQ(editing.Object().Count(), 1000u);
    editing.Click(kSmpClone);
    editing.rig.ui.AnswerYes();
    EXPECT_EQ(editing.Object().Count(), 50u);
    EXPECT_EQ(editing.Object().data->isClone, 1);
    EXPECT_EQ(editing.Steps(), 1u);
}

}  // namespace
}  // namespace vonta
