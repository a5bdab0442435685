#include "midi/DrvMIDIINSystem.h"

#include <gtest/gtest.h>

#include <thread>

#include "midi/NoteMessage.h"
#include "tests/support/LogCapture.h"
#include "tests/support/ScriptedMidi.h"

namespace vonta {
namespace {

struct InputRig {
    std::shared_ptr<test::ScriptedMidi> midi = std::make_shared<test::ScriptedMidi>();
    DrvMIDIINSystem input{midi};

    InputRig() {
        midi->inputs.push_back({.name = "Keys"});
        EXPECT_EQ(input.Open(0), 0);
    }
    void Send(std::uint32_t first, int count) {
        for (int i = 0; i < count; ++i) midi->inputs[0].Send(first + static_cast<std::uint32_t>(i));
    }
    std::vector<std::uint32_t> ReadAll() {
        std::vector<std::uint32_t> all;
        for (std::uint32_t message; input.Read(&message);) all.push_back(message);
        return all;
    }
};

TEST(DrvMIDIIN, AFullLapOfTheRingLosesAllOfIt) {
    struct Case { int sent, read; std::uint32_t first; };
    for (const auto& [sent, read, first] : {Case{0, 0, 0}, {1, 1, 0}, {255, 255, 0}, {256, 0, 0}, {257, 1, 256},
                                            {300, 44, 256}, {512, 0, 0}}) {
        InputRig rig;
        rig.Send(0, sent);
        const auto all = rig.ReadAll();
        ASSERT_EQ(static_cast<int>(all.size()), read) << sent;
        for (int i = 0; i < read; ++i) EXPECT_EQ(all[static_cast<std::size_t>(i)], first + static_cast<std::uint32_t>(i));
    }
}

TEST(DrvMIDIIN, ReadsInOrderAroundTheRingsEnd) {
    InputRig rig;
    for (std::uint32_t turn = 0; turn < 20; ++turn) {
        rig.Send(100 * turn, 100);
        const auto all = rig.ReadAll();
        ASSERT_EQ(all.size(), 100u);
        EXPECT_EQ(all.front(), 100 * turn);
        EXPECT_EQ(all.back(), 100 * turn + 99);
    }
    EXPECT_NE(rig.input.GetLastTime(), 0u);
}

// Under the thread checker too.
TEST(DrvMIDIINThreads, OneWritesWhileAnotherReads) {
    InputRig rig;
    constexpr std::uint32_t kMessages = 20'000;
    std::atomic<std::uint32_t> read{0};
    std::thread writer([&] {
        for (std::uint32_t i = 0; i < kMessages; ++i) {
            while (i - read >= DrvMIDIINSystem::kRingEntries - 1) std::this_thread::yield();
            rig.Send(i, 1);
        }
    });
    while (read < kMessages)
        for (const std::uint32_t message : rig.ReadAll()) EXPECT_EQ(message, read++);
    writer.join();
}

TEST(DrvMIDIIN, LogsOpeningAndClosing) {
    const LogCapture log;
    { const InputRig rig; }
    EXPECT_EQ(log.Text(),
              "\t\t- Trying to init MIDI In device: 0\n\t\t\t- MIDI In Procedure Opened.\n"
              "\t\t- MIDI In device (0) initialized\n\t\t\t- MIDI In Procedure Closed.\n");
}

TEST(DrvMIDIIN, ADeviceThatWillNotOpenOrStartFailsAndStaysClosed) {
    for (const bool opens : {false, true}) {
        auto midi = std::make_shared<test::ScriptedMidi>();
        midi->inputs.push_back({.name = "Keys", .opens = opens, .starts = false});
        DrvMIDIINSystem input(midi);
        const LogCapture log;
        EXPECT_EQ(input.Open(0), 1);
        EXPECT_TRUE(log.Has(opens ? "*ERROR: can't start MIDI In device: 0\n" : "*ERROR: can't init MIDI In device: 0\n"));
        EXPECT_EQ(midi->inputs[0].listener, nullptr);
        EXPECT_EQ(input.GetName(), "");
        std::uint32_t message;
        EXPECT_EQ(input.Read(&message), 0);
        midi->inputs[0].opens = midi->inputs[0].starts = true;
        EXPECT_EQ(input.Open(0), 0);
        EXPECT_EQ(input.Open(0), 1);
        EXPECT_EQ(input.GetName(), "Keys");
    }
}

TEST(NoteMessage, KnowsKeysPressedAndLetGoFromAllElse) {
    using Kind = NoteMessage::Kind;
    struct Case { std::uint32_t message; Kind kind; int note, velocity; };
    for (const auto& [message, kind, note, velocity] : {
             Case{0x643C90, Kind::On, 60, 100}, {0x643C9F, Kind::On, 60, 100}, {0x003C90, Kind::Off, 60, 0},
             {0x403C82, Kind::Off, 60, 64}, {0x647890, Kind::On, 95, 100}, {0x007880, Kind::Off, 95, 0},
             {0x6307B3, Kind::Other, 0, 0}, {0x7FC2, Kind::Other, 0, 0}, {0xF8, Kind::Other, 0, 0}, {0, Kind::Other, 0, 0},
         }) {
        const NoteMessage decoded = DecodeNote(message);
        EXPECT_EQ(decoded.kind, kind) << message;
        EXPECT_EQ(decoded.note, note) << message;
        EXPECT_EQ(decoded.velocity, velocity) << message;
    }
}

}  // namespace
}  // namespace vonta
