// The same proof for the block cycle as each device runs it, and for the system's side of the rings.
#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <thread>

#include "audio/CreateDevice.h"
#include "audio/DrvASIO.h"
#include "platform/Clock.h"
#include "platform/JackDriver.h"
#include "platform/SoundRing.h"
#include "tests/realtime/Counting.h"
#include "tests/realtime/EverySound.h"
#include "tests/realtime/FakeJack.h"
#include "tests/support/TestDevice.h"

namespace vonta {
namespace {

constexpr int kCycles = 150;

// A device whose timer is the test's, so that the cycle runs on a thread that is counted.
class HandDriven final : public DrvSound {
public:
    explicit HandDriven(std::unique_ptr<DrvSound> device) : device_(std::move(device)) {}
    int Init(void* window, int plane, int index, Mixer& mixer, TickHandler* handler) override {
        timer.Init(handler, kTimerPeriodMs);
        return device_->Init(window, plane, index, mixer, handler);
    }
    void WriteBlock(float* const* outputs, int frames, std::uint32_t offset) override {
        framesWritten += frames;
        device_->WriteBlock(outputs, frames, offset);
    }
    int GetPosition(std::uint32_t* bytes) override { return device_->GetPosition(bytes); }
    std::uint32_t GetBufferSize() const override { return device_->GetBufferSize(); }
    MultimediaTimer* GetTimer() override { return &timer; }

    ManualTimer timer;
    int framesWritten = 0;

private:
    std::unique_ptr<DrvSound> device_;
};

// A player on a device, whose block cycle is run by hand.
struct Driven {
    explicit Driven(DeviceKind kind) : isAsio(kind == DeviceKind::Asio) {
        setenv("SDL_AUDIODRIVER", "dummy", 1);
        auto owned = isAsio ? nullptr : std::make_unique<HandDriven>(CreateDevice(kind));
        device = owned.get();
        std::unique_ptr<DrvSound> whole = std::move(owned);
        if (isAsio) whole = std::make_unique<DrvASIO>(drivers);
        EXPECT_EQ(player.StartSound(nullptr, static_cast<int>(kind), 0, nullptr, 44100, std::move(whole)), 0);
        player.SetSong(EverySound());
        player.Play(0);
        std::jthread start([this] { player.SetMixerOn(true); });
        while (!player.IsMixerOn()) Cycle();             // ASIO starts inside a cycle
        start.join();
        for (int i = 0; i < 10; ++i) Cycle();
    }
    ~Driven() {
        std::jthread stop([this] { player.SetMixerOn(false); });
        while (player.IsMixerOn()) Cycle();
    }
    void Cycle() {
        if (isAsio) FakeJack::Cycle();
        else device->timer.Fire();
    }
    // Without a call to the system.
    static void LetTheDeviceGoOn() { for (const auto start = Milliseconds(); Milliseconds() - start < 3;) {} }

    const std::vector<AsioDriverRecord> drivers{{"JACK", [] { return std::make_unique<JackDriver>(FakeJack::Library()); }}};
    bool isAsio;
    HandDriven* device = nullptr;                    // null with ASIO
    SndPlayer player;
};

constexpr DeviceKind kKinds[] = {DeviceKind::DirectSoundPrimary, DeviceKind::DirectSoundSecondary, DeviceKind::WaveOut,
                                 DeviceKind::NoSound, DeviceKind::Asio};

TEST(RealTimeDevice, TheCallbackAllocatesNothingAndTakesTheCommandLockOnce) {
    for (const DeviceKind kind : kKinds) {
        SCOPED_TRACE(static_cast<int>(kind));
        Driven driven(kind);
        for (int i = 0; i < kCycles; ++i) {
            const Counts counts = CountDuring([&] { driven.Cycle(); });
            ASSERT_EQ(counts.allocations, 0);
            ASSERT_EQ(counts.locks, 1);
            Driven::LetTheDeviceGoOn();
        }
        EXPECT_GT(driven.device ? driven.device->framesWritten : kCycles * 256, 10000);
        EXPECT_GT(driven.player.TicksPlayed(), 3u);
    }
}

TEST(RealTimeDevice, TheCallbackMakesNoSystemCall) {
    for (const DeviceKind kind : kKinds) {
        SCOPED_TRACE(static_cast<int>(kind));
        ExpectNoSystemCall([kind] {
            Driven* driven = new Driven(kind);           // the process ends before it could go
            return [driven] {
                for (int i = 0; i < kCycles; ++i) {
                    driven->Cycle();
                    Driven::LetTheDeviceGoOn();
                }
            };
        });
    }
}

TEST(RealTimeDevice, TheSystemTakesItsChunksWithoutAllocationLockOrCall) {
    std::vector<std::int16_t> values(2 * 1000, 1), chunk(2 * 512);
    SoundRing ring(values, 44100);
    const auto take = [&] { for (int i = 0; i < kCycles; ++i) ring.Take(chunk); };
    const Counts counts = CountDuring(take);
    EXPECT_EQ(counts.allocations, 0);
    EXPECT_EQ(counts.locks, 0);
    EXPECT_EQ(ring.FramesPlayed(), 512u * kCycles);
    ExpectNoSystemCall([&] { return take; });
}

}  // namespace
}  // namespace vonta
