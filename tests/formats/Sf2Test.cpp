#include <gtest/gtest.h>

#include <chrono>

#include "formats/instruments/LoaderSF2.h"
#include "tests/support/Damage.h"
#include "tests/support/LogCapture.h"
#include "tests/support/MemoryPeak.h"
#include "tests/support/Sf2Builder.h"
#include "tests/support/TempDirectory.h"

namespace vonta {
namespace {

using namespace test;

struct LoadedBank {
    LoadReport report;
    std::unique_ptr<Instrument> instrument;

    explicit LoadedBank(FileBytes bytes) {
        MemoryStream stream(std::move(bytes), "x.sf2");
        instrument = LoaderSF2().Load(stream, report);
    }
    explicit LoadedBank(const Sf2Builder& bank) : LoadedBank(bank.Build()) {}
    const Envelope& Volume() const { return instrument->volumeEnvelopes[0]; }
};

// One sample on all keys, with these generators before it.
Sf2Builder OneZone(Sf2Generators generators) {
    Sf2Builder bank = Sf2Builder::Small();
    generators.insert(generators.begin(), {kSf2Keys, Sf2Range(0, 127)});
    generators.push_back({kSf2Sample, 0});
    bank.instruments = {{generators}};
    return bank;
}

TEST(LoaderSF2, ABankBecomesOneInstrument) {
    const TempDirectory directory;
    const auto path = directory.Write("x.sf2", Sf2Builder::Small().Text());
    LoadReport report;
    const LogCapture log;
    const auto instrument = LoadInstrument(path, report);
    ASSERT_TRUE(instrument) << report.error;
    EXPECT_TRUE(report.lines.empty());
    EXPECT_TRUE(log.Has("* LOADING SF2 file (" + path + ")...\n\t- file (" + path + ") opened\n")) << log.Text();
    EXPECT_TRUE(log.Has("Chunk INFO\nChunk sdta\nChunk pdta\n\t- file (" + path +
                        ") closed\n\t- instrument loaded correctly\n")) << log.Text();
    EXPECT_EQ(instrument->name, "bank");
    ASSERT_EQ(instrument->numSamples, 2);
    EXPECT_EQ(instrument->GetKeySample(59, 0, 64), 0);
    EXPECT_EQ(instrument->GetKeySample(60, 0, 64), 1);
    const Sample& first = *instrument->GetSample(0);
    EXPECT_EQ(first.name, "first");
    EXPECT_EQ(first.Count(), 5u);
    EXPECT_EQ(first.Wave()[2], -1000.0f);
    EXPECT_EQ(first.data->loopType, VTSAMPLE_LOOP_FORDWARD);
    EXPECT_EQ(first.data->loopStart, 1u);
    EXPECT_EQ(first.data->loopEnd, 4u);
    EXPECT_EQ(first.volume, 128);
    EXPECT_EQ(first.toneRel, 16);
    EXPECT_EQ(first.fineTune, 100);
    const Sample& second = *instrument->GetSample(1);
    EXPECT_EQ(second.Wave()[0], 1.0f);
    EXPECT_EQ(second.data->loopType, VTSAMPLE_LOOP_NONE);
    EXPECT_EQ(second.toneRel, 64 - 72 + 2);              // 22050 Hz is note 64; coarse tune 2
}

TEST(LoaderSF2, TypesOfSamplesSetTheirPlace) {
    const struct { unsigned type; int panning; } cases[] = {{1, 128}, {2, 255}, {4, 0}, {8, 128}, {0x8001, 0}};
    for (const auto& c : cases) {
        Sf2Builder bank = Sf2Builder::Small();
        bank.samples[0].type = c.type;
        EXPECT_EQ(LoadedBank(bank).instrument->GetSample(0)->panning, c.panning) << c.type;
    }
}

TEST(LoaderSF2, TuneStaysWithinItsRange) {
    const struct { unsigned rate, pitch; int tone, fine; } cases[] = {
        {44100, 60, 16, 100}, {8363, 48, 0, 0}, {0, 48, 0, 0}, {0xFFFFFFFF, 0, 95, 82}, {44100, 255, 16, 100}};
    for (const auto& c : cases) {
        Sf2Builder bank = Sf2Builder::Small();
        bank.samples[0].rate = c.rate;
        bank.samples[0].pitch = c.pitch;
        const LoadedBank loaded(bank);
        EXPECT_EQ(loaded.instrument->GetSample(0)->toneRel, c.tone) << c.rate;
        EXPECT_EQ(loaded.instrument->GetSample(0)->fineTune, c.fine) << c.rate;
    }
}

// Points x, y as the generators of the last zone give them; a second zone starts from -1 timecents.
TEST(LoaderSF2, GeneratorsShapeTheVolume) {
    const struct { const char* what; Sf2Generators generators; std::array<EnvelopePoint, 4> points; int fadeOut; }
        cases[] = {
            {"nothing told", {}, {{{0, 0}, {0, 0}, {0, 64}, {0, 64}}}, 4093},
            {"times", {{kSf2Delay, 0}, {kSf2Attack, 1200}, {kSf2Hold, 0}, {kSf2Sustain, 1}, {kSf2Release, 0}},
             {{{0, 0}, {50, 0}, {150, 64}, {200, 64}}}, 2686},
            {"hold counts only below the full level", {{kSf2Hold, 0}}, {{{0, 0}, {0, 0}, {0, 64}, {0, 64}}}, 4093},
            {"long times stop at the end", {{kSf2Delay, 32767}, {kSf2Attack, 32767}},
             {{{0, 0}, {420, 0}, {420, 64}, {420, 64}}}, 4093},
            {"long release", {{kSf2Release, 8000}}, {{{0, 0}, {0, 0}, {0, 64}, {0, 64}}}, 80},
        };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        const LoadedBank loaded(OneZone(c.generators));
        const Envelope& envelope = loaded.Volume();
        ASSERT_EQ(envelope.numPoints, 4);
        for (std::size_t i = 0; i < 4; ++i) {
            EXPECT_EQ(envelope.points[i].x, c.points[i].x) << i;
            EXPECT_EQ(envelope.points[i].y, c.points[i].y) << i;
        }
        EXPECT_TRUE(envelope.enabled && envelope.timeBased && envelope.sustainOn && envelope.sustainPoint == 3);
        EXPECT_EQ(loaded.instrument->fadeOut, c.fadeOut);
    }
    const LoadedBank two(Sf2Builder::Small());
    EXPECT_EQ(two.Volume().points[2].x, 49);
    EXPECT_EQ(two.instrument->fadeOut, 2687);
}

TEST(LoaderSF2, ZonesFindTheirKeys) {
    Sf2Builder bank = Sf2Builder::Small();
    bank.instruments[0] = {
        {{kSf2Keys, Sf2Range(10, 20)}},              // global: flows into the first
        {{kSf2Velocities, Sf2Range(0, 63)}, {kSf2Sample, 0}},
        {{kSf2Keys, Sf2Range(10, 200)}, {kSf2Velocities, Sf2Range(64, 127)}, {kSf2Scale, 0}, {kSf2Sample, 1}},
        {{kSf2Sample, 0}},                           // keys from the preset
    };
    bank.presetZones = {{{kSf2Instrument, 0}}, {{kSf2Keys, Sf2Range(3, 4)}, {kSf2Instrument, 7}},
                        {{kSf2Keys, Sf2Range(1, 2)}, {kSf2Instrument, 0}},
                        {{kSf2Keys, Sf2Range(5, 6)}, {kSf2Instrument, 0}}};
    const auto instrument = LoadedBank(bank).instrument;
    EXPECT_EQ(instrument->GetKeySample(10, 0, 63), 0);
    EXPECT_EQ(instrument->GetKeySample(10, 0, 64), 1);
    EXPECT_EQ(instrument->GetKeySample(127, 0, 127), 1);
    EXPECT_EQ(instrument->GetKeySample(9, 0, 64), -1);
    EXPECT_EQ(instrument->fixedKey[9] + instrument->fixedKey[10], 1);
    EXPECT_EQ(instrument->GetKeySample(5, 0, 0), 0);
    EXPECT_EQ(instrument->CountLayers(1, 0), 0);
}

TEST(LoaderSF2, AZoneWithoutKeysLeavesItsSampleAlone) {
    Sf2Builder bank = Sf2Builder::Small();
    bank.instruments[0] = {{{kSf2Coarse, 5}, {kSf2Modes, 1}, {kSf2Sample, 0}}};
    const auto instrument = LoadedBank(bank).instrument;
    EXPECT_EQ(instrument->CountLayers(60, 64), 0);
    EXPECT_EQ(instrument->GetSample(0)->toneRel, 16);
    EXPECT_EQ(instrument->GetSample(0)->data->loopType, VTSAMPLE_LOOP_NONE);
}

TEST(LoaderSF2, ALoopWithoutPointsGoesOverTheWholeWave) {
    Sf2Builder bank = OneZone({{kSf2Modes, 3}});
    bank.samples[0].loopStart = bank.samples[0].loopEnd = 2;
    const auto instrument = LoadedBank(bank).instrument;
    EXPECT_EQ(instrument->GetSample(0)->data->loopType, VTSAMPLE_LOOP_FORDWARD);
    EXPECT_EQ(instrument->GetSample(0)->data->loopStart, 0u);
    EXPECT_EQ(instrument->GetSample(0)->data->loopEnd, 5u);
}

TEST(LoaderSF2, TakesTheFirst256Samples) {
    Sf2Builder bank = Sf2Builder::Small();
    bank.samples.assign(300, {"many", {1, 2}});
    bank.samples[255].name = "last";
    const LoadedBank loaded(bank);
    ASSERT_EQ(loaded.instrument->numSamples, 256);
    EXPECT_EQ(loaded.instrument->GetSample(255)->name, "last");
    ASSERT_EQ(loaded.report.lines.size(), 1u);
    EXPECT_EQ(loaded.report.lines[0], "The bank has 300 samples: the first 256 are taken.");
}

TEST(LoaderSF2, ABankWithOneInstrumentRecordHasNoSamples) {
    auto bytes = Sf2Builder::Small().Build();
    const std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    bytes[text.find("inst\x2C") + 4] = 22;               // one record instead of two; the walk goes on in the second
    const LoadedBank loaded(bytes);
    ASSERT_TRUE(loaded.instrument);
    EXPECT_EQ(loaded.instrument->numSamples, 0);
    EXPECT_FALSE(loaded.report.lines.empty());
}

constexpr std::int64_t kMegabyte = 1 << 20;

// A megabyte that asks for as much as it can: every sample the whole wave, or nothing but zones that fit no others.
TEST(LoaderSF2, NoSmallBankTakesMuchMemoryOrTime) {
    Sf2Builder greedy = Sf2Builder::Small();
    greedy.samples.assign(256, {"all"});
    greedy.samples[0].wave.assign(kMegabyte / 2, 1);
    auto shared = greedy.Build();
    for (std::size_t i = 0; i < 256; ++i) {              // each header names the wave of the first
        const std::size_t header = shared.size() - (257 - i) * 46;
        const std::size_t first = shared.size() - 257 * 46;
        std::copy_n(shared.begin() + static_cast<std::ptrdiff_t>(first), 46,
                    shared.begin() + static_cast<std::ptrdiff_t>(header));
    }
    Sf2Builder zones = Sf2Builder::Small();
    zones.instruments[0].clear();
    for (int i = 0; i < 60000; ++i)
        zones.instruments[0].push_back({{kSf2Keys, Sf2Range(0, 127)}, {kSf2Velocities, i & 0xFFFF}, {kSf2Sample, i}});
    const struct { const char* what; FileBytes bytes; } cases[] = {{"waves", shared}, {"zones", zones.Build()}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        const MemoryPeak peak;
        const auto start = std::chrono::steady_clock::now();
        const LoadedBank loaded(c.bytes);
        const auto elapsed = std::chrono::steady_clock::now() - start;
        ASSERT_TRUE(loaded.instrument);
        EXPECT_FALSE(loaded.report.lines.empty());
        EXPECT_LT(peak.Bytes(), 64 * kMegabyte + 12 * static_cast<std::int64_t>(c.bytes.size()));
        EXPECT_LT(elapsed, MemoryPeak::kExact ? std::chrono::milliseconds(500) : std::chrono::seconds(10));
    }
}

TEST(LoaderSF2, ALargeBankTakesTwiceItsWave) {
    const TempDirectory directory;
    std::string path;
    std::int64_t waveBytes = 0;
    {
        Sf2Builder bank = Sf2Builder::Small();
        bank.samples.assign(16, {"part", std::vector<int>(kMegabyte, 7)});
        waveBytes = 16 * 2 * kMegabyte;
        path = directory.Write("large.sf2", bank.Text());
    }
    const MemoryPeak peak;
    LoadReport report;
    const auto instrument = LoaderSF2().Load(path, report);
    ASSERT_TRUE(instrument);
    EXPECT_EQ(instrument->GetSample(15)->Wave()[kMegabyte - 1], 7.0f);
    if (MemoryPeak::kExact) {
        EXPECT_LT(peak.Bytes(), 2 * waveBytes + 2 * kMegabyte);
    }
}

}  // namespace
}  // namespace vonta
