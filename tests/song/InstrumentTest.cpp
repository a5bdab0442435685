#include "song/Instrument.h"

#include <gtest/gtest.h>

#include "tests/support/LogCapture.h"
#include "tests/support/SongBuilder.h"

namespace vonta {
namespace {

class QuietSynth final : public SynthPlugin {
public:
    bool Load(const std::string&) override { return true; }
    int Work(float*, int, int) override { return 0; }
    bool Init(int, int, int, std::uint32_t) override { return true; }
    std::string GetPath() const override { return {}; }
    std::string GetName() const override { return {}; }
    void SetName(const std::string&) override {}
    void NoteOn(int, int, int) override {}
    void NoteOff(int) override {}
};

TEST(KeyZones, StandSortedAndTheFirstThatHoldsTheVelocityPlays) {
    Instrument instrument;
    instrument.SetKeySample(60, 1, 64, 127);
    instrument.SetKeySample(60, 2, 0, 50);
    instrument.AddKeySample(60, 3, 64, 127);
    instrument.SetKeySample(60, 4, 64, 100);   // same low: in front
    constexpr struct { int velocity, layer, sample; } cases[] = {
        {0, 0, 2}, {50, 0, 2}, {51, 0, -1}, {64, 0, 4}, {64, 1, -1}, {101, 0, 1}, {127, 1, 3}, {127, 2, -1},
        {128, 0, -1}, {-1, 0, -1}, {101, -1, -1},
    };
    for (const auto& [velocity, layer, sample] : cases)
        EXPECT_EQ(instrument.GetKeySample(60, layer, velocity), sample) << velocity << ' ' << layer;
    EXPECT_EQ(instrument.CountZones(60), 3);
    EXPECT_EQ(instrument.GetZone(60, 1)->velocityHigh, 100);
    EXPECT_EQ(instrument.GetZone(60, 3), nullptr);
    for (const int key : {-1, 59, 128}) {
        EXPECT_EQ(instrument.GetKeySample(key, 0, 64), -1) << key;
        EXPECT_EQ(instrument.CountZones(key), 0) << key;
    }
}

TEST(KeyZones, HoldFourLayersAndSettingLeavesOne) {
    Instrument instrument;
    for (int sample = 0; sample < 5; ++sample) instrument.AddKeySample(0, sample, 0, 127);
    EXPECT_EQ(instrument.CountLayers(0, 64), 4);
    EXPECT_EQ(instrument.GetKeySample(0, 3, 64), 3);
    instrument.SetKeySample(0, 9, 0, 127);
    EXPECT_EQ(*instrument.GetZone(0, 0), (KeyZone{0, 127, {9}, 1}));
}

TEST(KeyZones, AreNotMadeWithoutEnd) {
    Instrument instrument;
    for (int high = 0; high < 1000; ++high) instrument.AddKeySample(5, 0, 0, high);
    EXPECT_EQ(instrument.CountZones(5), 256);
    instrument.SetKeySample(5, 256, 0, 1000);
    instrument.SetKeySample(128, 0, 0, 127);
    EXPECT_EQ(instrument.GetKeySample(5, 0, 1000), -1);
}

TEST(EnvelopeRotation, TakesTheNextEnabledAlternativeOfItsKind) {
    const struct { std::vector<int> enabled, taken; } cases[] = {
        {{}, {0, 1, 2, 3, 4, 5, 6, 7, 0, 1}},
        {{3}, {3, 3, 3}},
        {{0, 7}, {0, 7, 0, 7}},
    };
    for (int which = 0; which < kEnvelopeKinds; ++which) {
        const auto kind = static_cast<EnvelopeKind>(which);
        for (const auto& [enabled, taken] : cases) {
            Instrument instrument;
            for (const int i : enabled) instrument.GetEnvelopes(kind)[static_cast<std::size_t>(i)].enabled = 1;
            for (const int expected : taken) EXPECT_EQ(instrument.NextEnvelope(kind), expected);
            EXPECT_EQ(instrument.rotation[static_cast<std::size_t>(which)], (taken.back() + 1) % 8);
        }
    }
}

TEST(Instrument, SettingASampleHandsTheFormerOneBack) {
    Instrument instrument;
    auto first = MakeSample({1});
    first->toneRel = 12;
    first->volume = 7;
    EXPECT_EQ(instrument.SetSample(2, std::move(first), 1), nullptr);
    EXPECT_EQ(instrument.GetSample(2)->volume, 7);

    EXPECT_EQ(instrument.SetSample(2, nullptr, 0), nullptr);
    ASSERT_NE(instrument.GetSample(2), nullptr);

    const auto former = instrument.SetSample(2, MakeSample({2}), 0);
    EXPECT_EQ(former->volume, 7);
    EXPECT_EQ(instrument.GetSample(2)->volume, 128);
    EXPECT_EQ(instrument.GetSample(2)->toneRel, 12);

    EXPECT_NE(instrument.SetSample(2, nullptr, 1), nullptr);
    EXPECT_EQ(instrument.GetSample(2), nullptr);
    EXPECT_EQ(instrument.SetSample(256, MakeSample({2}), 0), nullptr);
}

TEST(Instrument, APlugInThatFailedToLoadLeavesTheSampleKind) {
    Instrument instrument;
    EXPECT_EQ(instrument.SetSynth(std::make_unique<QuietSynth>()), 0);
    EXPECT_EQ(instrument.kind, 1u);
    EXPECT_EQ(instrument.SetSynth(nullptr), 1);
    EXPECT_EQ(instrument.kind, 0u);
    EXPECT_EQ(instrument.synth, nullptr);
}

TEST(Instrument, TheCheckReachesSixteenSamplesAndAllEnvelopes) {
    Instrument instrument;
    instrument.SetName(std::string(300, 'n'));
    EXPECT_EQ(instrument.name.size(), 255u);
    instrument.SetName("Bass");
    instrument.SetSample(15, MakeSample({1, 2, 3}), 1);
    instrument.SetSample(16, MakeSample({1, 2, 3}), 1);
    instrument.numSamples = 17;
    instrument.fadeOut = 4096;
    instrument.resonanceEnvelopes[7].numPoints = 200;
    LogCapture log;
    instrument.Validate();
    EXPECT_EQ(log.Text(), "\t\t\ttesting instrument: Bass...\n\t\t\t\ttesting sam(15)\n");
    EXPECT_EQ(instrument.numSamples, 16);
    EXPECT_EQ(instrument.fadeOut, 4095);
    EXPECT_EQ(instrument.resonanceEnvelopes[7].numPoints, 12);
    EXPECT_EQ(instrument.GetSample(15)->Wave()[2], 2);
    EXPECT_EQ(instrument.GetSample(16)->Wave()[2], 3);
}

TEST(Instrument, ADuplicateTakesTheSoundAndLeavesTheRouting) {
    Instrument instrument;
    instrument.SetSample(3, MakeSample({1, 2, 2}), 1);
    instrument.GetSample(3)->volume = 5;
    instrument.numSamples = 4;
    instrument.fixedKey[9] = 1;
    instrument.effectMap[1] = 2;
    instrument.sends[2] = {1, 0.25f, 7};
    instrument.midi.channel = 3;
    instrument.filterOn = 1;
    instrument.gain = 0.5f;
    instrument.panEnvelopes[6].enabled = 1;
    const auto copy = instrument.Duplicate();
    EXPECT_EQ(copy->GetSample(3)->volume, 128);
    EXPECT_NE(copy->GetSample(3)->Wave(), instrument.GetSample(3)->Wave());
    EXPECT_EQ(copy->AddSample(MakeSample({1})), 4);
    EXPECT_EQ(copy->fixedKey, instrument.fixedKey);
    EXPECT_EQ(copy->effectMap, instrument.effectMap);
    EXPECT_EQ(copy->sends[2].level, 0.25f);
    EXPECT_EQ(copy->sends[2].slot, 2);
    EXPECT_EQ(copy->midi, instrument.midi);
    EXPECT_EQ(copy->filterOn, 1);
    EXPECT_EQ(copy->gain, 0.5f);
    EXPECT_EQ(copy->panEnvelopes, instrument.panEnvelopes);

    const Instrument fresh;
    instrument.MapAllKeys();
    instrument.kind = 1;
    instrument.busMask[0] = instrument.eq[0].on = instrument.useSynth = 1;
    instrument.pan = 0;
    instrument.transpose = instrument.fineTune = 5;
    const auto other = instrument.Duplicate();
    EXPECT_EQ(other->keyZones, fresh.keyZones);
    EXPECT_EQ(other->kind, fresh.kind);
    EXPECT_EQ(other->busMask, fresh.busMask);
    EXPECT_EQ(other->eq, fresh.eq);
    EXPECT_EQ(other->useSynth, fresh.useSynth);
    EXPECT_EQ(other->pan, fresh.pan);
    EXPECT_EQ(other->transpose + other->fineTune, 0);
}

TEST(ControllerText, NamesEveryController) {
    const struct { int controller; const char* text; } cases[] = {
        {0, "00: BankSelMSB"}, {3, "03: Control 3"},    {10, "0A: Pan"},        {99, "63: NRPN MSB"},
        {90, "5A: Control 90"}, {102, "66: Control102"}, {127, "7F: PolyModOn"}, {255, "None"},
    };
    for (const auto& [controller, text] : cases) EXPECT_EQ(ControllerText(controller), text);
}

}  // namespace
}  // namespace vonta
