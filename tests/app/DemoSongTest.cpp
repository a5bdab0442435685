#include "tools/DemoSong.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <stdexcept>

#include "engine/SndPlayer.h"
#include "tools/DemoInstruments.h"
#include "tools/DemoScore.h"

namespace vonta {
namespace {

TEST(DemoSong, IsASongOfSomeLengthThatDoesNotClip) {
    SndPlayer player;
    player.SetSong(ComposeDemoSong());
    EXPECT_GE(player.GetSong().numChannels, 12);
    player.SetStopAtEnd(true);
    player.PerformPlay(0);
    float peak = 0;
    long frames = 0;
    for (bool ended = false; !ended; frames += kRenderFrames) {
        ended = player.Render(kRenderFrames);
        const auto& block = player.GetMixer().finalBuffer[0];
        for (int i = 0; i < 2 * kRenderFrames; ++i) peak = std::max(peak, std::abs(block[static_cast<std::size_t>(i)]));
        ASSERT_LT(frames, 44100 * 180);
    }
    EXPECT_GE(frames, 44100 * 75);
    EXPECT_GT(peak, 32768 * 0.708);                  // -3 dB
    EXPECT_LT(peak, 32768 * 0.891);                  // -1 dB
}

TEST(DemoSong, LoopsCloseAndTonesAreInTune) {
    const auto song = ComposeDemoSong();
    int loops = 0;
    for (int i = 0; i < song->numInstruments; ++i)
        for (int s = 0; s < song->GetInstrument(i)->numSamples; ++s) {
            const Sample& sample = *song->GetInstrument(i)->GetSample(s);
            if (sample.data->loopType == VTSAMPLE_LOOP_NONE) continue;
            ++loops;
            const auto channels = static_cast<std::uint32_t>(sample.Channels());
            const float* wave = sample.Wave();
            EXPECT_EQ(sample.Count() / channels % 256, 0u) << sample.name;
            // What follows the last frame is the first one: the step between them is none that a cycle has not.
            float step = 0;
            for (std::uint32_t at = channels; at < sample.Count(); ++at)
                step = std::max(step, std::abs(wave[at] - wave[at - channels]));
            const bool oneCycle = sample.Count() == 256 * channels;   // nothing to compare with
            EXPECT_TRUE(oneCycle || std::abs(wave[0] - wave[sample.Count() - channels]) <= 1.25f * step) << sample.name;
            // A-4 is 440 Hz at 256 frames a cycle. Three cents are 0.17 %.
            const double rate = PeriodToFrequency(NoteToPeriod(57 + sample.toneRel, sample.fineTune));
            EXPECT_NEAR(rate / 256, 440, 0.8) << sample.name;
        }
    EXPECT_GE(loops, 5);
}

TEST(DemoScore, ReadsItsNotationAndRefusesWhatIsNone) {
    demo::Score score(64, 2);
    score.Phrase(0, {0, 3, 40}, "C4:2 /Bb3 ^F#5:6~ . =");
    EXPECT_EQ(score.At(0, 0), (Cell{48, 4, 40, 0, 0}));
    EXPECT_EQ(score.At(2, 0).note, 46);
    EXPECT_EQ(score.At(2, 0).effect, 3);
    EXPECT_EQ(score.At(3, 0).note, 66);
    EXPECT_EQ(score.At(3, 0).volume, 50);
    EXPECT_EQ(score.At(5, 0).effect, 0);
    EXPECT_EQ(score.At(8, 0).effect, 4);
    EXPECT_EQ(score.At(10, 0).note, kNoteOff);
    score.Echo(0, {1, 5, 0}, 3, 0.5f);
    EXPECT_EQ(score.At(3, 1), (Cell{48, 6, 20, 0, 0}));
    for (const char* bad : {"H4", "C8", "C", "C4:", "C4:0", "C4:x", "Cb"})
        EXPECT_THROW(score.Phrase(0, {0, 0, 0}, bad), std::invalid_argument) << bad;
    EXPECT_THROW(score.Drums(0, 0, "?", {}), std::invalid_argument);
}

}  // namespace
}  // namespace vonta
