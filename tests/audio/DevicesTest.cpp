#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <thread>
#include <vector>

#include "audio/CreateDevice.h"
#include "audio/DrvDiskWritter.h"
#include "audio/DrvNoSound.h"
#include "engine/mix/Mixer.h"
#include "tests/support/SongBuilder.h"
#include "tests/support/TempDirectory.h"

namespace vonta {
namespace {

std::uint32_t fakeNow;
std::uint32_t FakeClock() { return fakeNow; }

struct Nobody : TickHandler {
    bool OnTick() override { return false; }
};

// The ring positions that a device reports at the given times, in milliseconds since its Init.
std::vector<std::uint32_t> Positions(DrvSound& device, std::uint32_t rate, const std::vector<std::uint32_t>& times) {
    const auto mixer = std::make_unique<Mixer>();
    mixer->sampleRate = rate;
    Nobody handler;
    const std::uint32_t start = fakeNow = 0xFFFFFFF0u;   // the clock wraps on the way
    EXPECT_TRUE(device.Init(nullptr, 0, 0, *mixer, &handler));
    std::vector<std::uint32_t> positions;
    for (const auto time : times) {
        fakeNow = start + time;
        positions.push_back(0);
        device.GetPosition(&positions.back());
    }
    return positions;
}

using Bytes = std::vector<std::uint32_t>;

TEST(DrvNoSound, ThePositionFollowsTheClockAroundTheRing) {
    DrvNoSound device(FakeClock);
    EXPECT_EQ(Positions(device, 44100, {0, 100, 300, 400}), (Bytes{0, 17640, 52920, 70560 - 65536}));
    EXPECT_EQ(Positions(device, 22050, {1, 2}), (Bytes{88, 176})) << "a fraction is lost at each reading";
    EXPECT_EQ(Positions(device, 192000, {0xFFFFFFFF}), (Bytes{(0xFFFFFFFFull * 768) & 0xFFFF}));
}

class InTempDirectory : public testing::Test {
protected:
    InTempDirectory() { std::filesystem::current_path(directory.Path()); }
    ~InTempDirectory() override { std::filesystem::current_path(before); }
    const std::filesystem::path before = std::filesystem::current_path();
    const TempDirectory directory;
};

using DrvDiskWritterTest = InTempDirectory;

TEST_F(DrvDiskWritterTest, ThePositionWrapsOneByteBeyondTheRing) {
    DrvDiskWritter device(FakeClock);
    EXPECT_EQ(device.GetBufferSize(), 0xFFFFFu);
    EXPECT_EQ(Positions(device, 44100, {100, 6000}), (Bytes{17640, 1058400 - 0x100000}));
}

TEST_F(DrvDiskWritterTest, WritesTheFirstPairTruncatedAndWrapping) {
    DrvDiskWritter device(FakeClock);
    Positions(device, 44100, {});
    std::array<float, 8> first{1.9f, -1.9f, 32768.0f, -32769.0f, 65537.0f, 0.0f, 258.0f, -1.0f};
    float* outputs[1] = {first.data()};
    device.WriteBlock(outputs, 4, 12345);
    const std::vector<std::uint8_t> expected{1, 0, 0xFF, 0xFF, 0, 0x80, 0xFF, 0x7F, 1, 0, 0, 0, 2, 1, 0xFF, 0xFF};
    EXPECT_EQ(directory.Bytes("diskwritter.raw"), expected) << "flushed after the block";
    device.WriteBlock(outputs, 4, 0);
    EXPECT_EQ(directory.Bytes("diskwritter.raw").size(), 32u);
}

TEST_F(DrvDiskWritterTest, RunsWithoutItsFile) {
    std::filesystem::create_directory("diskwritter.raw");
    DrvDiskWritter device(FakeClock);
    EXPECT_EQ(Positions(device, 44100, {100}), Bytes{17640});
    std::array<float, 2> frame{};
    float* outputs[1] = {frame.data()};
    device.WriteBlock(outputs, 1, 0);
}

TEST(DrvNoSoundOnARealClock, DrivesThePlayerThroughPausesAtAnyMoment) {
    SndPlayer player(CreateDevice);
    ASSERT_EQ(player.StartSound(nullptr, static_cast<int>(DeviceKind::NoSound), 0, nullptr, 44100), 0);
    player.SetMixerOn(true);
    player.Play(0);
    const auto longest = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    for (int pauses = 0; player.TicksPlayed() < 5 && std::chrono::steady_clock::now() < longest; ++pauses) {
        std::this_thread::sleep_for(std::chrono::milliseconds(pauses % 40));
        const MixerPause pause(player);
        EXPECT_FALSE(player.IsMixerOn());
        player.SetSong(SongBuilder().Tempo(1).Pattern(0, 4).Build());
    }
    EXPECT_GE(player.TicksPlayed(), 5u);
    EXPECT_TRUE(player.IsMixerOn());
}

}  // namespace
}  // namespace vonta
