#include "midi/DrvMIDIOUTSystem.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <utility>

#include "tests/support/LogCapture.h"
#include "tests/support/ScriptedMidi.h"

namespace vonta {
namespace {

using Messages = std::vector<std::uint32_t>;

// One output on a scripted port.
struct OutputRig {
    std::shared_ptr<test::ScriptedMidi> midi = std::make_shared<test::ScriptedMidi>();
    DrvMIDIOUTSystem output{midi};

    explicit OutputRig(bool open = true) {
        midi->outputs.push_back({.name = "Synth"});
        if (open) output.Open(0);
    }
    // What leaves at `now`.
    Messages Flush(std::uint32_t now) {
        Sent().clear();
        output.Flush(now);
        return Sent();
    }
    Messages& Sent() { return midi->outputs[0].sent; }
};

constexpr std::uint32_t NoteOnMessage(int note) { return 0x40'00'90 | static_cast<std::uint32_t>(note) << 8; }

TEST(DrvMIDIOUT, PacksEachKindOfMessage) {
    OutputRig rig;
    const LogCapture log;
    rig.output.NoteOn(60, 1, 100, 0);
    rig.output.NoteOff(60, 15, 0);
    rig.output.ProgramChange(2, 127, 0);
    rig.output.ControlChange(3, 7, 99, 0);
    EXPECT_EQ(rig.Flush(0), (Messages{0x643C91, 0x003C8F, 0x007FC2, 0x6307B3}));
    EXPECT_EQ(log.Text(), "midi controller(7) channel(3) parm(99)\n");
}

TEST(DrvMIDIOUT, ValuesOfASongThatAreNoDataBytesAreHeldToThem) {
    OutputRig rig;
    rig.output.ControlChange(0, 7, 255, 0);
    rig.output.ProgramChange(0, 128, 0);
    EXPECT_EQ(rig.Flush(0), (Messages{0x7F07B0, 0x007FC0}));
}

TEST(DrvMIDIOUT, TheDelayHoldsAMessageUntilItsTimePlusTheDelay) {
    struct Case { std::uint32_t delay, time, now; bool leaves; };
    for (const auto& [delay, time, now, leaves] : {
             Case{100, 1000, 1099, false}, {100, 1000, 1100, true}, {100, 1000, 5000, true}, {0, 1000, 999, false},
             {0, 1000, 1000, true},
             {500, 100, 499, true},                       // the subtraction is unsigned
             {0, 0xFFFFFFFF, 0xFFFFFFFF, true},           // the last time before the clock wraps is no free entry
         }) {
        OutputRig rig;
        rig.output.SetDelay(delay);
        EXPECT_EQ(rig.output.GetDelay(), delay);
        rig.output.NoteOn(60, 0, 0x40, time);
        EXPECT_EQ(rig.Flush(now).size(), leaves ? 1u : 0u) << delay << ' ' << time << ' ' << now;
        EXPECT_TRUE(!leaves || rig.Flush(now).empty()) << "sent twice";
    }
}

TEST(DrvMIDIOUT, WhatIsDueLeavesInTheOrderOfTheSends) {
    OutputRig rig;
    for (const auto& [note, time] : {std::pair{1, 30u}, {2, 10u}, {3, 90u}, {4, 20u}})
        rig.output.NoteOn(note, 0, 0x40, time);
    EXPECT_EQ(rig.Flush(30), (Messages{NoteOnMessage(1), NoteOnMessage(2), NoteOnMessage(4)}));
    EXPECT_EQ(rig.Flush(90), Messages{NoteOnMessage(3)});
}

// Message number i of a stream that repeats only after 2^18.
std::uint32_t Numbered(int i) {
    return 0x90u | static_cast<std::uint32_t>((i >> 14) | (i & 127) << 8 | (i >> 7 & 127) << 16);
}
void SendNumbered(DrvMIDIOUT& output, int i) { output.NoteOn(i & 127, i >> 14, i >> 7 & 127, 0); }

TEST(DrvMIDIOUT, AFullQueueOverwritesItsOldestEntries) {
    constexpr int kEntries = DrvMIDIOUTSystem::kQueueEntries;
    for (const int sends : {kEntries - 1, kEntries, kEntries + 1, 2 * kEntries, 2 * kEntries + 100}) {
        OutputRig rig;
        for (int i = 0; i < sends; ++i) SendNumbered(rig.output, i);
        Messages expected;                               // in array order: the newest lap stands before the older one
        const int kept = std::min(sends, kEntries), inFront = sends % kEntries;
        for (int i = sends - inFront; i < sends && sends > kEntries; ++i) expected.push_back(Numbered(i));
        for (int i = sends - kept; std::cmp_less(expected.size(), kept); ++i) expected.push_back(Numbered(i));
        EXPECT_EQ(rig.Flush(0), expected) << sends;
    }
}

TEST(DrvMIDIOUT, LastTimeMovesOnlyWhenAMessageLeaves) {
    OutputRig rig;
    rig.output.NoteOn(60, 0, 1, 10);
    rig.Flush(9);
    EXPECT_EQ(rig.output.GetLastTime(), 0u);
    rig.Flush(10);
    EXPECT_NE(rig.output.GetLastTime(), 0u);
}

TEST(DrvMIDIOUT, APortThatTakesNoMoreKeepsTheRestForTheNextBlock) {
    OutputRig rig;
    rig.midi->outputs[0].room = 2;
    for (int note = 1; note <= 5; ++note) rig.output.NoteOn(note, 0, 0x40, 0);
    EXPECT_EQ(rig.Flush(0), (Messages{NoteOnMessage(1), NoteOnMessage(2)}));
    rig.midi->outputs[0].room = 100;
    EXPECT_EQ(rig.Flush(0), (Messages{NoteOnMessage(3), NoteOnMessage(4), NoteOnMessage(5)}));
}

TEST(DrvMIDIOUT, OpensOnceAndClosesWhenDestroyed) {
    auto midi = std::make_shared<test::ScriptedMidi>();
    midi->outputs.push_back({.name = "Synth"});
    {
        DrvMIDIOUTSystem output(midi);
        EXPECT_EQ(output.GetName(), "");
        EXPECT_EQ(output.Open(0), 0);
        EXPECT_EQ(output.Open(0), 1);
        EXPECT_EQ(output.GetName(), "Synth");
        EXPECT_TRUE(midi->outputs[0].open);
        output.NoteOn(60, 0, 1, 0);
    }
    EXPECT_FALSE(midi->outputs[0].open);
    EXPECT_TRUE(midi->outputs[0].sent.empty());          // what waited is dropped
}

TEST(DrvMIDIOUT, WithoutItsDeviceItQueuesOnAndHasNoName) {
    OutputRig rig(false);
    rig.midi->outputs[0].opens = false;
    const LogCapture log;
    EXPECT_EQ(rig.output.Open(0), 1);
    EXPECT_EQ(log.Text(), "* ERROR: no se pudo inicializar DrvMIDIOUT (0)\n");
    for (int i = 0; i < 3000; ++i) rig.output.NoteOn(60, 0, 1, 0);
    EXPECT_TRUE(rig.Flush(0).empty());
    EXPECT_EQ(rig.output.GetName(), "");
    EXPECT_EQ(rig.output.GetLastTime(), 0u);
    rig.midi->outputs[0].opens = true;
    ASSERT_EQ(rig.output.Open(0), 0);
    EXPECT_EQ(rig.Flush(0).size(), 2048u);               // nothing of it was discarded
}

}  // namespace
}  // namespace vonta
