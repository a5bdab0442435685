#include <gtest/gtest.h>

#include <limits>

#include "tests/support/SoundRig.h"

namespace vonta::test {
namespace {

TEST(Master, AmplifiesAndClipsWhatWasUsed) {
    struct Case { float value, amp, want; };
    const float inf = std::numeric_limits<float>::infinity(), nan = std::numeric_limits<float>::quiet_NaN();
    const Case cases[] = {
        {40000, 1, 32764}, {-40000, 1, -32764}, {32764, 1, 32764}, {100, 2.5f, 250}, {20000, 2, 32764},
        {inf, 1, 32764},   {nan, 1, 0},         {100, nan, 0},
    };
    for (const Case& c : cases) {
        SoundRig rig;
        rig.mixer->masterAmp = c.amp;
        rig.Track(0, c.value, 0).groupOutput = 1;
        rig.Block(9);
        rig.mixer->FinishBlock(9, 0);
        for (int frame = 0; frame < 9; ++frame) EXPECT_EQ(rig.mixer->outputs[0][2 * frame], c.want) << c.value;
    }
}

TEST(Master, ASilentPairIsClearedOnceAndThenLeftAlone) {
    SoundRig rig;
    auto& mixer = *rig.mixer;
    Channel& channel = rig.Track(0, 100, 100);
    channel.groupOutput = 1;
    rig.Block(8);
    mixer.FinishBlock(8, 0);
    EXPECT_EQ(mixer.finalBuffer[0][0], 100);
    EXPECT_EQ(mixer.finalZeroed[0], 0);
    channel.active = 0;
    rig.Block(4);
    mixer.FinishBlock(4, 0);
    EXPECT_EQ(mixer.finalBuffer[0], StereoBuffer{});
    mixer.finalBuffer[0][0] = 1;                   // seen only if somebody writes again
    rig.Block(4);
    mixer.FinishBlock(4, 0);
    EXPECT_EQ(mixer.finalBuffer[0][0], 1);
    channel.active = 1;
    rig.Block(4);
    mixer.FinishBlock(4, 0);
    EXPECT_EQ(mixer.finalBuffer[0][0], 100);
}

TEST(Master, SlotsWorkOnTheMainOutputInOrderAtItsScale) {
    SoundRig rig;
    TestEffect& first = rig.Effect(8);
    TestEffect& second = rig.Effect(9);
    first.gain = 2;
    rig.Track(0, 100, 200).groupOutput = 1;
    rig.Block(6);
    rig.mixer->FinishBlock(6, 0);
    EXPECT_EQ(first.input[0], 100);
    EXPECT_EQ(second.input[1], 400);
    EXPECT_EQ(rig.mixer->fxBuffer[8][1], 400);
    EXPECT_EQ(rig.mixer->fxBuffer[9][11], 400);
    EXPECT_EQ(rig.mixer->fxBuffer[9][12], 0);
    EXPECT_EQ(rig.mixer->finalBuffer[0][0], 200);
}

TEST(Master, ASlotHearsSilenceOnAnUnusedOutputAndMonoOnesDoNotRun) {
    SoundRig rig;
    rig.mixer->outputBuffer[0].fill(5);
    TestEffect& mono = rig.Effect(8, false, true);
    TestEffect& stereo = rig.Effect(9);
    rig.mixer->fxBuffer[8].fill(5);
    rig.Block(6);
    rig.mixer->FinishBlock(6, 0);
    EXPECT_TRUE(mono.silent.empty());
    EXPECT_EQ(stereo.silent, std::vector<int>{0});
    EXPECT_EQ(stereo.input, std::vector<float>(12, 0.0f));
    EXPECT_EQ(rig.mixer->fxBuffer[8][11], 0);
    EXPECT_EQ(rig.mixer->outputUsed[0], 1);
}

TEST(Master, TellsTheTimeToTheFirstSixteenMidiOutputs) {
    SoundRig rig;
    for (const int port : {0, 15, 16}) rig.mixer->midiOut[port] = std::make_unique<FlushCounter>();
    rig.Block();
    rig.mixer->FinishBlock(16, 1234);
    const auto flushes = [&rig](int port) { return static_cast<FlushCounter&>(*rig.mixer->midiOut[port]).flushes; };
    EXPECT_EQ(flushes(0), std::vector<std::uint32_t>{1234});
    EXPECT_EQ(flushes(15), std::vector<std::uint32_t>{1234});
    EXPECT_TRUE(flushes(16).empty());
}

}  // namespace
}  // namespace vonta::test
