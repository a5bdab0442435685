#include <gtest/gtest.h>

#include "tests/support/ModuleBytes.h"
#include "tests/support/SongBuilder.h"

namespace vonta {
namespace {

using test::JoinLines;
using test::LoadBytes;
using test::SaveBytes;

constexpr std::size_t kHeader = 1084;

std::string Text(const std::vector<std::uint8_t>& bytes, std::size_t at, std::size_t width) {
    return {bytes.begin() + static_cast<std::ptrdiff_t>(at),
            bytes.begin() + static_cast<std::ptrdiff_t>(at + width)};
}

std::vector<std::uint8_t> Slice(const std::vector<std::uint8_t>& bytes, std::size_t at, std::size_t width) {
    return {bytes.begin() + static_cast<std::ptrdiff_t>(at),
            bytes.begin() + static_cast<std::ptrdiff_t>(at + width)};
}

std::vector<std::uint8_t> SaveCell(const Cell& cell) {
    const auto song = SongBuilder().Channels(4).Order({0}).Build();
    song->GetPattern(0)->Write(0, 0, cell);
    return Slice(SaveBytes(*song, SaveMode::Mod).bytes, kHeader, 4);
}

// What follows the name in the record of instrument 0, and the wave.
struct Record {
    std::vector<std::uint8_t> fields, wave;
};

Record SaveSample(std::unique_ptr<Sample> sample) {
    const auto song = SongBuilder().Channels(4).Instrument(0, MakeInstrument(std::move(sample))).Build();
    const auto bytes = SaveBytes(*song, SaveMode::Mod).bytes;
    const std::size_t waves = kHeader + 64 * 4 * 4;
    return {Slice(bytes, 42, 8), Slice(bytes, waves, bytes.size() - waves)};
}

TEST(SaveMOD, TheTagTellsAnEvenNumberOfChannels) {
    const struct { int channels; const char* tag; int columns; const char* lines; } cases[] = {
        {0, "2CHN", 2, "Empty channels added: 2\n"},
        {1, "2CHN", 2, "Empty channels added: 1\n"},
        {2, "2CHN", 2, ""},
        {3, "4CHN", 4, "Empty channels added: 1\n"},
        {4, "4CHN", 4, ""},
        {9, "10CH", 10, "Empty channels added: 1\n"},
        {32, "32CH", 32, ""},
        {34, "32CH", 32, "Channels above 32 left out: 2\n"},
    };
    for (const auto& c : cases) {
        const auto song = SongBuilder().Build();
        song->numChannels = c.channels;
        for (int track = 0; track < kTracks; ++track)
            song->GetPattern(0)->Write(63, track, {36, 1, kNoVolume, 0, 0});
        const auto saved = SaveBytes(*song, SaveMode::Mod);
        ASSERT_EQ(saved.bytes.size(), kHeader + static_cast<std::size_t>(64 * c.columns * 4));
        EXPECT_EQ(Text(saved.bytes, 1080, 4), c.tag);
        EXPECT_EQ(saved.bytes[saved.bytes.size() - 4], c.columns > c.channels ? 0 : 3);  // added ones are empty
        EXPECT_EQ(JoinLines(saved.report), c.lines);
    }
}

TEST(SaveMOD, CellsAreConverted) {
    const struct { Cell cell; std::vector<std::uint8_t> bytes; } cases[] = {
        {{}, {0, 0, 0, 0}},
        {{36, 1, 64, 0, 0}, {0x03, 0x58, 0x10, 0}},
        {{0, 0, kNoVolume, 0, 0}, {0x0D, 0xAC, 0, 0}},
        {{95, 31, kNoVolume, 15, 0x7D}, {0x10, 28, 0xFF, 0x7D}},
        {{96, 128, kNoVolume, 0, 0}, {0x80, 0, 0, 0}},
        {{kNoteOff, 0, kNoVolume, 0, 0}, {0, 0, 0, 0}},
        {{255, 0, kNoVolume, 0, 0}, {0, 0, 0, 0}},
        {{kNoNote, 0, kNoVolume, 12, 0x80}, {0, 0, 0x0C, 0x40}},
        {{kNoNote, 0, 0x8060, 20, 0x55}, {0, 0, 0x04, 0x55}},
    };
    for (const auto& c : cases)
        EXPECT_EQ(SaveCell(c.cell), c.bytes) << int{c.cell.note} << " " << int{c.cell.effect};
}

TEST(SaveMOD, SampleRecordsHoldWhatTheFormatHolds) {
    const auto song = Song::MakeDefault();
    EXPECT_EQ(Slice(SaveBytes(*song, SaveMode::Mod).bytes, 20, 30),
              [] { std::vector<std::uint8_t> none(30); none[25] = 64; return none; }());

    const struct { int fineTune; std::uint8_t byte; } tunes[] = {{-8, 0}, {-16, 0xFF}, {-128, 0xF8}, {127, 7}};
    for (const auto& tune : tunes) {
        auto sample = MakeSample({0, 0});
        sample->fineTune = static_cast<std::int8_t>(tune.fineTune);
        EXPECT_EQ(SaveSample(std::move(sample)).fields[2], tune.byte) << tune.fineTune;
    }

    const struct {
        const char* what;
        std::size_t frames;
        int channels;
        LoopFrames loop;
        std::vector<std::uint8_t> fields;
    } cases[] = {
        {"odd", 5, 1, {}, {0, 2, 0, 64, 0, 0, 0, 0}},
        {"loop", 8, 1, {VTSAMPLE_LOOP_FORDWARD, 2, 6}, {0, 4, 0, 64, 0, 1, 0, 2}},
        {"stereo", 8, 2, {VTSAMPLE_LOOP_PINGPONG, 2, 6}, {0, 4, 0, 64, 0, 1, 0, 2}},
        {"loop points of a sample without a loop", 8, 1, {VTSAMPLE_LOOP_NONE, 2, 6}, {0, 4, 0, 64, 0, 0, 0, 0}},
        {"loop end before its start", 8, 1, {VTSAMPLE_LOOP_FORDWARD, 6, 2}, {0, 4, 0, 64, 0, 3, 0, 0}},
        {"loop beyond the end", 8, 1, {VTSAMPLE_LOOP_FORDWARD, 4, 9999}, {0, 4, 0, 64, 0, 2, 0, 2}},
        {"too long", 200000, 1, {VTSAMPLE_LOOP_FORDWARD, 199990, 200000}, {255, 255, 0, 64, 255, 255, 0, 0}},
    };
    for (const auto& c : cases) {
        const std::vector<float> wave(c.frames * static_cast<std::size_t>(c.channels), 256.0f);
        const Record record = SaveSample(MakeSample(wave, c.channels, c.loop));
        EXPECT_EQ(record.fields, c.fields) << c.what;
        EXPECT_EQ(record.wave.size(), static_cast<std::size_t>(2 * (c.fields[0] * 256 + c.fields[1])))
            << c.what;
    }
}

TEST(SaveMOD, WavesAreTruncatedBytesOfTheLeftSide) {
    EXPECT_EQ(SaveSample(MakeSample({255, 256, -255, -257, 32767, 99999, -32768, -99999})).wave,
              (std::vector<std::uint8_t>{0, 1, 0, 0xFF, 127, 127, 0x80, 0x80}));
    EXPECT_EQ(SaveSample(MakeSample({256, 0, 512, 0}, 2)).wave, (std::vector<std::uint8_t>{1, 2}));
}

TEST(SaveMOD, APatternOfAnotherLengthEndsWhereItDid) {
    const auto song = SongBuilder()
                          .Channels(2)
                          .Order({0, 1, 2, 3})
                          .Pattern(0, 4)
                          .Note(3, 0, 36, 1, kNoVolume, 1, 5)
                          .Pattern(1, 4)
                          .Effect(3, 0, 11, 2)
                          .Pattern(2, 1)
                          .Effect(0, 0, 1, 1)
                          .Effect(0, 1, 2, 2)
                          .Pattern(3, 70)
                          .Note(69, 0, 36)
                          .Build();
    const auto saved = SaveBytes(*song, SaveMode::Mod);
    const auto loaded = LoadBytes(saved.bytes);
    const auto effect = [&](int pattern, int row, int track) {
        return int{loaded.song->GetPattern(pattern)->Read(row, track).effect};
    };
    EXPECT_EQ(effect(0, 3, 0), 1);
    EXPECT_EQ(effect(0, 3, 1), 13);                  // the first cell that has room
    EXPECT_EQ(effect(1, 3, 1), 0);                   // a jump leaves it already
    EXPECT_EQ(effect(2, 0, 0), 1);                   // no room
    EXPECT_EQ(effect(2, 0, 1), 2);
    EXPECT_EQ(effect(3, 63, 0), 0);
    EXPECT_EQ(JoinLines(saved.report), "Patterns whose last rows are left out: 1\n"
                                       "Patterns made longer, left by a break where a cell has room: 3\n");
}

TEST(SaveMOD, OrdersDecideWhichPatternsAreWritten) {
    const auto song = SongBuilder().Channels(2).Pattern(1).Pattern(2).Order({0, 9}).Restart(1).Build();
    song->SetPatternPosIndex(100, 1);                // behind the end: a pattern, and one that there never was
    song->SetPatternPosIndex(101, 255);
    auto saved = SaveBytes(*song, SaveMode::Mod);
    EXPECT_EQ(saved.bytes.size(), kHeader + 10 * 64 * 2 * 4);
    EXPECT_EQ(Slice(saved.bytes, 950, 4), (std::vector<std::uint8_t>{2, 1, 0, 9}));
    EXPECT_EQ(Slice(saved.bytes, 952 + 100, 2), (std::vector<std::uint8_t>{1, 0}));

    song->SetPatternPosIndex(1, 1);
    song->SetPatternPosIndex(101, 0);
    song->SetPatternPosLenght(200);
    song->SetPatternPosRestart(150);
    saved = SaveBytes(*song, SaveMode::Mod);
    EXPECT_EQ(Slice(saved.bytes, 950, 2), (std::vector<std::uint8_t>{128, 0}));
    EXPECT_EQ(JoinLines(saved.report),
              "Positions above 128 left out: 72\nPatterns that no position plays left out: 1\n");
}

TEST(SaveMOD, EverythingLostIsToldOnceWithItsCount) {
    auto instrument = MakeInstrument(MakeSample({1, 2, 3, 4}, 2, {VTSAMPLE_LOOP_PINGPONG, 0, 1}));
    instrument->SetName("a name that is far too long for it");
    instrument->SetKeySample(5, 1, 0, 63);
    instrument->volumeEnvelopes[0].enabled = 1;
    instrument->filterOn = 1;
    instrument->kind = 1;
    instrument->GetSample(0)->toneRel = 12;
    instrument->GetSample(0)->fineTune = 20;
    instrument->GetSample(0)->name = "lost";
    instrument->fadeOut = 1;
    instrument->AddSample(MakeSample({0}));
    const auto song = SongBuilder().Channels(2).Bpm(140).Instrument(0, std::move(instrument))
                          .SampleInstrument(31, std::vector<float>(200000)).Note(0, 0, kNoteOff, 0, 64, 17, 1)
                          .Note(1, 1, 3, 40, 0x8060, 12, 3).Build();
    song->masterVolume = 0.5f;
    song->comments = "for nobody";
    song->title = "more than twenty characters";
    EXPECT_EQ(JoinLines(SaveBytes(*song, SaveMode::Mod).report),
              "Instruments above 31 left out: 1\n"
              "Titles cut: 1\n"
              "Starting tempo and BPM left out (the file has 6 and 125): 1\n"
              "Effects, buses and master volume left out: 1\n"
              "Comments left out: 1\n"
              "Note offs left out: 1\n"
              "Notes too low for the file: 1\n"
              "Cells with instruments that the file does not have: 1\n"
              "Volume column entries left out: 2\n"
              "Volumes rounded to 64 steps: 1\n"
              "Effects above F, which become others: 1\n"
              "Samples left out, of instruments with many: 1\n"
              "Instrument names cut: 1\n"
              "Plug-ins of instruments left out: 1\n"
              "Instruments that lose velocity zones or layers: 1\n"
              "Instruments that lose envelopes: 1\n"
              "Instruments that lose their fade-out, or notes that sound on: 1\n"
              "Instruments that lose sends, filter, equalizer, MIDI or tuning: 1\n"
              "Sample names cut or left out: 1\n"
              "Stereo samples made mono: 1\n"
              "Samples brought down to 8 bits: 1\n"
              "Ping-pong loops made forward: 1\n"
              "Loops moved to even frames: 1\n"
              "Relative notes and pannings of samples left out: 1\n"
              "Fine tunings rounded: 1\n");
}

TEST(SaveMOD, SavedAndLoadedIsTheSameWhereTheFormatHasAPlace) {
    SongBuilder builder;
    builder.Channels(6).Pattern(1).Order({1, 0, 1});
    for (int note = 12; note < 96; ++note)
        builder.Note(note % 64, note % 6, note, note % 32, kNoVolume, note % 16, note);
    const auto song = builder.SampleInstrument(0, {256, -512, 32512, 32512}, 1, {VTSAMPLE_LOOP_FORDWARD, 0, 4})
                          .SampleInstrument(30, {0, 0}).Build();
    song->title = "A song";
    song->GetInstrument(30)->name = "greetings";
    const auto saved = SaveBytes(*song, SaveMode::Mod);
    EXPECT_EQ(JoinLines(saved.report), "");
    const auto loaded = LoadBytes(saved.bytes);
    EXPECT_EQ(loaded.song->patternList, song->patternList);
    for (int row = 0; row < 64; ++row)
        for (int track = 0; track < 6; ++track) {
            Cell cell = song->GetPattern(1)->Read(row, track);
            if (cell.effect == 12) cell.param = static_cast<std::uint8_t>(cell.param & 0xFE);
            EXPECT_EQ(loaded.song->GetPattern(1)->Read(row, track), cell) << row << " " << track;
        }
    EXPECT_EQ(SaveBytes(*loaded.song, SaveMode::Mod).bytes, saved.bytes);   // so all other fields came back
}

}  // namespace
}  // namespace vonta
