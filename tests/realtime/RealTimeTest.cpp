// The proof that the audio side allocates nothing, takes no lock but the command lock, and makes no system call.
#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "midi/DrvMIDIOUTSystem.h"
#include "platform/MidiSender.h"
#include "tests/realtime/Counting.h"
#include "tests/realtime/EverySound.h"
#include "tests/support/PlayerRig.h"
#include "tests/support/TestDevice.h"

namespace vonta {
namespace {

constexpr int kBlocks = 400;

TEST(RealTime, RenderAllocatesAndLocksNothing) {
    PlayerRig rig(EverySound());
    for (const int block : {1024, 37, 2048}) {
        const Counts counts = CountDuring([&] { for (int i = 0; i < kBlocks; ++i) rig.player.Render(block); });
        EXPECT_EQ(counts.allocations, 0);
        EXPECT_EQ(counts.locks, 0);
    }
    int sounding = 0;
    for (int track = 0; track < kTracks; ++track) sounding += rig.Track(track).Sounding();
    EXPECT_GT(sounding, 16);
}

TEST(RealTime, TheBlockCycleTakesTheCommandLockOnceAndNoOther) {
    auto owned = std::make_unique<TestDevice>();
    TestDevice& device = *owned;
    SndPlayer player;
    ASSERT_EQ(player.StartSound(nullptr, 2, 0, nullptr, 44100, std::move(owned)), 0);
    player.SetSong(EverySound());
    player.SetMixerOn(true);
    device.record = false;
    device.timer.Fire();
    for (int i = 0; i < kBlocks; ++i) {
        player.Play(kPlayFromHere);
        player.QueueNote(48, 1, 100);
        player.MuteInstrument(i % 20, i % 2);
        if (i % 50 == 49) player.Stop(0, 1);
        device.position = (device.position + 4000) % device.ringBytes;
        const Counts counts = CountDuring([&] { device.timer.Fire(); });
        ASSERT_EQ(counts.allocations, 0);
        ASSERT_EQ(counts.locks, 1);
    }
}

// A port of the system as it is behind the audio side: a sender with its thread.
TEST(RealTime, SendingToAMidiPortAllocatesAndLocksNothing) {
    struct Port final : MidiOutPort {
        std::atomic<int> written{0};
        MidiSender sender{[this](std::uint32_t) { ++written; }};
        bool Send(std::uint32_t message) override { return sender.Send(message); }
    };
    struct Service final : MidiService {
        Port* opened = nullptr;
        int OutputCount() const override { return 1; }
        int InputCount() const override { return 0; }
        std::string OutputName(int) const override { return "Port"; }
        std::string InputName(int) const override { return {}; }
        std::unique_ptr<MidiOutPort> OpenOutput(int) override {
            auto port = std::make_unique<Port>();
            opened = port.get();
            return port;
        }
        std::unique_ptr<MidiInPort> OpenInput(int, MidiInListener&) override { return nullptr; }
    };
    const auto service = std::make_shared<Service>();
    DrvMIDIOUTSystem output(service);
    ASSERT_EQ(output.Open(0), 0);
    const Counts counts = CountDuring([&] {
        for (std::uint32_t now = 0; now < kBlocks; ++now) {
            output.NoteOn(60, 0, 100, now);
            output.ControlChange(0, 7, 100, now);
            output.NoteOff(60, 0, now);
            output.Flush(now);
        }
    });
    EXPECT_EQ(counts.allocations, 0);
    EXPECT_EQ(counts.locks, 0);
    while (service->opened->written < 3 * kBlocks) std::this_thread::yield();
}

TEST(RealTime, RenderMakesNoSystemCall) {
    ExpectNoSystemCall([] {
        const auto rig = std::make_shared<PlayerRig>(EverySound());
        rig->player.Render(1024);
        return [rig] { for (int i = 0; i < kBlocks; ++i) rig->player.Render(1024); };
    });
}

}  // namespace
}  // namespace vonta
