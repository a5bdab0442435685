#include "song/Sample.h"

#include <gtest/gtest.h>

#include <limits>

#include "tests/support/LogCapture.h"
#include "tests/support/SongBuilder.h"

namespace vonta {
namespace {

using Values = std::vector<float>;

Values WaveOf(const Sample& sample) { return Values(sample.Wave(), sample.Wave() + sample.Count()); }

std::unique_ptr<Sample> Selected(const Values& values, int start, int end, int channels = 1) {
    auto sample = MakeSample(values, channels, {VTSAMPLE_LOOP_FORDWARD, 1, 2});
    sample->selStart = start;
    sample->selEnd = end;
    sample->selActive = 1;
    return sample;
}

TEST(Sample, AWaveStandsBetweenZeros) {
    Sample sample;
    sample.SetData(Values{1, 2, 3, 4}, 2);
    EXPECT_EQ(Values(sample.Wave() - 2, sample.Wave() + 10), (Values{0, 0, 1, 2, 3, 4, 0, 0, 0, 0, 0, 0}));
    EXPECT_EQ(sample.Channels(), 2);
    sample.SetData({sample.Wave() + 1, 2}, 1);   // out of the wave that it replaces
    EXPECT_EQ(WaveOf(sample), (Values{2, 3}));
    EXPECT_EQ(sample.Channels(), 1);
    for (const float value : sample.Allocate(3, 1)) EXPECT_EQ(value, 0);
}

TEST(Sample, TheCheckRepeatsTheValueBeforeTheLastOfAMonoWave) {
    const struct { Values wave; int channels; Values seen; } cases[] = {
        {{5, 6, 7}, 1, {5, 6, 6, 6, 6, 0}},
        {{9}, 1, {0, 0, 0, 0}},
        {{5, 6, 7, 8}, 2, {5, 6, 7, 8, 0, 0, 0}},
    };
    for (const auto& [wave, channels, seen] : cases) {
        const auto sample = MakeSample(wave, channels);
        sample->Validate();
        EXPECT_EQ(Values(sample->Wave(), sample->Wave() + seen.size()), seen);
    }
}

TEST(Sample, AWaveOfNoLengthHasNoLoop) {
    LogCapture log;
    const auto sample = MakeSample({}, 1, {VTSAMPLE_LOOP_PINGPONG, 3, 9});
    sample->Validate();
    EXPECT_EQ(log.Text(), "sample without lenght\n");
    EXPECT_EQ(sample->data->loopType, VTSAMPLE_LOOP_NONE);
    EXPECT_EQ(sample->data->loopEnd, 0u);
    Sample().Validate();   // no wave at all: not a word
    EXPECT_EQ(log.Text(), "sample without lenght\n");
}

TEST(Sample, EditsTakeTheSelectionAndResetLoopAndSelection) {
    struct Case {
        const char* name;
        void (*edit)(Sample&);
        int start, end;
        Values wave;
        int selEnd;
    };
    const auto cut = [](Sample& sample) { sample.Cut(); };
    const auto remove = [](Sample& sample) { sample.Delete(); };
    const auto crop = [](Sample& sample) { sample.Crop(); };
    const auto paste = [](Sample& sample) { sample.Paste({{8, 9}, 1}); };
    const Case cases[] = {
        {"cut", cut, 1, 3, {1, 4, 4}, 2},
        {"delete", remove, 1, 3, {1, 4, 4}, 2},
        {"delete to far behind the end", remove, 3, 99, {1, 2, 2}, 2},
        {"delete from before the start", remove, -7, 2, {3, 4, 4}, 2},
        {"delete of a turned selection", remove, 3, 1, {1, 2, 3, 4, 4}, 4},
        {"delete of nothing", remove, 2, 2, {1, 2, 3, 4, 4}, 4},
        {"delete of all", remove, 0, 5, {}, -1},
        {"crop", crop, 1, 4, {2, 3, 3}, -1},
        {"paste", paste, 1, 3, {1, 8, 9, 2, 3, 4, 4}, 6},
        {"paste at the end", paste, 5, 5, {1, 2, 3, 4, 5, 8, 8}, 6},
    };
    for (const auto& [name, edit, start, end, wave, selEnd] : cases) {
        const auto sample = Selected({1, 2, 3, 4, 5}, start, end);
        edit(*sample);
        EXPECT_EQ(WaveOf(*sample), wave) << name;
        EXPECT_EQ(sample->data->loopStart, 0u) << name;
        EXPECT_EQ(sample->data->loopEnd, wave.empty() ? 0u : wave.size() - 1) << name;
        EXPECT_EQ(sample->selActive, 0) << name;
        EXPECT_EQ(sample->selStart, 0) << name;
        EXPECT_EQ(sample->selEnd, selEnd) << name;
    }
}

TEST(Sample, EditsThatDoNotApplyChangeNothing) {
    struct Case {
        const char* name;
        void (*edit)(Sample&);
        int start, end, active;
    };
    const Case cases[] = {
        {"cut without selection", [](Sample& sample) { EXPECT_TRUE(sample.Cut().values.empty()); }, 1, 3, 0},
        {"copy without selection", [](Sample& sample) { EXPECT_TRUE(sample.Copy().values.empty()); }, 1, 3, 0},
        {"delete without selection", [](Sample& sample) { sample.Delete(); }, 1, 3, 0},
        {"crop without selection", [](Sample& sample) { sample.Crop(); }, 1, 3, 0},
        {"paste without selection", [](Sample& sample) { sample.Paste({{8}, 1}); }, 1, 3, 0},
        {"crop to nothing", [](Sample& sample) { sample.Crop(); }, 2, 2, 1},
        {"paste nothing", [](Sample& sample) { sample.Paste({{}, 1}); }, 1, 3, 1},
        {"paste stereo into mono", [](Sample& sample) { sample.Paste({{8, 9}, 2}); }, 1, 3, 1},
        {"copy", [](Sample& sample) { EXPECT_EQ(sample.Copy().values, (Values{2, 3})); }, 1, 3, 1},
    };
    for (const auto& [name, edit, start, end, active] : cases) {
        const auto sample = Selected({1, 2, 3, 4, 5}, start, end);
        sample->selActive = active;
        edit(*sample);
        EXPECT_EQ(WaveOf(*sample), (Values{1, 2, 3, 4, 5})) << name;
        EXPECT_EQ(sample->data->loopEnd, 2u) << name;
        EXPECT_EQ(sample->selStart, start) << name;
        EXPECT_EQ(sample->selEnd, end) << name;
        EXPECT_EQ(sample->selActive, active) << name;
    }
}

TEST(Sample, CuttingAndPastingBackRestoresAStereoWave) {
    const Values wave = {1, -1, 2, -2, 3, -3, 4, -4};
    const auto sample = Selected(wave, 2, 6, 2);
    const SampleClip clip = sample->Cut();
    EXPECT_EQ(clip.values, (Values{2, -2, 3, -3}));
    EXPECT_EQ(clip.channels, 2);
    sample->selStart = sample->selEnd = 2;
    sample->selActive = 1;
    sample->Paste(clip);
    EXPECT_EQ(WaveOf(*sample), wave);
}

TEST(Sample, ToggleSignIsUndoneByItself) {
    const Values wave = {0, 1, -1, 32767, -32768, 256.5f, 3, 3};
    const auto sample = MakeSample(wave);
    sample->ToggleSign();
    EXPECT_EQ(WaveOf(*sample), (Values{-32768, -32767, 32767, -1, 0, -32511.5f, -32765, -32765}));
    sample->ToggleSign();
    EXPECT_EQ(WaveOf(*sample), wave);
}

TEST(Sample, DepthIsTheSmallestThatLosesNothing) {
    constexpr float infinity = std::numeric_limits<float>::infinity();
    const struct { Values wave; bool eight, sixteen; } cases[] = {
        {{}, true, true},
        {{0, 256, -256, -32768, 32512}, true, true},
        {{255}, false, true},
        {{-1, 32767}, false, true},
        {{0.5f}, false, false},
        {{32768}, false, false},
        {{-65536}, false, false},
        {{1e30f}, false, false},
        {{infinity}, false, false},
        {{std::numeric_limits<float>::quiet_NaN()}, false, false},
    };
    for (const auto& [wave, eight, sixteen] : cases) {
        const auto sample = MakeSample(wave);
        EXPECT_EQ(sample->IsEightBit(), eight) << testing::PrintToString(wave);
        EXPECT_EQ(sample->IsSixteenBit(), sixteen) << testing::PrintToString(wave);
    }
    EXPECT_TRUE(Sample().IsEightBit());
}

TEST(SampleClone, PlaysItsTargetWithItsOwnLoop) {
    const auto target = MakeSample({1, 2, 3, 4}, 2, {VTSAMPLE_LOOP_FORDWARD, 0, 2});
    const auto clone = MakeSample({7, 7, 7}, 1, {VTSAMPLE_LOOP_PINGPONG, 1, 3});
    clone->Link(target->data, 5);
    EXPECT_EQ(WaveOf(*clone), (Values{1, 2, 3, 4}));
    EXPECT_EQ(clone->Channels(), 2);
    EXPECT_EQ(clone->data->loopType, VTSAMPLE_LOOP_PINGPONG);
    target->SetData(Values{8, 9}, 1);
    EXPECT_EQ(WaveOf(*clone), (Values{8, 9}));
}

TEST(SampleClone, IsEmptyUntilLinkedAndWhenItsTargetIsGone) {
    auto target = MakeSample({1, 2});
    const auto clone = MakeSample({7, 7, 7});
    clone->MakeClone();
    EXPECT_TRUE(clone->data->isClone);
    EXPECT_EQ(clone->Count(), 0u);
    EXPECT_EQ(clone->Wave(), nullptr);
    clone->Link(target->data, 0);
    target.reset();
    EXPECT_EQ(clone->Count(), 0u);
    EXPECT_EQ(clone->Wave(), nullptr);
    clone->ToggleSign();
    clone->Validate();
    EXPECT_EQ(clone->Duplicate()->Count(), 0u);
}

TEST(SampleClone, ItsTargetCountsIt) {
    const auto first = MakeSample({1}), second = MakeSample({2});
    {
        const auto clone = MakeSample({}), other = MakeSample({});
        clone->Link(first->data, 0);
        other->Link(first->data, 0);
        EXPECT_EQ(first->data->refCount, 2u);
        clone->Link(second->data, 0);
        EXPECT_EQ(first->data->refCount, 1u);
        EXPECT_EQ(second->data->refCount, 1u);
        clone->Unlink();
        EXPECT_EQ(second->data->refCount, 0u);
    }
    EXPECT_EQ(first->data->refCount, 0u);
}

TEST(SampleClone, ChainsAreFollowedToTheEndAndRingsAreEmpty) {
    LogCapture log;
    const auto wave = MakeSample({1, 2}), middle = MakeSample({}), last = MakeSample({});
    middle->Link(wave->data, 0);
    EXPECT_EQ(log.Text(), "");
    last->Link(middle->data, 0);
    EXPECT_EQ(log.Text(), "warning: trying to link to a clone sample\n");
    EXPECT_EQ(middle->data->refCount, 0u);
    EXPECT_EQ(WaveOf(*last), (Values{1, 2}));
    middle->Link(last->data, 0);
    EXPECT_EQ(last->Wave(), nullptr);
    EXPECT_EQ(last->Count(), 0u);
    last->Unlink();
    EXPECT_TRUE(log.Has("warning: trying to unlink from a clone sample\n"));
}

TEST(SampleClone, AnEditGivesItAWaveOfItsOwnAndLeavesTheTarget) {
    const auto target = MakeSample({1, 2, 3, 4});
    const auto clone = Selected({}, 0, 2);
    clone->Link(target->data, 0);
    EXPECT_EQ(clone->Cut().values, (Values{1, 2}));
    EXPECT_EQ(WaveOf(*clone), (Values{3, 3}));
    EXPECT_EQ(WaveOf(*target), (Values{1, 2, 3, 4}));
    EXPECT_EQ(target->data->refCount, 0u);
    EXPECT_FALSE(clone->data->isClone);
}

TEST(SampleClone, ItsDuplicateIsAPlainSampleWithTheWave) {
    const auto target = MakeSample({1, 2, 2});
    const auto clone = MakeSample({}, 1, {VTSAMPLE_LOOP_FORDWARD, 1, 2});
    clone->Link(target->data, 0);
    clone->toneRel = -3;
    clone->fineTune = 4;
    clone->panning = 9;
    clone->SetName("kick");
    clone->selActive = 1;
    const auto copy = clone->Duplicate();
    EXPECT_FALSE(copy->data->isClone);
    EXPECT_EQ(WaveOf(*copy), (Values{1, 2, 2}));
    EXPECT_NE(copy->Wave(), target->Wave());
    EXPECT_EQ(copy->data->loopType, VTSAMPLE_LOOP_FORDWARD);
    EXPECT_EQ(copy->data->loopEnd, 2u);
    EXPECT_EQ(copy->toneRel, -3);
    EXPECT_EQ(copy->fineTune, 4);
    EXPECT_EQ(copy->panning, 9);
    EXPECT_EQ(copy->volume, 128);
    EXPECT_EQ(copy->name, "kick");
    EXPECT_EQ(copy->selActive, 1);
}

}  // namespace
}  // namespace vonta
