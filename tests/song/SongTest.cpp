#include "song/Song.h"

#include <gtest/gtest.h>

#include "tests/support/LogCapture.h"
#include "tests/support/SongBuilder.h"

namespace vonta {
namespace {

// Two instruments with two samples each, whose waves tell their number.
std::unique_ptr<Song> FourSamples() {
    SongBuilder builder;
    for (int i = 0; i < 2; ++i) {
        builder.SampleInstrument(i, {10.0f * static_cast<float>(i), 1});
        builder.Edit().GetInstrument(i)->AddSample(MakeSample({10.0f * static_cast<float>(i) + 1, 1}));
    }
    return builder.Build();
}

Sample& SampleOf(const Song& song, int instrument, int sample) {
    return *song.GetInstrument(instrument)->GetSample(sample);
}

TEST(Song, ANewSongHasOnePatternAndTheNextOneComesBehindIt) {
    const auto song = Song::MakeDefault();
    EXPECT_EQ(song->numChannels, 10);
    EXPECT_EQ(song->length, 1u);
    EXPECT_EQ(song->GetPattern(0)->Rows(), 64);
    EXPECT_EQ(song->AddPattern(std::make_unique<Pattern>()), 1);
}

TEST(Song, AppendingGoesByTheCountAndStopsAtTheLastPlace) {
    Song song;
    song.SetPattern(5, std::make_unique<Pattern>());
    for (int i = 0; i < kMaxPatterns; ++i) EXPECT_EQ(song.AddPattern(nullptr), i);
    EXPECT_EQ(song.AddPattern(std::make_unique<Pattern>()), -1);
    for (int i = 0; i < kMaxInstruments; ++i) EXPECT_EQ(song.AddInstrument(nullptr), i);
    EXPECT_EQ(song.AddInstrument(std::make_unique<Instrument>()), -1);
}

TEST(Song, NumbersOutsideFindAndChangeNothing) {
    const auto song = FourSamples();
    for (const int number : {-1, 256, 1000000}) {
        song->SetPattern(number, std::make_unique<Pattern>());
        song->SetInstrument(number, nullptr);
        song->SetSynth(number, nullptr);
        song->SetPatternPosIndex(number, 1);
        song->SetPatternPosIndex(0, number);
        song->SwapInstruments(0, number);
        song->SwapSamples(0, 0, 1, number);
        song->SwapSamples(number, 0, 1, 0);
        song->LinkSample(number, 0, 1, 0);
        EXPECT_EQ(song->GetPattern(number), nullptr);
        EXPECT_EQ(song->GetInstrument(number), nullptr);
        EXPECT_EQ(song->GetSynth(number), nullptr);
        EXPECT_EQ(song->GetPatternPosIndex(number), 0);
        EXPECT_EQ(song->GetPatternPosIndex(0), 0);
    }
    EXPECT_EQ(song->CountInstruments(), 2);
    EXPECT_EQ(song->CountSamples(), 4);
}

TEST(Song, SamplesAreSwappedOnlyBetweenSampleInstruments) {
    const auto song = FourSamples();
    song->SwapSamples(0, 1, 1, 0);
    EXPECT_EQ(SampleOf(*song, 0, 1).Wave()[0], 10);
    EXPECT_EQ(SampleOf(*song, 1, 0).Wave()[0], 1);
    song->GetInstrument(1)->kind = 1;
    song->SwapSamples(0, 1, 1, 0);
    EXPECT_EQ(SampleOf(*song, 0, 1).Wave()[0], 10);
}

TEST(SongLink, ACloneTakesWaveAndPlayingDefaults) {
    const auto song = FourSamples();
    Sample& source = SampleOf(*song, 1, 1);
    source.fineTune = 3;
    source.toneRel = -2;
    source.panning = 200;
    source.volume = 64;
    source.data->loopType = VTSAMPLE_LOOP_PINGPONG;
    source.data->loopStart = 1;
    source.data->loopEnd = 2;

    Sample& clone = SampleOf(*song, 0, 0);
    song->LinkSample(0, 0, 1, 1);
    EXPECT_EQ(clone.Wave()[0], 0) << "a plain sample is not linked";

    clone.MakeClone();
    song->LinkSample(0, 0, 0, 0);
    EXPECT_EQ(clone.Wave(), nullptr) << "nor to itself";

    song->LinkSample(0, 0, 1, 1);
    EXPECT_EQ(clone.Wave(), source.Wave());
    EXPECT_EQ(clone.data->cloneId, 0x101u);
    EXPECT_EQ(clone.fineTune, 3);
    EXPECT_EQ(clone.toneRel, -2);
    EXPECT_EQ(clone.panning, 200);
    EXPECT_EQ(clone.volume, 64);
    EXPECT_EQ(clone.data->loopType, VTSAMPLE_LOOP_PINGPONG);
    EXPECT_EQ(clone.data->loopStart, 1u);
    EXPECT_EQ(clone.data->loopEnd, 2u);
}

TEST(SongLink, ToACloneGoesToWhatThatOnePlays) {
    LogCapture log;
    const auto song = FourSamples();
    Sample &first = SampleOf(*song, 0, 0), &second = SampleOf(*song, 0, 1);
    first.MakeClone();
    second.MakeClone();
    song->LinkSample(0, 0, 1, 1);
    song->LinkSample(0, 1, 0, 0);
    EXPECT_EQ(second.data->cloneOf.lock(), SampleOf(*song, 1, 1).data);
    EXPECT_EQ(second.data->cloneId, 0x101u);
    EXPECT_FALSE(log.Has("FATAL"));

    SampleOf(*song, 1, 1).MakeClone();
    SampleOf(*song, 1, 1).Link(SampleOf(*song, 1, 0).data, 0x100);
    song->LinkSample(0, 1, 0, 0);
    EXPECT_TRUE(log.Has("FATAL ASSERT: dangerous link (clone sample linked to another one)\n"));
    EXPECT_EQ(second.Wave(), SampleOf(*song, 1, 0).Wave());
}

TEST(SongLink, ToNothingLeavesAnEmptyCloneThatRemembersTheNumber) {
    const auto song = FourSamples();
    Sample &first = SampleOf(*song, 0, 0), &second = SampleOf(*song, 0, 1);
    first.MakeClone();
    second.MakeClone();
    song->LinkSample(0, 0, 1, 9);
    EXPECT_EQ(first.Wave(), nullptr);
    EXPECT_EQ(first.data->cloneId, 0x109u);
    song->LinkSample(0, 1, 0, 0);
    EXPECT_EQ(second.Wave(), nullptr);
    EXPECT_EQ(second.data->cloneId, 0x109u);
}

TEST(SongCheck, BringsEveryCountAndRangeInsideItsLimits) {
    constexpr std::uint32_t huge = 0xFFFFFFFF;
    struct Case {
        const char* name;
        void (*spoil)(Song&);
        bool (*repaired)(const Song&);
    };
    constexpr Case cases[] = {
        {"fast", [](Song& s) { s.bpm = 256; }, [](const Song& s) { return s.bpm == 255; }},
        {"slow", [](Song& s) { s.bpm = 31; }, [](const Song& s) { return s.bpm == 32; }},
        {"no ticks", [](Song& s) { s.tempo = 0; }, [](const Song& s) { return s.tempo == 1; }},
        {"many ticks", [](Song& s) { s.tempo = huge; }, [](const Song& s) { return s.tempo == 31; }},
        {"many channels", [](Song& s) { s.numChannels = 65; }, [](const Song& s) { return s.numChannels == 64; }},
        {"negative channels", [](Song& s) { s.numChannels = -1; }, [](const Song& s) { return s.numChannels == 0; }},
        {"instruments", [](Song& s) { s.numInstruments = 129; }, [](const Song& s) { return s.numInstruments == 128; }},
        {"long", [](Song& s) { s.length = huge; }, [](const Song& s) { return s.length == 256; }},
        {"empty", [](Song& s) { s.length = 0; s.restartPos = 4; },
         [](const Song& s) { return s.length == 1 && s.restartPos == 0; }},
        {"restart", [](Song& s) { s.length = 3; s.restartPos = 3; }, [](const Song& s) { return s.restartPos == 2; }},
        {"patterns", [](Song& s) { s.numPatterns = 257; }, [](const Song& s) { return s.numPatterns == 256; }},
        {"negative patterns", [](Song& s) { s.numPatterns = -1; }, [](const Song& s) { return s.numPatterns == 0; }},
    };
    for (const auto& [name, spoil, repaired] : cases) {
        const auto song = Song::MakeDefault();
        spoil(*song);
        song->Validate();
        EXPECT_TRUE(repaired(*song)) << name;
    }
}

}  // namespace
}  // namespace vonta
