#include "formats/xm/LoaderXM.h"

#include <gtest/gtest.h>

#include <chrono>

#include "tests/support/ModuleBytes.h"
#include "tests/support/XmBuilder.h"

namespace vonta {
namespace {

using test::JoinLines;
using test::LoadBytes;
using test::Loaded;
using test::XmBuilder;
using test::XmInstrumentRecipe;
using test::XmPatternRecipe;
using test::XmSampleRecipe;

Loaded LoadXm(const XmBuilder& xm) { return LoadBytes(xm.Build()); }

XmBuilder WithPattern(XmPatternRecipe pattern, unsigned channels = 2) {
    XmBuilder xm;
    xm.channels = channels;
    xm.patterns = {std::move(pattern)};
    return xm;
}

XmBuilder WithSamples(std::vector<XmSampleRecipe> samples) {
    XmBuilder xm;
    xm.instruments.resize(1);
    xm.instruments[0].samples = std::move(samples);
    return xm;
}

Cell CellAt(const Loaded& loaded, int row, int track, int pattern = 0) {
    return loaded.song->GetPattern(pattern)->Read(row, track);
}

TEST(LoaderXM, CellsAreConverted) {
    const Cell empty;
    const struct { std::vector<std::uint8_t> bytes; Cell cell; } cases[] = {
        {{0x80}, empty},
        {{1, 1, 0, 0, 0}, {0, 1, kNoVolume, 0, 0}},
        {{0x81, 96}, {95, 0, kNoVolume, 0, 0}},
        {{0x81, 97}, {kNoteOff, 0, kNoVolume, 0, 0}},
        {{0, 128, 0, 0, 0}, {kNoNote, 128, kNoVolume, 0, 0}},
        {{0x84, 0x0F}, empty},
        {{0x84, 0x10}, {kNoNote, 0, 0, 0, 0}},
        {{0x84, 0x50}, {kNoNote, 0, 128, 0, 0}},
        {{0x84, 0x51}, empty},
        {{0x84, 0x5F}, empty},
        {{0x84, 0x60}, {kNoNote, 0, 0x8060, 0, 0}},
        {{0x84, 0xFF}, {kNoNote, 0, 0x80FF, 0, 0}},
        {{0x98, 0x0C, 0x40}, {kNoNote, 0, kNoVolume, 0x0C, 0x80}},
        {{0x98, 0x0C, 0xC1}, {kNoNote, 0, kNoVolume, 0x0C, 0x82}},
        {{0x98, 0x0F, 0x7F}, {kNoNote, 0, kNoVolume, 0x0F, 0x7F}},
        {{0x98, 0x10, 0x40}, {kNoNote, 0, kNoVolume, 0, 0x40}},
        {{0xFF, 2, 3, 0x20, 4, 5}, {1, 3, 32, 4, 5}},
    };
    for (const auto& c : cases) {
        auto bytes = c.bytes;
        bytes.push_back(0x81);                       // shows that the next cell starts where it should
        bytes.push_back(50);
        const auto loaded = LoadXm(WithPattern({1, bytes}));
        ASSERT_TRUE(loaded.song) << loaded.report.error;
        EXPECT_EQ(CellAt(loaded, 0, 0), c.cell) << int{c.bytes[0]} << " " << int{c.bytes.back()};
        EXPECT_EQ(CellAt(loaded, 0, 1).note, 49);
    }
}

TEST(LoaderXM, RowsAndPackingOutOfRuleFailWithThePatternsNumber) {
    const struct { unsigned rows, packing; const char* error; } cases[] = {
        {256, 0, ""},
        {257, 0, "pattern 1 has 257 rows, more than 256"},
        {65535, 0, "pattern 1 has 65535 rows, more than 256"},
        {64, 1, "pattern 1 has an unknown packing type"},
    };
    for (const auto& c : cases) {
        XmBuilder xm = WithPattern({64, {}});
        xm.patterns.push_back({c.rows, {}, 9, c.packing});
        const auto loaded = LoadXm(xm);
        EXPECT_EQ(loaded.report.error, c.error);
        ASSERT_EQ(loaded.song == nullptr, *c.error != '\0');
        if (loaded.song) {
            EXPECT_EQ(loaded.song->GetPattern(1)->rows, 256);
        }
    }
}

TEST(LoaderXM, SamplesAreDecodedAndScaled) {
    std::vector<std::uint8_t> sixteen(1000);
    sixteen[1] = 0x40;                               // 16384, then constant
    const auto loaded = LoadXm(WithSamples({
        {.name = "eight", .wave = {1, 126, 1, 128}, .loopStart = 1, .loopLength = 2, .volume = 64, .fineTune = 0xF0,
         .type = 2, .panning = 7, .relativeNote = 0xFE},
        {.name = "sixteen", .wave = sixteen, .loopStart = 100, .loopLength = 200, .volume = 255, .type = 0x11},
        {.name = "none", .wave = {}, .volume = 3, .type = 3},
    }));
    ASSERT_TRUE(loaded.song) << loaded.report.error;
    const Instrument& instrument = *loaded.song->GetInstrument(0);
    ASSERT_EQ(instrument.numSamples, 3);

    const Sample& eight = *instrument.GetSample(0);
    ASSERT_EQ(eight.Count(), 4u);
    EXPECT_EQ(eight.Wave()[0], 256.0f);
    EXPECT_EQ(eight.Wave()[1], 127.0f * 256);
    EXPECT_EQ(eight.Wave()[2], -128.0f * 256);       // the sum wraps in eight bits
    EXPECT_EQ(eight.bits, 8);
    EXPECT_EQ(eight.volume, 128);
    EXPECT_EQ(eight.fineTune, -16);
    EXPECT_EQ(eight.panning, 7);
    EXPECT_EQ(eight.toneRel, -2);
    EXPECT_EQ(eight.name, "eight");
    EXPECT_EQ(eight.data->loopType, VTSAMPLE_LOOP_PINGPONG);
    EXPECT_EQ(eight.data->loopStart, 1u);
    EXPECT_EQ(eight.data->loopEnd, 3u);

    const Sample& wide = *instrument.GetSample(1);
    ASSERT_EQ(wide.Count(), 500u);
    EXPECT_EQ(wide.Wave()[0], 16384.0f);
    EXPECT_EQ(wide.Wave()[499], 16384.0f);
    EXPECT_EQ(wide.bits, 16);
    EXPECT_EQ(wide.volume, 128);
    EXPECT_EQ(wide.data->loopStart, 50u);
    EXPECT_EQ(wide.data->loopEnd, 150u);

    EXPECT_EQ(instrument.GetSample(2)->Count(), 0u);
    EXPECT_EQ(instrument.GetSample(2)->volume, 6);
    EXPECT_EQ(instrument.GetSample(2)->data->loopType, VTSAMPLE_LOOP_NONE);
}

// What follows a record of odd size must be found all the same.
TEST(LoaderXM, SizesOfHeadersAreFollowedWhenTheyCanBeTrue) {
    const struct { const char* what; void (*change)(XmBuilder&); } cases[] = {
        {"pattern header with more fields", [](XmBuilder& xm) { xm.patterns[0].headerSize = 13; }},
        {"pattern header of no size", [](XmBuilder& xm) { xm.patterns[0].headerSize = 0; }},
        {"file header of no size", [](XmBuilder& xm) { xm.headerSize = 0; }},
        {"file header that points nowhere", [](XmBuilder& xm) { xm.headerSize = 0x7FFFFFFF; }},
        {"file header that points at no pattern", [](XmBuilder& xm) { xm.headerSize = 280; }},
        {"instrument without reserved bytes", [](XmBuilder& xm) { xm.instruments[1].reserved = 0; }},
        {"instrument with many", [](XmBuilder& xm) { xm.instruments[1].reserved = 300; }},
        {"instrument of no size", [](XmBuilder& xm) { xm.instruments[1].reserved = 0, xm.instruments[1].size = 0; }},
        {"instrument beyond the file", [](XmBuilder& xm) { xm.instruments[1].size = 0xFFFFFFFF; }},
        {"instrument without samples, of no size",
         [](XmBuilder& xm) { xm.instruments[0].reserved = 0, xm.instruments[0].size = 0; }},
        {"instrument without samples, of full size", [](XmBuilder& xm) { xm.instruments[0].reserved = 263 - 29; }},
        {"sample header with more fields", [](XmBuilder& xm) { xm.instruments[1].sampleHeaderSize = 44; }},
        {"sample header of no size", [](XmBuilder& xm) { xm.instruments[1].sampleHeaderSize = 0; }},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        XmBuilder xm = XmBuilder::Small();
        c.change(xm);
        const auto loaded = LoadXm(xm);
        ASSERT_TRUE(loaded.song) << loaded.report.error;
        EXPECT_EQ(JoinLines(loaded.report), "");
        EXPECT_EQ(CellAt(loaded, 3, 1).note, kNoteOff);
        ASSERT_EQ(loaded.song->numInstruments, 2);
        ASSERT_TRUE(loaded.song->GetInstrument(1)->GetSample(1));
        EXPECT_EQ(loaded.song->GetInstrument(1)->GetSample(1)->name, "sixteen");
        EXPECT_EQ(loaded.song->GetInstrument(1)->GetSample(1)->Wave()[1], 512.0f);
    }
}

TEST(LoaderXM, AnotherPlaceOfTheFirstPatternIsFound) {
    for (const unsigned headerSize : {20u + 4, 276u + 16}) {
        XmBuilder xm = XmBuilder::Small();
        xm.headerSize = headerSize;
        auto bytes = xm.Build();
        const auto at = bytes.begin() + 60;
        if (headerSize < 276)
            bytes.erase(at + headerSize, at + 276);
        else
            bytes.insert(at + 276, headerSize - 276, 0xEE);
        const auto loaded = LoadBytes(bytes);
        ASSERT_TRUE(loaded.song) << loaded.report.error;
        EXPECT_EQ(CellAt(loaded, 3, 1).note, kNoteOff);
        EXPECT_EQ(loaded.song->patternList[4], 0);
        EXPECT_EQ(loaded.song->numInstruments, 2);
    }
}

TEST(LoaderXM, ThePackedSizeFindsTheNextPattern) {
    const std::vector<std::uint8_t> row{0x81, 10, 0x81, 20};
    auto longer = row;
    longer.resize(9, 0xEE);
    const struct { const char* what; XmPatternRecipe pattern; const char* lines; int secondNote; } cases[] = {
        {"exact", {1, row}, "", 19},
        {"more bytes than cells", {1, longer}, "", 19},
        {"fewer bytes than cells", {1, {0x81, 10}}, "Pattern 0 holds less than its rows: the others are empty.\n",
         kNoNote},
        {"no rows", {0, row}, "", kNoNote},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        XmBuilder xm = WithPattern(c.pattern);
        xm.patterns.push_back({1, {0x81, 30, 0x80}});
        const auto loaded = LoadXm(xm);
        ASSERT_TRUE(loaded.song) << loaded.report.error;
        EXPECT_EQ(JoinLines(loaded.report), c.lines);
        EXPECT_EQ(CellAt(loaded, 0, 1).note, c.secondNote);
        EXPECT_EQ(CellAt(loaded, 0, 0, 1).note, 29);
    }
}

TEST(LoaderXM, AFullPatternThatOutgrowsItsSizeFieldIsReadWhole) {
    std::vector<std::uint8_t> cells;
    for (int i = 0; i < 256 * 64; ++i) cells.insert(cells.end(), {25, 1, 0x20, 1, static_cast<std::uint8_t>(i)});
    const auto size = static_cast<unsigned>(cells.size());
    XmBuilder xm = WithPattern({256, cells, 9, 0, size - 65536}, 64);
    xm.patterns.push_back({1, {0x81, 30}});
    const auto loaded = LoadXm(xm);
    ASSERT_TRUE(loaded.song) << loaded.report.error;
    EXPECT_EQ(CellAt(loaded, 255, 63), (Cell{24, 1, 32, 1, 255}));
    EXPECT_EQ(CellAt(loaded, 0, 0, 1).note, 29);
}

TEST(LoaderXM, WhatTheSongHasNoPlaceForIsDroppedAndTold) {
    const struct { const char* what; void (*change)(XmBuilder&); const char* lines; } cases[] = {
        {"channels", [](XmBuilder& xm) {
             xm.channels = 66;
             xm.patterns.assign(1, {2, std::vector<std::uint8_t>(66 * 2, 0x80)});
         }, "The file has 66 channels: the last 2 are dropped.\n"},
        {"patterns", [](XmBuilder& xm) { xm.patterns.insert(xm.patterns.begin(), 300, {1, {0x80, 0x80}}); },
         "The file has 302 patterns: the last 46 are dropped.\n"},
        {"instruments", [](XmBuilder& xm) { xm.instruments.resize(130, XmInstrumentRecipe{.name = "extra"}); },
         "The file has 130 instruments: the last 2 are dropped.\n"},
        {"samples", [](XmBuilder& xm) { xm.instruments[1].samples.resize(18, {.name = "extra", .wave = {5, 5}}); },
         "Instrument 2 has 18 samples: the last 2 are dropped.\n"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        XmBuilder xm = XmBuilder::Small();
        c.change(xm);
        xm.instruments.insert(xm.instruments.begin() + 2, XmInstrumentRecipe{.name = "after"});
        if (xm.instruments.size() > 128) xm.instruments.resize(130);
        const auto loaded = LoadXm(xm);
        ASSERT_TRUE(loaded.song) << loaded.report.error;
        EXPECT_EQ(JoinLines(loaded.report), c.lines);
        EXPECT_EQ(loaded.song->GetInstrument(2)->name, "after");
        EXPECT_EQ(loaded.song->GetInstrument(1)->GetSample(0)->Wave()[1], 512.0f);
    }
}

// Two patterns and three instruments of one sample each, cut at the places that a load passes.
TEST(LoaderXM, AFileThatEndsEarlyGivesWhatIsThereAndSaysWhereItEnds) {
    XmBuilder xm;
    xm.patterns = {{1, {0x81, 10, 0x81, 20}}, {2, {0x81, 30, 0x81, 40, 0x81, 50, 0x81, 60}}};
    for (const char* name : {"one", "two", "three"})
        xm.instruments.push_back({.name = name, .samples = {{.wave = {1, 1, 1, 1}, .loopLength = 4, .type = 1}}});
    const auto whole = xm.Build();
    const std::ptrdiff_t patterns = 336 + 9 + 4, instruments = patterns + 9 + 8;
    const std::ptrdiff_t each = (static_cast<std::ptrdiff_t>(whole.size()) - instruments) / 3;
    const std::string inPattern = "The file ends in pattern 1: what follows is missing, and so are all instruments.\n";
    const std::string lastOne = "The file ends early: the last 1 of its 3 instruments are missing.\n";
    const struct { std::ptrdiff_t size; int patterns, instruments; std::uint32_t lastWave; std::string lines; } cases[] = {
        {patterns, 1, 0, 0, inPattern},
        {patterns + 9 + 5, 2, 0, 0, inPattern},
        {instruments, 2, 0, 0, "The file ends early: the last 3 of its 3 instruments are missing.\n"},
        {instruments + each + 100, 2, 2, 0, "The file ends in instrument 2: its samples are missing.\n" + lastOne},
        {instruments + 2 * each - 20, 2, 2, 0, "The file ends in the sample headers of instrument 2.\n" + lastOne},
        {instruments + 2 * each - 2, 2, 2, 2, "The file ends in sample 1 of instrument 2: the rest is silent.\n" + lastOne},
        {instruments + 2 * each, 2, 2, 4, lastOne},
        {instruments + 3 * each - 1, 2, 3, 3, "The file ends in sample 1 of instrument 3: the rest is silent.\n"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.size);
        const auto loaded = LoadBytes({whole.begin(), whole.begin() + c.size});
        ASSERT_TRUE(loaded.song) << loaded.report.error;
        EXPECT_EQ(JoinLines(loaded.report), c.lines);
        EXPECT_EQ(loaded.song->numPatterns, c.patterns);
        EXPECT_EQ(loaded.song->numInstruments, c.instruments);
        EXPECT_EQ(CellAt(loaded, 0, 1).note, 19);
        if (c.patterns > 1) {
            EXPECT_EQ(CellAt(loaded, 0, 1, 1).note, 39);
        }
        const Instrument* last = loaded.song->GetInstrument(c.instruments - 1);
        const Sample* sample = last ? last->GetSample(0) : nullptr;
        EXPECT_EQ(sample ? sample->Count() : 0, c.lastWave);
        if (sample) {
            EXPECT_LE(sample->data->loopEnd, c.lastWave);
        }
    }
}

// Each pattern claims to go on far behind its one byte of cells.
TEST(LoaderXM, ManyPatternsThatLieAboutTheirSizeCostLittleTime) {
    XmBuilder xm;
    xm.channels = 64;
    xm.patterns.assign(65535, {256, {0x80}});
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(LoadXm(xm).song->numPatterns, 256);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(3));
}

}  // namespace
}  // namespace vonta
