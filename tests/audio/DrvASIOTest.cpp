#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <thread>
#include <vector>

#include "audio/DrvASIO.h"
#include "engine/SndPlayer.h"
#include "tests/support/LogCapture.h"
#include "tests/support/ScriptedAsioDriver.h"
#include "tests/support/SongBuilder.h"

namespace vonta {
namespace {

// Stands for the block cycle: asks the device as the player does, and writes a ramp whose value tells pair, side and
// frame, counted from the start: 1000 x channel + frame, in steps that show in 16 bits.
class RampCycle final : public TickHandler {
public:
    DrvSound* device = nullptr;
    int firstFrames = 0;                             // of the first tick; 0: as many as are wanted
    int ticks = 0, blocks = 0, frame = 0, largestBlock = 0;
    bool writes = true, ends = false;

    bool OnTick() override {
        ++ticks;
        const std::uint32_t before = position_;
        device->GetPosition(&position_);
        int left = static_cast<int>(std::min(position_ - before, device->GetBufferSize()) / kDeviceFrameBytes);
        if (ticks == 1 && firstFrames) left = std::min(left, firstFrames);
        for (; writes && left > 0; left -= std::min(left, kRenderFrames)) Write(std::min(left, kRenderFrames));
        return ends;
    }

    static float Value(int channel, int frame) { return static_cast<float>(1000 * channel + frame % 1000); }

private:
    void Write(int frames) {
        std::array<float*, kOutputPairs> outputs;
        for (int pair = 0; pair < kOutputPairs; ++pair) {
            auto& buffer = buffers_[static_cast<std::size_t>(pair)];
            outputs[static_cast<std::size_t>(pair)] = buffer.data();
            for (int i = 0; i < frames; ++i)
                for (int side : {0, 1})
                    buffer[static_cast<std::size_t>(2 * i + side)] = Value(2 * pair + side, frame + i);
        }
        device->WriteBlock(outputs.data(), frames, 0);
        frame += frames;
        ++blocks;
        largestBlock = std::max(largestBlock, frames);
    }

    std::uint32_t position_ = 0;
    std::array<StereoBuffer, kOutputPairs> buffers_;
};

// A device on a driver that the test calls by hand.
struct Rig {
    explicit Rig(AsioScript& s) : script(s) { cycle.device = &device; }
    int Init() { return device.Init(nullptr, 0, 0, *mixer, &cycle); }
    // Start waits for the driver's thread, which is this one.
    void Start() {
        std::thread main([this] { device.GetTimer()->Start(kTimerPeriodMs); });
        while (!device.GetTimer()->IsRunning()) script.Switch();
        main.join();
        cycle.ticks = 0;
        cycle.frame = 0;
    }

    AsioScript& script;
    std::vector<AsioDriverRecord> drivers = ScriptedDrivers(script);
    std::unique_ptr<Mixer> mixer = std::make_unique<Mixer>();
    RampCycle cycle;
    DrvASIO device{drivers};
};

std::int32_t Quarter32(float value) { return static_cast<std::int32_t>(value / 131072.0 * 2147483647.49999); }

TEST(DrvASIO, FillsTheDriversBlockInPieces) {
    struct { const char* name; int frames, firstFrames, ticks, blocks; } const cases[] = {
        {"small", 64, 0, 1, 1},
        {"as large as a piece", 2048, 0, 1, 2},
        {"two pieces", 4096, 0, 2, 4},
        {"no round number", 4999, 0, 3, 5},
        {"the first tick gives less", 256, 220, 2, 2},
    };
    for (const auto& each : cases) {
        SCOPED_TRACE(each.name);
        AsioScript script;
        script.frames = each.frames;
        Rig rig(script);
        ASSERT_TRUE(rig.Init());
        rig.Start();
        rig.cycle.blocks = 0;
        rig.cycle.firstFrames = each.firstFrames;
        script.Switch(1);
        EXPECT_EQ(rig.cycle.ticks, each.ticks);
        EXPECT_EQ(rig.cycle.blocks, each.blocks);
        EXPECT_LE(rig.cycle.largestBlock, kRenderFrames);
        const auto left = script.Values(0, 1), right = script.Values(1, 1);
        for (int i = 0; i < each.frames; ++i) {
            const auto at = static_cast<std::size_t>(i);
            ASSERT_EQ(left[at], Quarter32(RampCycle::Value(0, i))) << i;
            ASSERT_EQ(right[at], Quarter32(RampCycle::Value(1, i))) << i;
        }
        EXPECT_TRUE(script.Untouched(0, 0)) << "the other half belongs to the driver";
    }
}

TEST(DrvASIO, PlaysThePairsThatTheDriverHas) {
    for (const int outputs : {2, 3, 4, 31, 32, 40}) {
        SCOPED_TRACE(outputs);
        AsioScript script;
        script.outputs = outputs;
        Rig rig(script);
        ASSERT_TRUE(rig.Init());
        rig.Start();
        script.Switch();
        for (int channel = 0; channel < outputs; ++channel) {
            if (channel < std::min(outputs / 2 * 2, 2 * kOutputPairs)) {
                EXPECT_EQ(script.Values(channel)[5], Quarter32(RampCycle::Value(channel, 5))) << channel;
            } else {
                EXPECT_TRUE(script.Untouched(channel, 0)) << channel;
            }
        }
    }
}

TEST(DrvASIO, WritesTwoSampleTypesAndOpensSilentlyWithTheRest) {
    for (std::int32_t type = 0; type < 28; ++type) {
        SCOPED_TRACE(type);
        AsioScript script;
        script.sampleType = type;
        Rig rig(script);
        ASSERT_TRUE(rig.Init());
        EXPECT_EQ(rig.device.GetSampleType(), type);
        EXPECT_EQ(rig.device.IsSupported(), type == 16 || type == 18);
        rig.Start();
        script.Switch();
        if (type == 16) {
            EXPECT_EQ(script.Values<std::int16_t>(1)[250], static_cast<std::int16_t>(1250 / 131072.0 * 32767.49999));
        } else if (type != 18) {
            EXPECT_TRUE(script.Untouched(0, 0));
            EXPECT_EQ(rig.cycle.ticks, 0);
        }
    }
}

TEST(DrvASIO, IsSilentWhileStoppedAndWhenTheTickGivesNothing) {
    AsioScript script;
    Rig rig(script);
    ASSERT_TRUE(rig.Init());
    const std::vector<std::int32_t> silence(256);
    script.Switch();
    EXPECT_EQ(script.Values(1), silence);
    EXPECT_EQ(rig.cycle.ticks, 0);
    rig.Start();
    rig.cycle.writes = false;
    script.Switch();
    EXPECT_EQ(script.Values(1), silence);
    rig.cycle.ends = true;                           // a fault in the block cycle
    script.Switch();
    EXPECT_FALSE(rig.device.GetTimer()->IsRunning());
}

TEST(DrvASIO, TakesTheDriversRate) {
    AsioScript script;
    script.rate = 95999.9;
    Rig rig(script);
    ASSERT_TRUE(rig.Init());
    EXPECT_EQ(rig.mixer->sampleRate, 95999u);
}

TEST(DrvASIO, SaysWhatFailedAndLetsGoOfTheDriver) {
    struct { const char* failAt; int outputs, frames; double rate; const char *said, *verbs; } const cases[] = {
        {"Init", 2, 64, 44100, "it does not open: as the script says\n", "Init DisposeBuffers "},
        {"CreateBuffers", 2, 64, 44100, "it gives no buffers: as the script says\n", "Init CreateBuffers DisposeBuffers "},
        {"Start", 2, 64, 44100, "it does not start: as the script says\n", "Init CreateBuffers Start DisposeBuffers "},
        {"", 0, 64, 44100, "it has no pair of outputs", "Init DisposeBuffers "},
        {"", -1, 64, 44100, "it has no pair of outputs", "Init DisposeBuffers "},
        {"", 2, 0, 44100, "it has no block size. No ASIO Driver Error\n", "Init DisposeBuffers "},
        {"", 2, 64, 0, "its sample rate is out of range", "Init DisposeBuffers "},
        {"", 2, 64, 1e300, "its sample rate is out of range", "Init DisposeBuffers "},
    };
    for (const auto& each : cases) {
        SCOPED_TRACE(each.said);
        AsioScript script;
        script.failAt = each.failAt;
        script.outputs = each.outputs;
        script.frames = each.frames;
        script.rate = each.rate;
        Rig rig(script);
        const LogCapture log;
        EXPECT_FALSE(rig.Init());
        EXPECT_TRUE(log.Has(std::string("\t- ERROR: ASIO driver Scripted: ") + each.said)) << log.Text();
        EXPECT_EQ(script.verbs, each.verbs);
        EXPECT_EQ(script.drivers, 0);
        EXPECT_EQ(rig.mixer->sampleRate, 44100u) << "as it was";
    }
}

TEST(DrvASIO, OpensOnlyDriversThatAreThere) {
    AsioScript script;
    Rig rig(script);
    EXPECT_FALSE(rig.device.Init(nullptr, 0, 1, *rig.mixer, &rig.cycle));
    EXPECT_FALSE(rig.device.Init(nullptr, 0, -1, *rig.mixer, &rig.cycle));
    const std::vector<AsioDriverRecord> missing{{"Missing", [] { return nullptr; }}};
    DrvASIO device(missing);
    EXPECT_FALSE(device.Init(nullptr, 0, 0, *rig.mixer, &rig.cycle));
}

// From here on the driver has a thread of its own, and the device belongs to a player.
struct PlayingRig {
    PlayingRig() {
        script.ownThread = true;
        script.frames = 64;
    }
    bool Open() {
        auto owned = std::make_unique<DrvASIO>(drivers);
        device = owned.get();
        const int failed = player.StartSound(nullptr, static_cast<int>(DeviceKind::Asio), 0, nullptr, 44100,
                                             std::move(owned));
        player.SetMixerOn(true);
        return failed == 0;
    }
    // Whether a song moves on from its start.
    bool Plays() {
        player.Stop(0, 1);
        player.Play(0);
        const auto longest = std::chrono::steady_clock::now() + std::chrono::seconds(30);
        const auto plays = [this] { return player.IsPlaying() && player.TicksPlayed() > 0; };
        bool played = plays();                       // asked once a round: the commands come to the player meanwhile
        while (!played && std::chrono::steady_clock::now() < longest) {
            std::this_thread::yield();
            played = plays();
        }
        return played;
    }
    bool IsHeard() {
        const int before = script.calls;
        while (script.calls < before + 3) std::this_thread::yield();
        return player.GetMixer().device && !device->IsLost();
    }

    AsioScript script;
    std::vector<AsioDriverRecord> drivers = ScriptedDrivers(script);
    SndPlayer player;
    DrvASIO* device = nullptr;
};

TEST(DrvASIODevice, AThousandStopsAndStartsHangNowhere) {
    PlayingRig rig;
    ASSERT_TRUE(rig.Open());
    for (int i = 0; i < 1000; ++i) {
        rig.player.SetMixerOn(false);
        ASSERT_FALSE(rig.player.IsMixerOn());
        ASSERT_EQ(inCallback, 0);
        rig.player.SetSong(nullptr);                 // the callback must be out of the song
        rig.player.SetMixerOn(true);
        ASSERT_TRUE(rig.player.IsMixerOn());
    }
    EXPECT_FALSE(rig.device->IsLost());
    EXPECT_TRUE(rig.Plays());
}

TEST(DrvASIODevice, OpensAndClosesAHundredTimesWhilePlaying) {
    PlayingRig rig;
    for (int i = 0; i < 100; ++i) {
        ASSERT_TRUE(rig.Open());
        ASSERT_TRUE(rig.Plays());
        ASSERT_EQ(rig.script.drivers, 1);
    }
    rig.player.Shutdown();
    EXPECT_EQ(rig.script.drivers, 0);
}

// The app asks IsLost again and again, and restores with the mixer off.
TEST(DrvASIODevice, ALostDriverIsToldOnceAndTheSongGoesOnUntilItIsRestored) {
    for (const AsioLoss loss : {AsioLoss::DriverGone, AsioLoss::RateChanged, AsioLoss::BlockSizeChanged}) {
        SCOPED_TRACE(static_cast<int>(loss));
        PlayingRig rig;
        ASSERT_TRUE(rig.Open());
        ASSERT_TRUE(rig.Plays());
        EXPECT_FALSE(rig.device->IsLost());
        const LogCapture log;
        rig.script.host->ResetRequest(loss);
        rig.script.host->ResetRequest(AsioLoss::NotCalling);
        EXPECT_TRUE(rig.device->IsLost());
        EXPECT_TRUE(rig.device->IsLost());
        EXPECT_EQ(std::ranges::count(log.Text(), '\n'), 1) << log.Text();
        EXPECT_TRUE(rig.player.IsMixerOn());
        EXPECT_TRUE(rig.Plays()) << "silently, by the clock";

        rig.script.failAt = "Init";                  // as long as it has not come back
        EXPECT_FALSE(rig.player.RestoreDevice());
        EXPECT_TRUE(rig.device->IsLost());
        EXPECT_TRUE(rig.Plays());

        rig.script.failAt = "";
        rig.script.frames = 128;
        rig.script.rate = 48000;
        EXPECT_TRUE(rig.player.RestoreDevice());
        EXPECT_EQ(rig.player.GetMixer().samplesPerTick, 960) << "at the rate that the driver has now";
        EXPECT_TRUE(rig.IsHeard());
        EXPECT_TRUE(rig.Plays());
    }
}

TEST(DrvASIODevice, TheClockAsksForWhatTheRateSays) {
    PlayingRig rig;
    ASSERT_TRUE(rig.Open());
    rig.script.host->ResetRequest(AsioLoss::DriverGone);
    ASSERT_TRUE(rig.device->IsLost());
    ASSERT_TRUE(rig.Plays());
    const auto began = std::chrono::steady_clock::now();
    const std::uint32_t ticks = rig.player.TicksPlayed();
    while (rig.player.TicksPlayed() < ticks + 25) std::this_thread::sleep_for(std::chrono::milliseconds(1));
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - began;
    EXPECT_GT(took.count(), 0.35) << "25 ticks are half a second, less a late start";
}

TEST(AsioStarterThread, GivesUpADriverThatCallsNoMore) {
    struct Count : TickHandler {
        std::atomic<int> ticks{0};
        bool OnTick() override { ++ticks; return false; }
    } handler;
    AsioStarter starter;
    starter.Open(&handler);
    starter.SetPatience(20);
    starter.Start(kTimerPeriodMs);                   // nobody calls
    EXPECT_EQ(starter.Loss(), AsioLoss::NotCalling);
    EXPECT_TRUE(starter.IsRunning());
    starter.Tick([] { ADD_FAILURE() << "a call that comes too late finds nothing to do"; return false; });
    while (handler.ticks == 0) std::this_thread::yield();
    starter.Stop();
    EXPECT_FALSE(starter.IsRunning());
}

TEST(AsioStarterThread, WaitsForATickThatTakesLong) {
    std::atomic<bool> begun{false}, ended{false}, done{false};
    AsioStarter starter;
    starter.Open(nullptr);
    std::thread driver([&] {
        while (!done) starter.Tick([&] {
            begun = true;
            std::this_thread::sleep_for(std::chrono::milliseconds(200));
            ended = true;
            return false;
        });
    });
    starter.Start(kTimerPeriodMs);
    starter.SetPatience(20);
    while (!begun) std::this_thread::yield();
    starter.Stop();
    EXPECT_TRUE(ended);
    EXPECT_EQ(starter.Loss(), AsioLoss::None);
    done = true;
    driver.join();
}

}  // namespace
}  // namespace vonta
