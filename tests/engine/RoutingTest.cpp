#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>

#include "tests/support/SoundRig.h"

namespace vonta::test {
namespace {

constexpr float kScale = 32768.0f;

void Feed(Channel& channel, int slot, float level = 1) {
    channel.sendMask |= 1u << slot;
    channel.sends[slot] = level;
}

// The first way out of a slot; the others stay shut.
FxRouting Way(int target, float gain = 1) {
    return {{target, kNoTarget, kNoTarget, kNoTarget}, {gain, 1, 1, 1}, {1, 1, 1, 1}};
}

TEST(Routing, EachWayOutTakesTheChannelsThatItShould) {
    enum From { kTrack, kReserve, kFadingReserve, kMutedInstrument, kStopped };
    struct Case { const char* name; From from; int group, bus, send; Frame want; };
    const Case cases[] = {
        {"group", kTrack, 1, 0, 0, {200, 300}},
        {"bus", kTrack, 0, 1, 0, {200, 300}},
        {"group and bus sound twice", kTrack, 1, 1, 0, {400, 600}},
        {"send alone", kTrack, 0, 0, 1, {50, 100}},
        {"no way out", kTrack, 0, 0, 0, {0, 0}},
        {"reserve reaches group and send but no bus", kReserve, 1, 1, 1, {250, 400}},
        {"reserve to the bus alone", kReserve, 0, 1, 0, {0, 0}},
        {"fading reserve", kFadingReserve, 1, 1, 1, {250, 400}},
        {"muted instrument", kMutedInstrument, 1, 1, 1, {0, 0}},
        {"stopped", kStopped, 1, 1, 1, {0, 0}},
    };
    for (const Case& c : cases) {
        SoundRig rig;
        rig.Effect(0).gain = 1;
        rig.song->buses[0].active = 1;
        const bool reserve = c.from == kReserve || c.from == kFadingReserve;
        Channel& channel = reserve ? rig.Reserve(5, 100, 200) : rig.Track(5, 100, 200);
        if (c.from == kStopped || c.from == kFadingReserve) channel.active = 0;
        if (c.from == kFadingReserve) channel.voices[0].fadeCount = 16;
        channel.instrumentMuted = c.from == kMutedInstrument;
        channel.busLeft = 2.0f;
        channel.busRight = 1.5f;
        channel.groupOutput = static_cast<std::uint8_t>(c.group);
        channel.busMask = static_cast<std::uint8_t>(c.bus);
        if (c.send) Feed(channel, 0);              // at pan 0.5 half of it reaches each side
        rig.Block();
        const Frame out = rig.mixer->outputUsed[0] ? rig.Out() : Frame{0, 0};
        EXPECT_EQ(out, c.want) << c.name;
        EXPECT_EQ(rig.mixer->outputUsed[0] != 0, c.want != Frame(0, 0)) << c.name;
    }
}

TEST(Routing, GroupsGoToTheOutputOfTheInstrumentAndAreMarked) {
    SoundRig rig;
    rig.song->instruments[1]->groupOutput = 3;
    rig.Track(0, 10, 20).groupOutput = 1;          // the channel's own number only says that there is a group
    for (int i = 1; i < 3; ++i) {
        Channel& channel = rig.Track(i, 1, 2);
        channel.groupOutput = 1;
        channel.lastInstrument = 1;
    }
    rig.Block();
    EXPECT_EQ(rig.Out(0), Frame(10, 20));
    EXPECT_EQ(rig.Out(3), Frame(2, 4));
    EXPECT_EQ(rig.song->instruments[1]->groupBuffer[0], 2);
    EXPECT_TRUE(rig.mixer->groupUsed[0] && rig.mixer->groupUsed[1] && !rig.mixer->groupUsed[2]);
}

TEST(Routing, ABufferFirstUsedInALaterSegmentIsSilentBefore) {
    SoundRig rig;
    rig.song->instruments[0]->groupBuffer.fill(9);
    rig.mixer->outputBuffer[0].fill(9);
    rig.mixer->BeginBlock();
    rig.Segment(0, 10);
    Channel& channel = rig.Track(0, 5, 6);
    channel.groupOutput = 1;
    rig.Segment(10, 10);
    channel.active = 0;
    rig.Segment(20, 10);
    for (int frame = 0; frame < 30; ++frame) {
        const bool sounds = frame >= 10 && frame < 20;
        EXPECT_EQ(rig.Out(0, frame), sounds ? Frame(5, 6) : Frame(0, 0)) << frame;
        EXPECT_EQ(rig.song->instruments[0]->groupBuffer[2 * frame], sounds ? 5 : 0) << frame;
    }
}

TEST(Routing, SlotsTakeAndGiveMonoOrStereo) {
    struct Case { bool stereoIn, stereoOut; std::vector<float> input; Frame want; };
    const float l = 1024, r = 3072, level = 0.5f, volume = 0.5f;
    const float inLeft = l * level / kScale, inRight = r * level / kScale, inMono = inLeft + inRight;
    const float left = 0.75f * volume * kScale, right = 0.25f * volume * kScale;
    const Case cases[] = {
        {true, true, {inLeft, inRight}, {inLeft * left, inRight * right}},
        {true, false, {inLeft, inRight}, {inLeft * left, inLeft * right}},
        {false, true, {inMono}, {inMono * left, inMono * right}},
        {false, false, {inMono}, {inMono * left, inMono * right}},
    };
    for (const Case& c : cases) {
        SoundRig rig;
        TestEffect& effect = rig.Effect(2, c.stereoIn, c.stereoOut);
        effect.volume = volume;
        effect.pan = 0.25f;
        effect.output = 7;
        Feed(rig.Track(0, l, r), 2, level);
        rig.Block(5);
        ASSERT_EQ(effect.input.size(), c.input.size() * 5);
        for (std::size_t i = 0; i < effect.input.size(); ++i)
            EXPECT_EQ(effect.input[i], c.input[i % c.input.size()]);
        for (int frame = 0; frame < 5; ++frame) EXPECT_EQ(rig.Out(7, frame), c.want);
        EXPECT_EQ(rig.mixer->fxUsed, 1u << 2);
        EXPECT_EQ(rig.mixer->outputUsed[0], 0);
    }
}

TEST(Routing, OneSlotFeedsAnotherAtVolumeAndGain) {
    struct Case { bool stereoOut, stereoIn; std::vector<float> want; };
    const float l = 0.5f, r = 0.25f, level = 0.5f * 0.25f;      // volume x gain
    const Case cases[] = {
        {true, true, {l * 0.75f * level, r * 0.25f * level}},
        {false, true, {l * 0.75f * level, l * 0.25f * level}},
        {true, false, {(l + r) * 0.5f * level}},
        {false, false, {l * level * 0.25f}},
    };
    for (const Case& c : cases) {
        SoundRig rig;
        TestEffect& from = rig.Effect(0, true, c.stereoOut);
        TestEffect& to = rig.Effect(3, c.stereoIn, true);
        from.volume = 0.5f;
        from.pan = 0.25f;
        Feed(rig.Track(0, l * kScale, r * kScale), 0);
        rig.song->fxRouting[0] = Way(3, 0.25f);
        rig.Block(3);
        ASSERT_EQ(to.input.size(), 3 * c.want.size());
        for (std::size_t i = 0; i < to.input.size(); ++i) EXPECT_EQ(to.input[i], c.want[i % c.want.size()]);
        EXPECT_EQ(to.silent, std::vector<int>{0});
    }
}

TEST(Routing, TheLastWayIntoASlotStandsAndItsOwnSendsAddToIt) {
    SoundRig rig;
    rig.Effect(0);
    rig.Effect(1);
    TestEffect& target = rig.Effect(2);
    for (int slot = 0; slot < 3; ++slot) Feed(rig.Track(slot, kScale * static_cast<float>(slot + 1), 0), slot);
    for (int slot = 0; slot < 2; ++slot) rig.song->fxRouting[slot] = Way(2);
    rig.Block();
    EXPECT_EQ(target.input[0], 2 * 0.5f + 3);      // slot 1 at pan 0.5, and track 2; nothing of slot 0
}

TEST(Routing, WhatCannotBeFedIsSkipped) {
    for (const int target : {kNoTarget, -7, 0, 1, 2, 4, 8, 9, 10, 1 << 30}) {
        SoundRig rig;
        TestEffect& earlier = rig.Effect(0);
        rig.Effect(1);
        TestEffect& off = rig.Effect(4);
        off.on = 0;
        rig.Effect(8);
        Feed(rig.Track(0, kScale, kScale), 1);
        rig.song->fxRouting[1] = Way(target);
        const StereoBuffer before = rig.mixer->fxBuffer[0];
        rig.Block();
        EXPECT_EQ(rig.Out(0), Frame(kScale / 2, kScale / 2)) << target;
        EXPECT_EQ(earlier.silent, std::vector<int>{1}) << target;
        EXPECT_TRUE(off.silent.empty());
        EXPECT_EQ(rig.mixer->fxBuffer[0], before) << target;
    }
}

TEST(Routing, ATailReachesOutputAndLaterSlotsWithoutInput) {
    SoundRig rig;
    TestEffect& effect = rig.Effect(0);
    TestEffect& next = rig.Effect(1);
    rig.song->fxRouting[0] = Way(1);
    rig.Block();
    EXPECT_EQ(rig.mixer->outputUsed[0], 0);
    EXPECT_EQ(rig.mixer->fxUsed, 0);
    effect.tail = 0.5f;
    rig.Block();
    EXPECT_EQ(effect.silent, (std::vector<int>{1, 1}));
    EXPECT_EQ(next.silent, (std::vector<int>{1, 0}));
    EXPECT_EQ(rig.Out(), Frame((0.25f + 0.125f) * kScale, (0.25f + 0.125f) * kScale));
    EXPECT_EQ(rig.mixer->fxUsed, 3);
}

TEST(Routing, IdleSlotsAndBusesAreSilencedOnlyWhenAsked) {
    for (const bool clear : {false, true}) {
        SoundRig rig;
        rig.Effect(0);
        rig.Effect(1, true, false);
        rig.Effect(2).on = 0;
        rig.mixer->clearIdle = clear;
        for (auto& buffer : rig.mixer->fxBuffer) buffer.fill(7);
        rig.mixer->busBuffer[1].fill(7);
        rig.mixer->BeginBlock();
        rig.Segment(10, 10);
        const float want = clear ? 0.0f : 7.0f;
        for (const int slot : {0, 2}) {
            EXPECT_EQ(rig.mixer->fxBuffer[slot][20], want);
            EXPECT_EQ(rig.mixer->fxBuffer[slot][39], want);
            EXPECT_EQ(rig.mixer->fxBuffer[slot][19], 7);
        }
        EXPECT_EQ(rig.mixer->fxBuffer[1][10], want);        // a mono output stands float by float
        EXPECT_EQ(rig.mixer->fxBuffer[1][19], want);
        EXPECT_EQ(rig.mixer->fxBuffer[1][20], 7);
        EXPECT_EQ(rig.mixer->busBuffer[1][20], want);
    }
}

TEST(Routing, BusesHaveVolumeSendsAndOutput) {
    SoundRig rig;
    TestEffect& effect = rig.Effect(5);
    effect.muted = 1;
    rig.Track(0, 100, 200).busMask = 0b0110;
    Bus& bus = rig.song->buses[1];
    bus.active = 1;
    bus.volume = 0.5f;
    bus.output = 4;
    bus.sendEnabled = {1, 0, 1, 0};
    bus.sendTarget = {5, 5, 5, 5};
    bus.sendGain = {1, 64, 2, 64};
    rig.Block();
    EXPECT_EQ(rig.Out(4), Frame(50, 100));
    EXPECT_EQ(effect.input[0], 300 / kScale);      // the bus's volume is not of its sends
    EXPECT_EQ(rig.mixer->busUsed, 0b0110);
    EXPECT_EQ(rig.mixer->busBuffer[2][1], 200);    // not active: filled, but goes nowhere
    EXPECT_EQ(rig.mixer->outputUsed[0], 0);
}

TEST(Routing, SynthsGoToOutputBusesAndSendsAsTheirSectionSays) {
    struct Case { const char* name; std::uint8_t on, muted; Frame out, bus; };
    const float l = 0.25f * 65536 * 0.5f * 0.25f, r = 0.5f * 65536 * 0.5f * 0.75f;
    const Case cases[] = {
        {"on", 1, 0, {l, r}, {l, r}},
        {"off", 0, 0, {0, 0}, {l, r}},
        {"muted", 1, 1, {0, 0}, {0, 0}},
    };
    for (const Case& c : cases) {
        SoundRig rig;
        TestEffect& effect = rig.Effect(1, false);
        effect.muted = 1;
        TestSynth& synth = rig.Synth(127);
        synth.bypass = 1;                          // taken away for the work
        synth.buffer.fill(3);
        synth.on = c.on;
        synth.muted = c.muted;
        synth.pan = 0.75f;
        synth.volume = 0.5f;
        synth.output = 2;
        synth.busEnable[3] = 1;
        synth.sends[1].on = 1;
        synth.sends[1].level = 0.5f;
        rig.song->buses[3].active = 1;
        rig.Block();
        const auto& out = rig.mixer->outputUsed;
        EXPECT_EQ(out[2] ? rig.Out(2) : Frame(0, 0), c.out) << c.name;
        EXPECT_EQ(out[0] ? rig.Out(0) : Frame(0, 0), c.bus) << c.name;
        EXPECT_EQ(effect.input[0], 0.75f * 0.5f) << c.name;
    }
}

// Everything at once, with moving sound, cut into segments at random: the same floats as in one piece.
TEST(Routing, CuttingTheBlockAnywhereChangesNoFrame) {
    constexpr int kFrames = 700;
    const auto render = [](std::uint32_t seed) {
        std::mt19937 random(seed);
        SoundRig rig;
        std::mt19937 noise(1);
        for (float& v : rig.wave) v = static_cast<float>(noise() % 2000) - 1000;
        for (int i = 0; i < 6; ++i) {
            Channel& channel = i < 4 ? rig.Track(i, 1, 0.5f) : rig.Reserve(i, 1, 0.5f);
            channel.voices[0].position += 2 * i;
            channel.groupOutput = static_cast<std::uint8_t>(i % 2);
            channel.lastInstrument = static_cast<std::uint8_t>(i / 3);
            channel.busMask = static_cast<std::uint8_t>(i);
            channel.sendMask = static_cast<std::uint32_t>(i * 3);
            channel.sends.fill(0.25f);
            channel.filterOn = i & 1;
            channel.filterLeft = channel.filterBankLeft[1].get();
            channel.filterRight = channel.filterBankRight[1].get();
            channel.eq[0].Set(44100, 1000, 12);
            channel.eq[0].on = i & 2;
        }
        for (auto& bus : rig.song->buses) bus.active = 1;
        rig.song->buses[0].sendEnabled[3] = 1;
        rig.Effect(0);
        rig.Effect(1, false, true);
        rig.Effect(2, true, false).tail = 0.125f;
        rig.Effect(3, false, false);
        for (int slot = 0; slot < 3; ++slot) rig.song->fxRouting[slot].enabled = {1, 1, 0, 0};
        TestSynth& synth = rig.Synth(3);
        synth.sends[2].on = synth.busEnable[2] = 1;
        rig.mixer->BeginBlock();
        for (int at = 0; at < kFrames;) {
            const int cut = seed == 0 ? kFrames : static_cast<int>(random() % 60 + 1);
            const int frames = std::min(cut, kFrames - at);
            rig.Segment(at, frames);
            at += frames;
        }
        return std::move(rig.mixer);
    };
    const auto whole = render(0);
    for (std::uint32_t seed = 1; seed < 6; ++seed) {
        const auto cut = render(seed);
        EXPECT_EQ(cut->outputBuffer[0], whole->outputBuffer[0]);
        for (int slot = 0; slot < 4; ++slot) {
            const auto& want = whole->fxBuffer[slot];
            const int floats = slot < 2 ? 2 * kFrames : kFrames;       // behind a mono output its input remains
            EXPECT_TRUE(std::equal(want.begin(), want.begin() + floats, cut->fxBuffer[slot].begin())) << slot;
        }
        EXPECT_EQ(cut->busBuffer, whole->busBuffer);
    }
}

TEST(Routing, NumbersFromADamagedSongNeverLeaveTheBuffers) {
    SoundRig rig;
    Channel& channel = rig.Track(0, 100, 100);
    channel.busMask = 1;
    channel.groupOutput = 255;
    channel.sendMask = 0xFFFFFFFF;
    channel.sends[0] = 1;
    rig.song->instruments[0]->groupOutput = 16;
    rig.song->buses[0].active = 1;
    rig.song->buses[0].output = 255;
    rig.song->buses[0].sendEnabled = {1, 1, 1, 1};
    rig.song->buses[0].sendTarget = {8, 9, 10, 255};
    rig.Effect(0).output = 200;
    rig.Synth(0).output = 99;
    rig.Reserve(0, 1, 1).lastInstrument = 77;      // no such instrument
    rig.mixer->reserve[0]->groupOutput = 1;
    rig.Block();
    EXPECT_EQ(rig.Out(0), Frame(100 + 100 + 50 + 8192, 100 + 100 + 50 + 16384));
}

TEST(Routing, WhatIsNoNumberDoesNotSpreadThroughPlugins) {
    const float nan = std::numeric_limits<float>::quiet_NaN();
    SoundRig rig;
    rig.Synth(0).left = nan;
    TestEffect& broken = rig.Effect(0);
    broken.tail = nan;
    TestEffect& fed = rig.Effect(1);
    rig.song->fxRouting[0] = Way(1);
    Feed(rig.Track(0, nan, 100), 1);
    rig.Block();
    for (const float v : fed.input) EXPECT_TRUE(std::isfinite(v));
    EXPECT_TRUE(std::isfinite(rig.Out().first));
}

TEST(Routing, FiltersRunOnWhatIsLiveOnTheLeft) {
    struct Case { const char* name; bool reserve, active, filter, band; float left; bool filtered; };
    const Case cases[] = {
        {"filter", false, true, true, false, 100, true},
        {"band alone", false, true, false, true, 100, true},
        {"neither", false, true, false, false, 100, false},
        {"left side at the threshold", false, true, true, true, 1, false},
        {"reserve with a band alone", true, true, false, true, 100, true},
        {"fading reserve with a filter", true, false, true, false, 100, true},
        {"fading reserve with a band alone", true, false, false, true, 100, true},
    };
    for (const Case& c : cases) {
        SoundRig rig;
        Channel& channel = c.reserve ? rig.Reserve(0, c.left, 100) : rig.Track(0, c.left, 100);
        if (!c.active) {
            channel.active = 0;
            channel.voices[0].fadeCount = 256;
        }
        channel.filterOn = c.filter;
        channel.filterLeft = channel.filterBankLeft[6].get();
        channel.filterRight = channel.filterBankRight[6].get();
        channel.filterLeft->SetResonance(0.5f);
        channel.filterRight->SetResonance(0.5f);
        channel.eq[1].on = c.band;
        channel.eq[1].Set(44100, 2000, 20);
        rig.Block();
        const auto& buffer = c.reserve ? rig.mixer->reserveBuffer[0] : rig.mixer->channelBuffer[0];
        EXPECT_EQ(buffer[0] != c.left, c.filtered) << c.name;
        EXPECT_EQ(buffer[1] != 100, c.filtered) << c.name;
    }
}

TEST(Mixer, SetEffectHandsOnTheOnByteAndKeepsTheOldIfTheNewFails) {
    SoundRig rig;
    rig.mixer->sampleRate = 48000;
    std::vector<std::string> log;
    const auto make = [&log](bool fails) {
        auto effect = std::make_unique<TestEffect>();
        effect->log = &log;
        effect->startFails = fails;
        return effect;
    };
    rig.mixer->SetEffect(8, make(false));
    EXPECT_EQ(rig.mixer->effects[8]->on, 1);
    rig.mixer->EffectOn(8, 0);
    const EffectSlot* first = rig.mixer->effects[8].get();
    rig.mixer->SetEffect(8, make(true));
    EXPECT_EQ(rig.mixer->effects[8].get(), first);
    rig.mixer->SetEffect(8, make(false));
    EXPECT_EQ(rig.mixer->effects[8]->on, 0);
    rig.mixer->SetEffect(8, nullptr);
    EXPECT_EQ(rig.mixer->effects[8], nullptr);
    EXPECT_EQ(log, (std::vector<std::string>{"init 48000", "init 48000", "destroyed", "init 48000", "uninit",
                                             "destroyed", "uninit", "destroyed"}));
    rig.mixer->SetEffect(10, make(false));
    rig.mixer->EffectOn(-1, 1);
    rig.mixer->EffectOn(8, 1);
}

TEST(Mixer, MidiOutputReachesPortsBelow128AndSynthsFromThere) {
    SoundRig rig;
    rig.mixer->midiOut[2] = std::make_unique<FlushCounter>();
    TestSynth& synth = rig.Synth(5);
    EXPECT_EQ(rig.mixer->MidiOutput(*rig.song, 2), rig.mixer->midiOut[2].get());
    EXPECT_EQ(rig.mixer->MidiOutput(*rig.song, 128 + 5), &synth.midiSide);
    for (const int output : {-1, 3, 128, 255, 256, 1000})
        EXPECT_EQ(rig.mixer->MidiOutput(*rig.song, output), nullptr) << output;
}

}  // namespace
}  // namespace vonta::test
