// Native instruments: as written, as read in every version, and as repaired.
#include <gtest/gtest.h>

#include "formats/native/LoaderVTI.h"
#include "formats/native/SaverVTI.h"
#include "formats/native/VorbisData.h"
#include "tests/support/ByteBuilder.h"
#include "tests/support/FullSong.h"
#include "tests/support/LogCapture.h"
#include "tests/support/MemoryPeak.h"
#include "tests/support/OggPackets.h"
#include "tests/support/SongCompare.h"
#include "tests/support/TempDirectory.h"

namespace vonta {
namespace {

using namespace test;

std::vector<std::uint8_t> Save(const Instrument& instrument) {
    MemoryStream stream;
    EXPECT_EQ(SaveInstrument(stream, instrument), 0);
    return stream.Bytes();
}

std::unique_ptr<Instrument> Load(const std::vector<std::uint8_t>& bytes, LoadReport& report) {
    MemoryStream stream(bytes);
    return LoadInstrumentNative(stream, report);
}

std::unique_ptr<Instrument> Load(const std::vector<std::uint8_t>& bytes) {
    LoadReport report;
    return Load(bytes, report);
}

// The body of each version, put together from bytes; every field differs from its default.
class BodyBuilder {
public:
    explicit BodyBuilder(int version) : version_(version) { Fields(); }
    ByteBuilder bytes;

private:
    void Fields() {
        bytes.EndedText("old one");
        for (unsigned key = 0; key < 128; ++key) Key(key);
        bytes.U16(1234).U32(0xAAAAAAAA).U8(1).U8(version_ >= 4 ? 3 << 1 | 1 : 0).U8(1).F32(0.75f);
        if (version_ == 1) bytes.U32(7);
        if (version_ == 2) bytes.U32(7).U16(7).U16(7);
        if (version_ >= 3) bytes.F32(0.25f).U16(0xFFFE).U16(33);
        if (version_ >= 2) bytes.U32(1);
        for (unsigned i = 0; version_ >= 2 && i < 64; ++i) bytes.U8(i < 21 ? 20 - i : 99);
        Filter();
        Midi();
        for (unsigned i = 0; i < 16; ++i) {
            bytes.U8(1).F32(0.5f);
            if (version_ >= 4) bytes.U8(9 - i % 8);
            else if (version_ >= 2) bytes.U32(3).U32(4);
        }
        Output();
        if (version_ >= 6) bytes.U32(0x00A1B2C3);
    }
    void Key(unsigned key) {
        if (version_ < 5) bytes.U8(key / 2);
        else bytes.U8(2).U8(1).U8(5).U8(0).U8(63).U8(6).U8(1).U8(2).U8(3).U8(4).U8(5).U8(6).U8(64).U8(127).U8(key % 2);
    }
    void Filter() {
        if (version_ == 1) {
            for (const auto& [on, cutoff] : {std::pair{1, 100.0f}, {-1, 0.25f}}) {
                if (on > 0) bytes.U8(1);
                bytes.F32(cutoff).F32(cutoff * 2).U8(9).U32(9).F32(cutoff * 3).F32(cutoff * 4).U8(9).U32(9);
            }
            return;
        }
        bytes.U8(1).F32(100).F32(200).U32(2).F32(300).F32(0.25f).F32(0.5f).U32(4).F32(0.75f).U32(5);
    }
    void Midi() {
        if (version_ >= 4) bytes.U8(1).U8(21);
        bytes.U16(0x3344).U8(1).U8(7);
        for (unsigned i = 0; i < (version_ >= 4 ? 16u : 1u); ++i) bytes.U8(40 + i);
        for (const unsigned value : {2u, 1u, 44u, 1u, 55u, 0xF4u, 1u, 66u}) bytes.U8(value);
    }
    void Output() {
        if (version_ < 3) return;
        if (version_ == 3) bytes.U8(1).U32(1).U32(1).U32(1).U32(1).U32(1).U8(1);
        bytes.U8(1).U8(0).U8(1).U8(0).U8(1);
        for (const float value : {1.0f, 2.0f, 3.0f}) bytes.U8(value < 3 ? 1 : 0).F32(value / 4).F32(1000 * value);
    }

    int version_;
};

// The same body, said in fields.
void ExpectBody(const Instrument& ins, int version) {
    const Instrument fresh;
    EXPECT_EQ(ins.name, "old one");
    EXPECT_EQ(ins.GetKeySample(101, 0, 100), version < 5 ? 50 : 1);
    EXPECT_EQ(ins.CountLayers(101, 100), version < 5 ? 1 : 4);
    EXPECT_EQ(ins.CountZones(101), version < 5 ? 1 : 2);
    EXPECT_EQ(ins.fixedKey[101], version < 5 ? 0 : 1);
    EXPECT_EQ(ins.fadeOut, 1234);
    EXPECT_EQ(ins.muted, 1);
    EXPECT_EQ(ins.groupOn, 0);                       // from field 6, and from version 3 on from the later byte
    EXPECT_EQ(ins.groupOutput, version < 4 ? 0 : 3);
    EXPECT_EQ(ins.newNoteAction, 1u);
    EXPECT_EQ(ins.gain, 0.75f);
    EXPECT_EQ(ins.pan, version < 3 ? 0.5f : 0.75f);
    EXPECT_EQ(ins.transpose, version < 3 ? 0 : -2);
    EXPECT_EQ(ins.fineTune, version < 3 ? 0 : 33);
    EXPECT_EQ(ins.kind, 0u);
    for (std::uint32_t i = 0; i < kEffectCodes; ++i) EXPECT_EQ(ins.effectMap[i], version < 2 ? i : 20 - i);
    EXPECT_EQ(ins.filterOn, 1);
    EXPECT_EQ(ins.cutoff, 100);
    EXPECT_EQ(ins.cutoffLfoDepth, 200);
    EXPECT_EQ(ins.cutoffLfoWave, version < 2 ? 0 : 2);
    EXPECT_EQ(ins.cutoffLfoPeriod, 300);
    EXPECT_EQ(ins.cutoffLfoPhase, version < 2 ? 400 : 0);
    EXPECT_EQ(ins.resonance, 0.25f);
    EXPECT_EQ(ins.resonanceLfoDepth, 0.5f);
    EXPECT_EQ(ins.resonanceLfoWave, version < 2 ? 0 : 4);
    EXPECT_EQ(ins.resonanceLfoPeriod, 0.75f);
    EXPECT_EQ(ins.resonanceLfoPhase, version < 2 ? 1 : 0);
    EXPECT_EQ(ins.filterType, version < 2 ? fresh.filterType : 5);
    EXPECT_EQ(ins.useSynth, version < 4 ? 0 : 1);
    MidiSettings midi{.enabled = 1, .device = 2, .synth = 21, .channel = 7, .program = 55, .volume = 66, .pan = 44,
                      .transpose = -12, .bank = 0x3344, .sendVolume = 1, .sendPan = 1, .sendBank = 1};
    if (version < 4) midi.synth = 0;
    for (std::size_t i = 0; i < (version < 4 ? 1 : 16); ++i) midi.controllers[i] = static_cast<std::uint8_t>(40 + i);
    EXPECT_EQ(ins.midi, midi);
    for (std::size_t i = 0; i < ins.sends.size(); ++i) {
        EXPECT_EQ(ins.sends[i].on, 1);
        EXPECT_EQ(ins.sends[i].level, 0.5f);
        EXPECT_EQ(ins.sends[i].slot, version < 4 ? i : 9 - i % 8);
    }
    const std::array<std::uint8_t, 4> buses{0, 1, 0, 1};
    EXPECT_EQ(ins.busMask, version < 3 ? fresh.busMask : buses);
    auto eq = fresh.eq;
    if (version >= 5) {
        eq[0] = {1, 1000, 0.25f};
        eq[1] = {1, 2000, 0.5f};                     // the third is off and keeps its defaults
    }
    EXPECT_EQ(ins.eq, eq);
    EXPECT_EQ(ins.color, version < 6 ? fresh.color : 0x00A1B2C3u);
}

ByteBuilder SampleChunk(const ByteBuilder& data) {
    return ByteBuilder().Chunk(0x00010001, ByteBuilder().U8(2).EndedText("s").U8(100).U8(30).U8(0xFF).U8(0xFE).U8(16)
        .U32(1).U32(3).U8(1).Bytes(data.bytes).EndChunk());
}

ByteBuilder WaveOfThree() {
    return ByteBuilder().Chunk(0x00010002, ByteBuilder().U32(3).U8(1).U16(1).U16(0xFFFF).U16(500));
}

// What follows the fields in every version: a sample, and an envelope as old as the version.
ByteBuilder Contents(int version) {
    auto envelope = ByteBuilder();
    if (version >= 2) envelope.U8(version - 1);
    envelope.U8(2).U8(1).U8(2).U16(0).U16(9).U16(50).U16(64).U8(1).U8(1).U8(0).U8(0).U8(1);
    const unsigned written = version == 1 ? 1 : version == 2 ? 2 : 3;
    if (written == 3) envelope.U8(1);
    return ByteBuilder().Bytes(SampleChunk(WaveOfThree()).bytes).Chunk(0x00020000 | written, envelope).EndChunk();
}

void ExpectContents(const Instrument& ins, int version) {
    const Sample* sample = ins.GetSample(2);
    ASSERT_TRUE(sample);
    EXPECT_EQ(ins.numSamples, 3);
    EXPECT_EQ(sample->volume, 100);
    EXPECT_EQ(sample->fineTune, -1);
    EXPECT_EQ(sample->toneRel, -2);
    ASSERT_EQ(sample->Count(), 3u);
    EXPECT_EQ(sample->Wave()[1], -1.0f);
    const Envelope& envelope = ins.panEnvelopes[static_cast<std::size_t>(version - 1)];
    EXPECT_EQ(envelope.enabled, 1);
    EXPECT_EQ(envelope.numPoints, 2);
    EXPECT_EQ(envelope.points[1], (EnvelopePoint{50, 64}));
    EXPECT_EQ(envelope.loopEnd, 1);
    EXPECT_EQ(envelope.timeBased, version >= 3 ? 1 : 0);
}

TEST(InstrumentFile, EveryFieldComesBackAndTheBytesStayTheSame) {
    const auto instrument = FullInstrument();
    const FakeLoader plugins;
    LoadReport report;
    report.plugins = plugins.Get();
    const auto bytes = Save(*instrument);
    const auto back = Load(bytes, report);
    ASSERT_TRUE(back);
    ExpectSame(instrument.get(), back.get());
    EXPECT_EQ(report.lines, std::vector<std::string>{});
    EXPECT_EQ(Save(*back), bytes);
}

TEST(InstrumentFile, EveryVersionIsReadFromAModule) {
    for (int version = 1; version <= 6; ++version) {
        SCOPED_TRACE(version);
        const auto body = ByteBuilder().U8(17).Bytes(BodyBuilder(version).bytes.bytes).Bytes(Contents(version).bytes);
        MemoryStream stream(ByteBuilder()
            .Chunk(0xFFFE0001, ByteBuilder().Text("ALIM3").U32(7600))
            .Chunk(0x00030001, ByteBuilder().Chunk(0x00010000u | static_cast<unsigned>(version), body).EndChunk())
            .Chunk(0x00050001, ByteBuilder().F32(0.5f)).EndChunk().bytes);
        bool unknown = true;
        LoadReport report;
        const auto song = LoadModule(stream, unknown, report);
        ASSERT_TRUE(song && song->GetInstrument(17));
        ExpectBody(*song->GetInstrument(17), version);
        ExpectContents(*song->GetInstrument(17), version);
        EXPECT_FALSE(unknown);
        EXPECT_EQ(song->masterVolume, 0.5f);         // the reader stands where the body ends
    }
}

TEST(InstrumentFile, MagicsDecideTheVersion) {
    const struct { std::string_view magic; int body, version; } cases[] = {
        {std::string_view("VTLI\0", 5), 1, 1}, {"XVTLI0003", 3, 3}, {"XVTLI0005", 5, 5}, {"XVTLI0005", 6, 6}};
    for (const auto& row : cases) {
        SCOPED_TRACE(row.version);
        const auto body = BodyBuilder(row.body);
        const auto ins = Load(
            ByteBuilder().Text(row.magic).Bytes(body.bytes.bytes).Bytes(Contents(row.version).bytes).bytes);
        ASSERT_TRUE(ins);
        ExpectBody(*ins, row.version);
        ExpectContents(*ins, row.version);
    }
    for (const std::string_view other : {"VTLI", "VTLI0005 ", "XVTLI0004", "XVTLI0006", "", "Extended Instrument: "})
        EXPECT_FALSE(Load(ByteBuilder().Text(other).bytes)) << other;
}

// Colors that look like the header of a chunk, with and without anything behind them.
TEST(InstrumentFile, AnyColorSurvivesAndIsNeverMissed) {
    for (const std::uint32_t color : {0u, 0xFFFFFFu, 0x00010001u, 0x00020001u, 0x00020003u, 0x00030001u, 0xFFFF0001u}) {
        Instrument instrument;
        instrument.color = color;
        EXPECT_EQ(Load(Save(instrument))->color, color) << std::hex << color;
        instrument.SetSample(1, MakeSample(SineWave(100)), 1);
        const auto back = Load(Save(instrument));
        EXPECT_EQ(back->color, color) << std::hex << color;
        EXPECT_TRUE(back->GetSample(1)) << std::hex << color;
    }
    const auto older = ByteBuilder().Text("XVTLI0005").Bytes(BodyBuilder(5).bytes.bytes);
    for (const auto& contents : {Contents(5), ByteBuilder().EndChunk(), SampleChunk(WaveOfThree())}) {
        const auto ins = Load(ByteBuilder(older).Bytes(contents.bytes).bytes);
        EXPECT_EQ(ins->color, Instrument{}.color);
        EXPECT_EQ(ins->GetSample(2) != nullptr, contents.bytes.size() > 8);
    }
}

TEST(InstrumentFile, WavesTakeTheSmallestFormThatHoldsThem) {
    const struct { std::vector<float> wave; int channels; unsigned version, bytes; } cases[] = {
        {{256, -32768, 0, 32512}, 2, 3, 1}, {{255, -32768, 32767, 1}, 1, 2, 2}, {{0.5f, -40000, 1e30f, 7}, 2, 1, 4}};
    for (const auto& row : cases) {
        Instrument instrument;
        instrument.SetSample(0, MakeSample(row.wave, row.channels), 1);
        const auto bytes = Save(instrument);
        const auto head = ByteBuilder().U32(0x00010000 | row.version).U32(5 + 4 * row.bytes).U32(4)
            .U8(static_cast<unsigned>(row.channels));
        EXPECT_NE(std::search(bytes.begin(), bytes.end(), head.bytes.begin(), head.bytes.end()), bytes.end());
        ExpectSame(instrument.GetSample(0), Load(bytes)->GetSample(0));
    }
}

TEST(InstrumentFile, AnEmptyWaveAndACloneComeBackAsSamplesOfTheirOwn) {
    Instrument instrument;
    instrument.SetSample(0, MakeSample(SineWave(64)), 1);
    instrument.SetSample(1, std::make_unique<Sample>(), 1);
    instrument.GetSample(1)->Link(instrument.GetSample(0)->data, 0);
    instrument.SetSample(2, MakeSample({}), 1);
    instrument.SetSample(3, std::make_unique<Sample>(), 1);
    const auto back = Load(Save(instrument));
    ExpectSameWave(*instrument.GetSample(0), *back->GetSample(1), 0);
    EXPECT_FALSE(back->GetSample(1)->data->isClone);
    EXPECT_TRUE(back->GetSample(2)->Wave());
    EXPECT_FALSE(back->GetSample(3)->Wave());
}

TEST(InstrumentFile, TheEnvelopesStandInOrderAndNoSynthIsWritten) {
    const auto bytes = Save(Instrument{});
    std::size_t at = bytes.size() - 8;               // before the end marker: 32 chunks of five points each
    const std::size_t chunk = 8 + 4 + 5 * 4 + 6;
    for (int i = 31; i >= 0; --i) {
        at -= chunk;
        const auto head = ByteBuilder().U32(0x00020003).U32(chunk - 8)
            .U8(static_cast<unsigned>(i / 4)).U8(static_cast<unsigned>(i % 4 + 1));
        EXPECT_TRUE(std::equal(head.bytes.begin(), head.bytes.end(), &bytes[at])) << i;
    }
    EXPECT_EQ(at, 9 + 1 + 128 * 2 + 6 + 3 + 4 + 8 + 4 + 64 + 37 + 30 + 16 * 6 + 5 + 3 * 9 + 4u);
}

TEST(InstrumentFile, AnEmptyZoneReadsBackWithOneSample) {
    Instrument instrument;
    instrument.keyZones[9].push_back({});
    EXPECT_EQ(Load(Save(instrument))->CountLayers(9, 64), 1);
}

TEST(InstrumentFile, AFormOfWaveThatIsUnknownLeavesTheSampleWithoutOne) {
    const LogCapture log;
    const auto data = ByteBuilder().Chunk(0x00010005, ByteBuilder().Zeros(21))
        .Chunk(0x00020001, ByteBuilder().Zeros(3));
    const auto body = BodyBuilder(3);
    const auto ins = Load(ByteBuilder().Text("XVTLI0003").Bytes(body.bytes.bytes).Bytes(SampleChunk(data).bytes)
        .Chunk(0x00070001, ByteBuilder().Zeros(5)).EndChunk().bytes);
    ASSERT_TRUE(ins->GetSample(2));
    EXPECT_FALSE(ins->GetSample(2)->Wave());
    const std::string unknown = "\t\t\t\t\t- Unknown Instrument Data SubChunk found.\n";
    const std::string found = "\t\t\t\t\t\t\t\t- Sample Data Instrument Data SubChunk found.\n";
    EXPECT_TRUE(log.Text().ends_with(found + unknown + unknown + unknown));
}

TEST(InstrumentFile, AMissingPluginIsToldAndTheRestWithItsNameLoadsAndIsSavedAgain) {
    auto instrument = FullInstrument();
    const auto bytes = Save(*instrument);
    LoadReport report;
    const auto back = Load(bytes, report);
    ASSERT_TRUE(back);
    EXPECT_EQ(back->name, "every field");
    EXPECT_EQ(back->kind, 0u);
    ASSERT_EQ(report.lines.size(), 2u);
    EXPECT_EQ(report.lines[0], "Can't load Synth bass.dll");
    ExpectSame(instrument->GetSample(15), back->GetSample(15));
    const FakeLoader plugins;
    report.plugins = plugins.Get();
    const auto home = Load(Save(*back), report);
    ExpectSamePlugin(instrument->synth.get(), home->synth.get());
    EXPECT_EQ(home->name, "every field");
}

TEST(InstrumentFile, ClaimsBeyondTheFileAreCutToIt) {
    const auto huge = ByteBuilder().Chunk(0x00010001, ByteBuilder().U32(0xFFFFFFFF).U8(2).F32(1).F32(2).F32(3));
    auto file = ByteBuilder().Text("XVTLI0003").Bytes(BodyBuilder(3).bytes.bytes).Bytes(SampleChunk(huge).bytes);
    file.bytes.resize(file.bytes.size() - 8);        // nothing behind the wave but an odd float
    LoadReport report;
    const auto ins = Load(file.bytes, report);
    EXPECT_EQ(ins->GetSample(2)->Count(), 2u);
    EXPECT_EQ(ins->GetSample(2)->data->loopEnd, 2u);
    EXPECT_EQ(report.lines.size(), 3u);              // the wave, the loop, the cut file
}

// Hours of silence in a few bytes: those that fit into what a load may take are there, whatever comes between.
TEST(InstrumentFile, PackedSilenceIsBoundedAcrossAllSamples) {
    auto packets = SplitOgg(EncodeVorbis(std::vector<float>(9000, 0.0f), 1));
    const OggBytes silence = packets.at(6);
    const auto pack = [&](std::size_t count) {
        packets.resize(3);
        packets.insert(packets.end(), count, silence);   // each some thousand floats
        return JoinOgg(packets);
    };
    auto file = ByteBuilder().Text("XVTLI0003").Bytes(BodyBuilder(3).bytes.bytes);
    unsigned number = 0;
    for (const auto& packed : {pack(5000), pack(275000), pack(5000)}) {
        const auto data = ByteBuilder().Chunk(0x00010004, ByteBuilder().U32(0x7FFFFFFF).U8(1)
            .U32(static_cast<unsigned>(packed.size()) + 4).Bytes(packed));
        file.Chunk(0x00010001, ByteBuilder().U8(number++).EndedText("silence").Zeros(14).Bytes(data.bytes).EndChunk());
    }
    file.EndChunk();
    LoadReport report;
    const MemoryPeak memory;
    const auto ins = Load(file.bytes, report);
    if (MemoryPeak::kExact) {
        EXPECT_LT(memory.Bytes(), 100 << 20);
    }
    EXPECT_GT(ins->GetSample(0)->Count(), 4000000u);
    EXPECT_FALSE(ins->GetSample(1)->Wave());
    EXPECT_EQ(ins->GetSample(2)->Count(), ins->GetSample(0)->Count());
    EXPECT_EQ(report.lines.size(), 3u);
}

TEST(InstrumentFile, TheEntryTriesNativeFirstAndRefusesTheRest) {
    const TempDirectory directory;
    const auto path = directory.File("a.vti");
    ASSERT_EQ(SaveInstrument(path, *FullInstrument()), 0);
    LoadReport good, missing, foreign;
    const LogCapture log;
    EXPECT_TRUE(LoadInstrument(path, good));
    EXPECT_TRUE(log.Has("* Trying Load Instrument (" + path + ")\n"));
    EXPECT_FALSE(LoadInstrument(directory.File("none.vti"), missing));
    EXPECT_NE(missing.error, "");
    EXPECT_FALSE(LoadInstrument(directory.Write("b.vti", "something else"), foreign));
    EXPECT_NE(foreign.error, "");
    EXPECT_TRUE(log.Has("\t- Instrument format not supported\n"));
    EXPECT_EQ(SaveInstrument(directory.File("no/such/place.vti"), Instrument{}, &missing), 1);
}

}  // namespace
}  // namespace vonta
