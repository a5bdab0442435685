// What the sample editor does to waves, as steps that can be taken back.
#include "edit/waves/WaveEdit.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

#include "edit/waves/ResampleWork.h"
#include "formats/samples/SampleSetup.h"
#include "tests/support/SongBuilder.h"

namespace vonta {
namespace {

using Values = std::vector<float>;
Place At(int instrument, int sample) {
    Place place;
    place.instrument = instrument;
    place.sample = sample;
    return place;
}
const Place kHere = At(0, 0);

struct Rig {
    explicit Rig(const Values& wave, int channels = 1, LoopFrames loop = {}) {
        player.SetSong(SongBuilder().SampleInstrument(0, wave, channels, loop).Build());
    }
    Song& GetSong() { return player.GetSong(); }
    Sample& Object(const Place& at = kHere) { return *GetSong().Find({at.instrument, at.sample}); }
    Values Wave(const Place& at = kHere) { return Values(Object(at).Wave(), Object(at).Wave() + Object(at).Count()); }
    void Select(int start, int end) {
        Object().selStart = start;
        Object().selEnd = end;
        Object().selActive = 1;
    }
    void Use(WaveTool tool) { UseWaveTool(editor, kHere, tool); }
    std::string LastStep() { return editor.Steps().NextUndo() ? std::string(editor.Steps().NextUndo()->name) : ""; }

    SndPlayer player;
    Editor editor{player};
};

TEST(WaveTools, WorkOnTheSelectionOrOnAllAndAreTakenBackWhole) {
    const Values wave{100, -200, 300, -400, 500, -600, 0, 0};
    struct Case {
        WaveTool tool;
        int channels, start, end;                // end 0: no selection
        Values wanted;
        const char* step;
    };
    // The last value of a mono wave repeats the one before it.
    const Case cases[] = {
        {WaveTool::Silence, 1, 2, 4, {100, -200, 0, 0, 500, -600, 0, 0}, "silence"},
        {WaveTool::Reverse, 1, 0, 4, {-400, 300, -200, 100, 500, -600, 0, 0}, "reverse"},
        {WaveTool::Reverse, 2, 0, 0, {0, 0, 500, -600, 300, -400, 100, -200}, "reverse"},
        {WaveTool::SwapSides, 2, 2, 6, {100, -200, -400, 300, -600, 500, 0, 0}, "swap sides"},
        {WaveTool::FadeIn, 2, 0, 6, {0, 0, 150, -200, 500, -600, 0, 0}, "fade in"},
        {WaveTool::FadeOut, 1, 0, 3, {100, -100, 0, -400, 500, -600, 0, 0}, "fade out"},
        {WaveTool::RemoveDc, 2, 0, 6, {-200, 200, 0, 0, 200, -200, 0, 0}, "remove DC"},
        {WaveTool::Normalise, 1, 0, 2, {16383.5f, -32767, 300, -400, 500, -600, 0, 0}, "normalise"},
        {WaveTool::SwapSides, 1, 0, 0, wave, ""},    // nothing to be done leaves no step
        {WaveTool::Normalise, 1, 6, 8, wave, ""},
    };
    for (const Case& c : cases) {
        Rig rig(wave, c.channels, {VTSAMPLE_LOOP_FORDWARD, 1, 3});
        if (c.end > 0) rig.Select(c.start, c.end);
        rig.Use(c.tool);
        EXPECT_THAT(rig.Wave(), testing::Pointwise(testing::FloatNear(0.01f), c.wanted)) << NameOf(c.tool) << c.channels;
        EXPECT_EQ(rig.LastStep(), c.step);
        EXPECT_EQ(rig.Object().selActive, c.end > 0);
        if (c.tool != WaveTool::Reverse || c.end > 0) {
            EXPECT_EQ(rig.Object().data->loopEnd, 3u * static_cast<unsigned>(c.channels));
        }
        rig.editor.Steps().Undo();
        EXPECT_EQ(rig.Wave(), wave) << NameOf(c.tool);
    }
}

TEST(WaveTools, ASelectionOutsideTheWaveHarmsNothing) {
    for (int tool = 0; tool < kWaveTools; ++tool)
        for (const auto& [start, end] : {std::pair{-5, 3}, {3, 900}, {5, 1}, {7, 7}, {800, 900}}) {
            Rig rig({1, 2, 3, 4, 5, 6, 7, 8}, 2);
            rig.Select(start, end);
            rig.Use(static_cast<WaveTool>(tool));
            EXPECT_EQ(rig.Object().Count(), 8u);
        }
    Rig empty({});
    for (int tool = 0; tool < kWaveTools; ++tool) empty.Use(static_cast<WaveTool>(tool));
    ToggleSign(empty.editor, At(9, 9));
    ToMono(empty.editor, At(-1, 300));
    EXPECT_EQ(FindLoopEnd(empty.editor, kHere), LoopWork::NoLoop);
}

TEST(SampleRanges, CutAndPasteBringTheSameDataBackAndEachIsOneStep) {
    const Values wave{1, 2, 3, 4, 5, 6, 6};
    Rig rig(wave, 1, {VTSAMPLE_LOOP_FORDWARD, 1, 5});
    SampleClip clip;
    EXPECT_FALSE(CutRange(rig.editor, kHere, clip));
    rig.Select(2, 4);
    EXPECT_TRUE(CutRange(rig.editor, kHere, clip));
    EXPECT_EQ(clip.values, (Values{3, 4}));
    EXPECT_EQ(rig.Wave(), (Values{1, 2, 5, 6, 6}));
    EXPECT_EQ(rig.Object().data->loopStart, 0u);
    EXPECT_EQ(rig.Object().data->loopEnd, 4u);
    rig.Select(2, 2);
    PasteRange(rig.editor, kHere, clip);
    EXPECT_EQ(rig.Wave(), wave);
    EXPECT_EQ(rig.LastStep(), "paste sample");
    rig.Select(0, 2);
    PasteRange(rig.editor, kHere, {{1, 2}, 2});  // other channels
    EXPECT_EQ(rig.Wave(), wave);
    EXPECT_EQ(rig.editor.Steps().UndoCount(), 2u);
    rig.editor.Steps().Undo();
    rig.editor.Steps().Undo();
    EXPECT_EQ(rig.Wave(), wave);
    EXPECT_EQ(rig.Object().data->loopEnd, 5u);
    EXPECT_EQ(rig.Object().selActive, 1);            // as it was when it was cut

    Rig other({});
    PasteRange(other.editor, kHere, clip);
    EXPECT_EQ(other.Object().Count(), 2u);
}

TEST(SampleRanges, EditsOfACloneGiveItAWaveOfItsOwn) {
    Rig rig({10, 20, 30, 40, 40});
    Instrument& instrument = *rig.GetSong().GetInstrument(0);
    instrument.SetSample(1, std::make_unique<Sample>(), 1);
    const Place clone = At(0, 1);
    EXPECT_FALSE(CloneSample(rig.editor, kHere, {0, 0}));
    EXPECT_FALSE(CloneSample(rig.editor, clone, {7, 0}));
    EXPECT_TRUE(CloneSample(rig.editor, clone, {0, 0}));
    EXPECT_EQ(rig.Wave(clone), rig.Wave());
    EXPECT_EQ(rig.Object().data->refCount, 1u);
    EXPECT_FALSE(CloneSample(rig.editor, kHere, {0, 1}));   // a ring

    UseWaveTool(rig.editor, kHere, WaveTool::Reverse);     // the clone hears it
    EXPECT_EQ(rig.Wave(clone), (Values{40, 40, 30, 20, 20}));
    UseWaveTool(rig.editor, clone, WaveTool::Silence);
    EXPECT_EQ(rig.Object(clone).data->isClone, 0);
    EXPECT_EQ(rig.Object().data->refCount, 1u);      // of the clone that the journal keeps
    EXPECT_EQ(rig.Wave(), (Values{40, 40, 30, 20, 20}));
    rig.editor.Steps().Undo();
    EXPECT_EQ(rig.Object(clone).data->isClone, 1);
    EXPECT_EQ(rig.Wave(clone), rig.Wave());
    while (rig.editor.Steps().Undo()) {}
    EXPECT_EQ(rig.Object(clone).Count(), 0u);
}

TEST(SampleLoops, PointsStayInOrderOnWholeFramesInsideTheWave) {
    Rig rig(Values(40, 1.0f), 2, {VTSAMPLE_LOOP_FORDWARD, 2, 10});
    const SampleData& data = *rig.Object().data;
    SetLoopStart(rig.editor, kHere, 7);
    EXPECT_EQ(data.loopStart, 6u);
    SetLoopStart(rig.editor, kHere, 33);
    EXPECT_EQ(data.loopStart, 20u);              // stays at the other
    SetLoopEnd(rig.editor, kHere, 3);
    EXPECT_EQ(data.loopEnd, 20u);
    SetLoopEnd(rig.editor, kHere, 1000);
    EXPECT_EQ(data.loopEnd, 40u);
    SetLoopStart(rig.editor, kHere, -9);
    EXPECT_EQ(data.loopStart, 0u);
    StepLoopStart(rig.editor, kHere, -1);
    EXPECT_EQ(data.loopStart, 0u);
    StepLoopEnd(rig.editor, kHere, 1);
    EXPECT_EQ(data.loopEnd, 40u);
    for (int i = 0; i < 50; ++i) StepLoopStart(rig.editor, kHere, 1);
    EXPECT_EQ(data.loopStart, 36u);              // two frames before the end
    for (int i = 0; i < 50; ++i) StepLoopEnd(rig.editor, kHere, -1);
    EXPECT_EQ(data.loopEnd, 36u);
    EXPECT_EQ(rig.LastStep(), "loop end");
}

// What is heard at the seam: the step from the loop's last frame to its first, against the largest inside.
TEST(SampleLoops, ACrossfadedLoopHasNoClick) {
    for (const int channels : {1, 2}) {
        Rig rig(SineWave(4000, channels, 16384, 90), channels, {VTSAMPLE_LOOP_FORDWARD, 1000, 2578});
        const auto seam = [&] {
            const SampleData& data = *rig.Object().data;
            return std::abs(rig.Wave()[data.loopEnd - static_cast<unsigned>(channels)] - rig.Wave()[data.loopStart]);
        };
        ASSERT_GT(seam(), 5000);
        EXPECT_EQ(CrossfadeLoop(rig.editor, kHere, 500), LoopWork::Done);
        EXPECT_LT(seam(), 1300);
        rig.editor.Steps().Undo();
        ASSERT_GT(seam(), 5000);
        EXPECT_EQ(FindLoopEnd(rig.editor, kHere), LoopWork::Done);
        const SampleData& data = *rig.Object().data;
        EXPECT_EQ((data.loopEnd - data.loopStart) / static_cast<unsigned>(channels) % 90, 0u);
        EXPECT_LT(seam(), 1300);
    }
    Rig rig(SineWave(100), 1, {VTSAMPLE_LOOP_FORDWARD, 0, 50});
    EXPECT_EQ(CrossfadeLoop(rig.editor, kHere, 10), LoopWork::NothingBefore);
    SetLoopType(rig.editor, kHere, VTSAMPLE_LOOP_PINGPONG);
    EXPECT_EQ(CrossfadeLoop(rig.editor, kHere, 10), LoopWork::NoLoop);
}

TEST(SampleRate, ANewRateKeepsPitchLoopAndLevel) {
    Rig rig(SineWave(44100, 1, 16000, 100), 1, {VTSAMPLE_LOOP_FORDWARD, 4000, 40000});
    TuneSample(rig.Object(), 44100);
    rig.Select(8000, 12000);
    const Values before = rig.Wave();
    EXPECT_EQ(ResampleWork::Begin(rig.GetSong(), kHere, 44100), nullptr);
    EXPECT_EQ(ResampleWork::Begin(rig.GetSong(), kHere, 999), nullptr);
    auto work = ResampleWork::Begin(rig.GetSong(), kHere, 22050);
    while (work->Work(rig.editor, 1) == ResampleWork::State::Working) {}
    EXPECT_NEAR(rig.Object().Count(), 22050, 1);
    EXPECT_NEAR(rig.Object().data->loopStart, 2000, 1);
    EXPECT_NEAR(rig.Object().data->loopEnd, 20000, 1);
    EXPECT_NEAR(rig.Object().selEnd, 6000, 1);
    EXPECT_NEAR(RateOf(rig.Object()), 22050, 15);
    float peak = 0;
    int crossings = 0;
    const Values after = rig.Wave();
    for (std::size_t i = 2000; i < 20000; ++i) {
        peak = std::max(peak, after[i]);
        crossings += after[i] < 0 && after[i + 1] >= 0;
    }
    EXPECT_NEAR(peak, 16000, 40);           // the crest may fall between two frames
    EXPECT_NEAR(crossings, 360, 1);              // 18000 frames of 50
    rig.editor.Steps().Undo();
    EXPECT_EQ(rig.Wave(), before);
    EXPECT_NEAR(RateOf(rig.Object()), 44100, 30);

    work = ResampleWork::Begin(rig.GetSong(), kHere, 96000);
    work->Work(rig.editor, 0);
    rig.Use(WaveTool::Reverse);                  // another wave stands there now
    EXPECT_EQ(work->Work(rig.editor, 1000), ResampleWork::State::Failed);
}

TEST(SampleWhole, SignAndMonoKeepTheirPoints) {
    Rig rig({100, 300, -100, -300, 40, 60}, 2, {VTSAMPLE_LOOP_PINGPONG, 1, 3});
    const Values wave = rig.Wave();
    ToggleSign(rig.editor, kHere);
    EXPECT_EQ(rig.Wave()[0], -32668);
    ToggleSign(rig.editor, kHere);
    EXPECT_EQ(rig.Wave(), wave);
    ToMono(rig.editor, kHere);
    EXPECT_EQ(rig.Wave(), (Values{200, -200, -200}));
    EXPECT_EQ(rig.Object().data->loopStart, 1u);
    EXPECT_EQ(rig.Object().data->loopEnd, 3u);
    EXPECT_EQ(rig.Object().data->loopType, VTSAMPLE_LOOP_PINGPONG);
    ScaleWave(rig.editor, kHere, 0.5f);
    EXPECT_EQ(rig.Wave(), (Values{100, -100, -100}));
    EXPECT_EQ(rig.editor.Steps().UndoCount(), 4u);
}

}  // namespace
}  // namespace vonta
