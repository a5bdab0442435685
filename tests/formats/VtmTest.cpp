// Native modules: as written, as read in every version, and as repaired.
#include <gtest/gtest.h>

#include "formats/native/LoaderVTM.h"
#include "tests/support/ByteBuilder.h"
#include "tests/support/FullSong.h"
#include "tests/support/LogCapture.h"
#include "tests/support/SongCompare.h"

namespace vonta {
namespace {

using namespace test;

std::vector<std::uint8_t> Save(Song& song, bool compress = false, LoadReport* report = nullptr) {
    SaveOptions options;
    options.compress = compress;
    options.report = report;
    MemoryStream stream;
    EXPECT_EQ(SaveFile(&stream, SaveMode::Module, song, options), 0);
    return stream.Bytes();
}

struct Loaded {
    std::unique_ptr<Song> song;
    bool unknown = false;
    LoadReport report;
};

Loaded Load(const std::vector<std::uint8_t>& bytes, const PluginLoader* plugins = nullptr,
            std::string fxDirectory = {}) {
    Loaded loaded;
    loaded.report.plugins = plugins;
    loaded.report.fxDirectory = std::move(fxDirectory);
    MemoryStream stream(bytes);
    loaded.song = LoadModule(stream, loaded.unknown, loaded.report);
    return loaded;
}

ByteBuilder Header(unsigned trackerVersion = 7600) {
    return ByteBuilder().Chunk(0xFFFE0001, ByteBuilder().Text("ALIM3").U32(trackerVersion));
}

// A file of the header and one chunk.
Loaded LoadChunk(std::uint32_t id, const ByteBuilder& body, const PluginLoader* plugins = nullptr) {
    return Load(Header().Chunk(id, body).EndChunk().bytes, plugins);
}

ByteBuilder Order(unsigned length = 1, unsigned restart = 0) {
    return ByteBuilder().U8(10).Zeros(256).U8(length).U8(restart);
}

TEST(Module, EveryFieldComesBackAndTheBytesStayTheSame) {
    const auto song = FullSong();
    const FakeLoader plugins;
    const auto bytes = Save(*song);
    const auto loaded = Load(bytes, plugins.Get());
    ASSERT_TRUE(loaded.song) << loaded.report.error;
    ExpectSame(*song, *loaded.song);
    EXPECT_EQ(loaded.report.lines, std::vector<std::string>{});
    EXPECT_FALSE(loaded.unknown);
    EXPECT_EQ(Save(*loaded.song), bytes);
}

TEST(Module, WhatIsSaidOfMissingPluginsIsSaidAgain) {
    const auto song = FullSong();
    const auto visitor = Load(Save(*song));
    EXPECT_FALSE(visitor.song->fxSlots[0] || visitor.song->GetSynth(0));
    const FakeLoader plugins;
    const auto home = Load(Save(*visitor.song), plugins.Get());
    for (std::size_t i = 0; i < song->fxSlots.size(); ++i)
        ExpectSamePlugin(song->fxSlots[i].get(), home.song->fxSlots[i].get());
    for (int i = 0; i < kMaxInstruments; ++i) ExpectSamePlugin(song->GetSynth(i), home.song->GetSynth(i));
}

TEST(Module, CompressedWavesComeBackNearAndAllElseExact) {
    const auto song = FullSong();
    const FakeLoader plugins;
    const auto bytes = Save(*song, true);
    const auto loaded = Load(bytes, plugins.Get());
    ASSERT_TRUE(loaded.song);
    ExpectSame(*song, *loaded.song, 1500);           // short waves of full scale fare worst
    EXPECT_EQ(loaded.report.lines, std::vector<std::string>{});
    const std::string text(bytes.begin(), bytes.end());
    EXPECT_NE(text.find("OggS"), std::string::npos);
}

TEST(Module, ANewSongTakesTheseBytes) {
    auto song = Song::MakeDefault();
    song->SetTitle("Tune");
    song->numChannels = 2;
    Pattern& pattern = *song->GetPattern(0);
    pattern.SetNumRows(8);
    pattern.Write(5, 0, {40, 0, kNoVolume, 0, 0});
    pattern.Write(2, 1, {41, 1, 64, 3, 9});
    pattern.Write(4, 1, {kNoNote, 2, 32, 4, 7});
    const auto channels = ByteBuilder()
        .U16(0x0101).U16(3 + 2).U8(0).U8(5).U8(5).U8(0x82).U8(40)
        .U16(0x0101).U16(3 + 6 + 1 + 6).U8(1).U8(4).U8(2)
        .U8(3).U8(41).U8(1).U16(64).U8(9).U8(0x80).U8(0x9D).U8(4).U8(2).U16(32).U8(7)
        .U16(0xFF01).U16(0);
    auto routings = ByteBuilder();
    for (unsigned slot = 0; slot < 8; ++slot)
        for (unsigned k = 1; k <= 4; ++k) routings.U8(0).U32(slot + k < 8 ? slot + k : 0xFFFFFFFF).F32(1);
    auto mixer = ByteBuilder().F32(1);
    for (int bus = 0; bus < 4; ++bus) {
        mixer.U8(0).F32(1).F32(0.5f);
        for (unsigned k = 0; k < 4; ++k) mixer.U8(0).F32(1).U8(k);
    }
    const auto expected = Header()
        .Chunk(0x00010003, ByteBuilder().EndedText("Tune").Zeros(3).Zeros(8).U8(125).U8(6).U8(2).U8(0).U32(7600))
        .Chunk(0x00020001, ByteBuilder().U8(2).Zeros(256).U8(1).U8(0)
            .Chunk(0x00010001, ByteBuilder().U8(0).U16(8).Bytes(channels.bytes)).EndChunk())
        .Chunk(0x00030001, ByteBuilder().EndChunk())
        .Chunk(0x00040001, ByteBuilder().EndChunk())
        .Chunk(0x00050002, mixer.Bytes(routings.bytes))
        .Chunk(0x00060001, ByteBuilder().EndChunk())
        .EndChunk();
    EXPECT_EQ(Save(*song), expected.bytes);
}

TEST(Module, EffectAndSynthTakeTheseBytes) {
    auto song = Song::MakeDefault();
    song->fxSlots[3] = FullEffect("a.dll", 5);
    song->SetSynth(2, FullSynth("b.dll", 4));
    const auto bytes = Save(*song);
    auto synth = ByteBuilder().U8(2).EndedText("b.dll").EndedText("synth 4").U32(3)
        .F32(0.01f * 4).F32(0.01f * 5).F32(0.01f * 6);
    synth.U8(4 << 1);
    for (unsigned i = 0; i < 16; ++i) synth.U8(1).F32(0.1f * static_cast<float>(i)).U8(i < 8 ? 9 - i : 15);
    synth.F32(-0.25f).F32(1.7f).U8(1).U8(1).U8(1).U8(0).U8(1);
    const auto effect = ByteBuilder().U8(3).EndedText("a.dll").EndedText("effect 5").U8(1 | 5 << 1).F32(0.3f).F32(0.2f)
        .U8(1).U32(3).F32(0.05f * 5).F32(0.05f * 6).F32(0.05f * 7);
    for (const auto& chunk : {ByteBuilder().Chunk(0x00010002, effect), ByteBuilder().Chunk(0x00010001, synth)})
        EXPECT_NE(std::search(bytes.begin(), bytes.end(), chunk.bytes.begin(), chunk.bytes.end()), bytes.end());
}

TEST(Module, AnEffectThatLooksLikeAMaskComesBack) {
    auto song = Song::MakeDefault();
    const Cell cell{50, 1, 64, 0x85, 3};
    song->GetPattern(0)->Write(0, 0, cell);
    EXPECT_EQ(Load(Save(*song)).song->GetPattern(0)->Read(0, 0), cell);
}

TEST(Module, AWriterThatPlaysTakesTheEffectsOfThePlayer) {
    auto song = Song::MakeDefault();
    FxSlotTable played;
    played[4] = FullEffect("played.dll", 1);
    song->fxSlotTable = &played;
    const FakeLoader plugins;
    ExpectSamePlugin(played[4].get(), Load(Save(*song), plugins.Get()).song->fxSlots[4].get());
}

TEST(Module, AFileWithoutChunksIsTheNewSong) {
    for (const auto& file : {Header(), Header().EndChunk(), Header(9472)}) {
        const LogCapture log;
        const auto loaded = Load(file.bytes);
        ASSERT_TRUE(loaded.song);
        ExpectSame(*Song::MakeDefault(), *loaded.song);
        EXPECT_FALSE(log.Has("NEWer"));
    }
}

TEST(Module, ANewerTrackersFileIsReadWithAWarning) {
    const LogCapture log;
    EXPECT_TRUE(Load(Header(9473).EndChunk().bytes).song);
    EXPECT_TRUE(log.Has("warning: file stored with a NEWer tracker version\n"));
    EXPECT_TRUE(log.Has("\t\t- EOF Chunk found.\n"));
}

TEST(Module, OnlyItsOwnHeaderIsAModule) {
    const struct { std::uint32_t id; const char* name; bool known; } cases[] = {
        {0xFFFE0000, "ALIM3", true}, {0xFFFE0001, "ALIM3", true},  {0xFFFE0002, "ALIM3", false},
        {0xFFFD0001, "ALIM3", false}, {0xFFFE0001, "ALIM2", false}, {0x00010003, "ALIM3", false}};
    for (const auto& row : cases) {
        MemoryStream stream(ByteBuilder().Chunk(row.id, ByteBuilder().Text(row.name).U32(7600)).EndChunk().bytes);
        EXPECT_EQ(LoaderNative().Check(stream), row.known) << std::hex << row.id << row.name;
    }
}

TEST(Module, OlderInfoEndsSooner) {
    for (unsigned version = 1; version <= 3; ++version) {
        auto body = ByteBuilder().EndedText("Old").EndedText("x").EndedText("words").EndedText("y").U32(9).U32(9)
            .U8(99).U8(7).U8(20);
        if (version >= 2) body.EndedText("C:\\old.vtm");
        if (version >= 3) body.U32(1234);
        // The next chunk shows that the reader stands where the body ends.
        const auto mixer = ByteBuilder().F32(0.5f);
        const auto loaded = Load(Header().Chunk(0x00010000 | version, body).Chunk(0x00050001, mixer).EndChunk().bytes);
        const Song& song = *loaded.song;
        EXPECT_EQ(song.title, "Old");
        EXPECT_EQ(song.comments, "words");
        EXPECT_EQ(song.bpm, 99u);
        EXPECT_EQ(song.tempo, 7u);
        EXPECT_EQ(song.numChannels, 20);
        EXPECT_EQ(song.fileName, version >= 2 ? "C:\\old.vtm" : "");
        EXPECT_EQ(song.masterVolume, 0.5f);
        EXPECT_EQ(song.buses, Song{}.buses);         // an old mixer leaves these alone
        EXPECT_EQ(song.fxRouting, Song{}.fxRouting);
    }
}

TEST(Module, AnOldEffectKeepsTheDefaultsOfWhatItLacks) {
    const FakeLoader plugins;
    const auto effect = ByteBuilder().U8(6).EndedText("old.dll").EndedText("dropped").U8(1).U32(2)
        .F32(0.25f).F32(0.75f);
    const auto loaded = LoadChunk(0x00040001, ByteBuilder().Chunk(0x00010001, effect).EndChunk(), plugins.Get());
    const EffectSlot* slot = loaded.song->fxSlots[6].get();
    ASSERT_TRUE(slot);
    EXPECT_EQ(slot->on, 1);
    EXPECT_EQ(slot->volume, 0.8f);
    EXPECT_EQ(slot->pan, 0.5f);
    EXPECT_EQ(slot->GetName(), "fake");
    EXPECT_EQ(slot->GetParameter(0), 0.25f);
    EXPECT_EQ(slot->GetParameter(1), 0.75f);
}

TEST(Module, WhatANewerVersionWroteIsPassedOver) {
    const auto pattern = [](unsigned id) {
        return Order(3, 1).Chunk(id, ByteBuilder().U8(9).U16(16).U16(0xFF01).U16(0)).EndChunk();
    };
    const struct { std::uint32_t id; ByteBuilder body; const char* line; } cases[] = {
        {0x00010004, {}, "\t\t\t- warning: info chunk version not supported.\n"},
        {0x00020002, {}, "\t\t\t- warning: patterns chunk version not supported.\n"},
        {0x00030002, {}, "\t\t\t- warning: instruments chunk version not supported.\n"},
        {0x00040002, {}, "\t\t\t- warning: multifxs chunk version not supported.\n"},
        {0x00050003, {}, "\t\t\t- warning: mixer chunk version not supported.\n"},
        {0x00060002, {}, "\t\t\t- warning: synth chunk version not supported.\n"},
        {0x00070001, {}, "\t\t- Unknown Chunk found.\n"},
        {0x00020001, pattern(0x00010002), "\t\t- Unknown Chunk found.\n"},
        {0x00020001, pattern(0x00020001), "\t\t- Unknown Chunk found.\n"},
        {0x00030001, ByteBuilder().Chunk(0x00010007, ByteBuilder().Zeros(9)).EndChunk(),
         "\t\t\t\t\t- Unknown Instrument Data SubChunk found.\n"},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.line);
        const LogCapture log;
        ByteBuilder body = row.body;
        if (body.bytes.empty()) body.Zeros(33);
        const auto file = Header().Chunk(row.id, body).Chunk(0x00050001, ByteBuilder().F32(0.5f)).EndChunk();
        const auto loaded = Load(file.bytes);
        ASSERT_TRUE(loaded.song);
        EXPECT_TRUE(loaded.unknown);
        EXPECT_TRUE(log.Has(row.line));
        EXPECT_EQ(loaded.song->masterVolume, 0.5f);
    }
}

TEST(Module, PatternsTakeTheirNumbersAndKeepTheirSize) {
    const auto cells = ByteBuilder().U8(1).U16(4)
        .U16(0x0101).U16(0).U8(3).U8(9).U8(2).Zeros(0)       // rows 2 to 9 of a pattern of 4
        .U8(0x82).U8(30).U8(0x82).U8(31).U8(0x82).U8(32).U8(0x80).U8(0x80).U8(0x80).U8(0x80).U8(0x82).U8(33)
        .U16(0x0101).U16(0).U8(200).U8(0).U8(0).U8(0x82).U8(34)   // a channel that no pattern has
        .U16(0x0101).U16(0).U8(4).U8(1).U8(3)                // a span that ends before it starts
        .U16(0x0101).U16(0).U8(5).U8(0).U8(0).U8(0x82).U8(35)
        .U16(0xFF01).U16(0);
    const auto loaded = LoadChunk(0x00020001, Order(0, 7).Chunk(0x00010001, cells).EndChunk());
    const Song& song = *loaded.song;
    EXPECT_EQ(song.length, 1u);
    EXPECT_EQ(song.restartPos, 0u);
    EXPECT_EQ(song.numPatterns, 2);
    const Pattern& pattern = *song.GetPattern(1);
    EXPECT_EQ(pattern.rows, 4);
    EXPECT_EQ(pattern.Read(2, 3).note, 30);
    EXPECT_EQ(pattern.Read(3, 3).note, 31);
    EXPECT_EQ(pattern.Read(0, 5).note, 35);
}

TEST(Module, PluginsAreSoughtInOrderAndMissedAloud) {
    const auto effect = [](unsigned slot, const char* path) {
        return ByteBuilder().U8(slot).EndedText(path).EndedText("name").U8(0).F32(1).F32(0).U8(0).U32(0);
    };
    const auto synth = ByteBuilder().U8(4).EndedText("D:\\s\\lost.dll").EndedText("n").U32(0).Zeros(16 * 6 + 14);
    const auto file = Header()
        .Chunk(0x00040001, ByteBuilder()
            .Chunk(0x00010002, effect(0, "C:\\FX\\echo.dll"))
            .Chunk(0x00010002, effect(1, "/fx/gone.so")).EndChunk())
        .Chunk(0x00060001, ByteBuilder().Chunk(0x00010001, synth).EndChunk())
        .EndChunk();
    FakeLoader plugins({"fx/echo.dll"});
    const LogCapture log;
    const auto loaded = Load(file.bytes, plugins.Get(), "fx");
    EXPECT_EQ(plugins.asked, (std::vector<std::string>{"C:\\FX\\echo.dll", "echo.dll", "fx/echo.dll", "/fx/gone.so",
                                                       "gone.so", "fx/gone.so", "D:\\s\\lost.dll", "lost.dll"}));
    EXPECT_TRUE(loaded.song->fxSlots[0]);
    EXPECT_FALSE(loaded.song->fxSlots[1]);
    EXPECT_EQ(loaded.song->fxNames[1], "name");
    ASSERT_EQ(loaded.report.lines.size(), 3u);
    EXPECT_EQ(loaded.report.lines[0], "Can't load effect gone.so");
    EXPECT_EQ(loaded.report.lines[1], "Can't load Synth lost.dll");
    EXPECT_TRUE(log.Has("ERROR: Can't load Effect: "));
    EXPECT_TRUE(log.Has("ERROR: Can't load Synth: "));
}

TEST(Module, NumbersThatPointNowhereFallBack) {
    const float nan = std::numeric_limits<float>::quiet_NaN(), infinite = std::numeric_limits<float>::infinity();
    auto mixer = ByteBuilder().F32(nan);
    for (int bus = 0; bus < 4; ++bus) {
        mixer.U8(0xFF).F32(infinite).F32(nan);
        for (int k = 0; k < 4; ++k) mixer.U8(1).F32(nan).U8(0xFF);
    }
    for (int i = 0; i < 32; ++i) mixer.U8(1).U32(0x7FFFFFFF).F32(-infinite);
    const auto loaded = LoadChunk(0x00050002, mixer);
    const Song& song = *loaded.song;
    EXPECT_EQ(song.masterVolume, 1.0f);
    const Bus expected{.active = 1, .sendEnabled = {1, 1, 1, 1}};
    for (const Bus& bus : song.buses) EXPECT_EQ(bus, expected);
    const FxRouting nowhere{{kNoTarget, kNoTarget, kNoTarget, kNoTarget}, {1, 1, 1, 1}, {1, 1, 1, 1}};
    for (std::size_t slot = 0; slot < 8; ++slot) EXPECT_EQ(song.fxRouting[slot], nowhere);
}

TEST(Module, ASaveSaysWhatTheFileCannotHold) {
    auto song = Song::MakeDefault();
    LoadReport none;
    Save(*song, false, &none);
    EXPECT_EQ(none.lines, std::vector<std::string>{});
    song->length = 256;
    song->tempo = 0;
    song->numChannels = 4;
    song->GetPattern(0)->Write(0, 4, {1, 1, 1, 1, 1});
    song->fxRouting[8].enabled[0] = 1;
    song->SetSynth(2, FullSynth("lead.dll", 5));
    song->GetSynth(2)->muted = 1;
    song->SetInstrument(0, std::make_unique<Instrument>());
    Instrument& instrument = *song->GetInstrument(0);
    instrument.SetSample(0, MakeSample({1, 2}), 1);
    instrument.SetSample(1, std::make_unique<Sample>(), 1);
    instrument.GetSample(1)->Link(instrument.GetSample(0)->data, 0);
    instrument.eq[1].gain = 0.5f;
    instrument.SetSynth(std::make_unique<FakeSynth>("bass.dll"));
    instrument.synth->volume = 0.5f;
    LoadReport all;
    const auto bytes = Save(*song, false, &all);
    EXPECT_EQ(all.lines, (std::vector<std::string>{
        "The file cannot hold a song of 256 positions: it will come back with 1.",
        "Tempo 0 is not in the file: it will come back as 1.",
        "Notes behind channel 4 are not in the file.",
        "The routing of effect slot 8 is not in the file.",
        "The mute of synth 3 is not in the file, for it plays on output pair 6.",
        "Equalizer bands that are off and lose their values: 1",
        "Clones that become samples of their own: 1",
        "Own synths of instruments that lose their mixing section: 1"}));
    EXPECT_EQ(Load(bytes).song->length, 1u);
    EXPECT_EQ(Load(bytes).song->tempo, 1u);
}

// What would not come back whole from a stream is stored as it is, and told.
TEST(Module, WavesThatPackingWouldHarmStayPlain) {
    const auto song = SongBuilder().SampleInstrument(0, {0, 40000, -40000, -40000}).SineInstrument(1, 1000).Build();
    LoadReport report;
    const auto loaded = Load(Save(*song, true, &report));
    EXPECT_EQ(report.lines, std::vector<std::string>{"Sample \"\" is not compressed: packing would clip it"});
    ExpectSameWave(*song->GetInstrument(0)->GetSample(0), *loaded.song->GetInstrument(0)->GetSample(0), 0);
}

}  // namespace
}  // namespace vonta
