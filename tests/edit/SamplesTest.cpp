// What is loaded into a slot, and what the slot keeps.
#include <gtest/gtest.h>

#include "edit/Instruments.h"
#include "edit/Samples.h"
#include "tests/support/SongBuilder.h"

namespace vonta {
namespace {

constexpr Place kFirst{0, 0, 0, 0, 0, 0, 0};

std::unique_ptr<Sample> Loaded() {
    auto sample = MakeSample(SineWave(64));
    sample->volume = 0;                          // as loaders leave it
    sample->toneRel = 5;                         // tuned to the file's rate
    return sample;
}

TEST(Samples, WhatIsLoadedIsHeardAndTakesThePitchOfWhatItReplaces) {
    SndPlayer player;
    player.SetSong(nullptr);
    Editor editor(player);
    const auto slot = [&] { return player.GetSong().GetInstrument(0)->GetSample(0); };
    LoadIntoSlot(editor, kFirst, Loaded(), "no instrument was there");
    EXPECT_EQ(slot()->volume, kMaxVolume);
    EXPECT_EQ(slot()->toneRel, 5);
    DeleteInstrument(editor, kFirst);
    EnsureInstrument(editor, kFirst, 0).GetSample(0);
    EXPECT_TRUE(IsSampleSlotEmpty(player.GetSong(), 0, 0)) << "a new instrument's sample has no wave";
    slot()->toneRel = -3;
    LoadIntoSlot(editor, kFirst, Loaded(), "into the empty sample");
    EXPECT_EQ(slot()->toneRel, 5);
    slot()->toneRel = -12;
    EXPECT_FALSE(IsSampleSlotEmpty(player.GetSong(), 0, 0));
    LoadIntoSlot(editor, kFirst, Loaded(), "over a wave");
    EXPECT_EQ(slot()->toneRel, -12);
    EXPECT_EQ(slot()->volume, kMaxVolume);
    slot()->volume = 33;
    Place second = kFirst;
    second.sample = 1;
    CopySample(editor, second, 0, 0);
    EXPECT_EQ(player.GetSong().GetInstrument(0)->GetSample(1)->volume, 33) << "a copy keeps its own values";
    EXPECT_EQ(player.GetSong().GetInstrument(0)->GetSample(1)->toneRel, -12);
}

}  // namespace
}  // namespace vonta
