#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <memory>

#include "audio/DrvWaveOut.h"
#include "tests/support/DeviceRig.h"
#include "tests/support/LogCapture.h"
#include "tests/support/ScriptedWaveOut.h"

namespace vonta::test {
namespace {

struct WaveOutRig : DeviceRig {
    explicit WaveOutRig(std::uint32_t rate = 44100, WaveOutScript withScript = {}, int number = 0)
        : script(std::move(withScript)),
          driver(std::make_unique<DrvWaveOut>(std::make_unique<ScriptedWaveOut>(script))) {
        mixer->sampleRate = rate;
        started = driver->Init(nullptr, 0, number, *mixer, &nobody);
    }
    std::uint32_t Position(std::uint64_t samples) {
        script.time.value = samples;
        std::uint32_t bytes = 12345;
        driver->GetPosition(&bytes);
        return bytes;
    }

    WaveOutScript script;
    std::unique_ptr<DrvWaveOut> driver;
    int started = 0;
};

TEST(WaveOutDevice, StartsOneRingForEver) {
    WaveOutScript script;
    script.volume = 0x40004000;
    const LogCapture log;
    WaveOutRig rig(44100, script);
    EXPECT_NE(rig.started, 0);
    EXPECT_EQ(rig.script.calls, (std::vector<std::string>{"caps", "open", "prepare", "write"}));
    EXPECT_EQ(rig.script.header->flags, 12u);
    EXPECT_EQ(rig.script.header->loops, 0xFFFFFFFFu);
    EXPECT_EQ(rig.script.Ring().size_bytes(), 35280u);
    EXPECT_EQ(std::ranges::count(rig.script.Ring(), 0), 17640) << "silence at first";
    EXPECT_EQ(rig.driver->GetLatency(), 35000u);
    EXPECT_EQ(rig.script.volume, 0xCCCCCCCCu) << "0.8";
    EXPECT_TRUE(log.Has("\twaveout formats supported:\n\t\tname: Card\n\t\t- 11.025 khz, stereo, 16bit\n"
                        "\t\t- 22.05 khz, stereo, 16bit\n\t\t- 44.1 khz, stereo, 16bit\n\topening waveout...\n"
                        "\twaveout opened...\n\tPreparing Header...\n\twriting...\n"));
    rig.driver.reset();
    EXPECT_EQ(rig.script.volume, 0x40004000u) << "as it was before us";
    EXPECT_FALSE(rig.script.open);
}

TEST(WaveOutDevice, EveryFailingStepIsToldAndFailsTheStart) {
    const struct { const char* step; WaveResult result; const char* line; } rows[] = {
        {"caps", WaveResult::NoDriver, "\t\tERROR: can't get waveout caps\n"},
        {"open", WaveResult::BadDeviceId, "\terror: baddeviceid\n"},
        {"open", WaveResult::Allocated, "\terror: allocated\n"},
        {"open", WaveResult::NoDriver, "\terror: nodriver\n"},
        {"open", WaveResult::NoMemory, "\terror: nomem\n"},
        {"open", WaveResult::BadFormat, "\terror: badformat\n"},
        {"open", WaveResult::Sync, "\terror: sync\n"},
        {"prepare", WaveResult::InvalidHandle, "\terror: invalhandle\n"},
        {"prepare", WaveResult::NoDriver, "\terror: no driver\n"},
        {"write", WaveResult::NoMemory, "\terror: nomem\n"},
        {"write", WaveResult::Unprepared, "\terror: unprepared\n"},
    };
    for (const auto& row : rows) {
        const LogCapture log;
        WaveOutScript script;
        script.failing = row.step;
        script.failure = row.result;
        WaveOutRig rig(44100, script);
        EXPECT_EQ(rig.started, 0) << row.step;
        EXPECT_TRUE(log.Text().ends_with(row.line)) << log.Text();
        rig.driver.reset();
        EXPECT_EQ(rig.script.volume, 0xFFFFFFFFu) << "never touched";
    }
    WaveOutScript none;
    none.devices.clear();
    const LogCapture log;
    EXPECT_EQ(WaveOutRig(44100, none).started, 0);
    EXPECT_EQ(log.Text(), "");
    EXPECT_EQ(WaveOutRig(44100, {}, 1).started, 0);
    EXPECT_EQ(WaveOutRig(44100, {}, -1).started, 0);
}

TEST(WaveOutDevice, TheRingHoldsAFifthOfASecondInWholeFrames) {
    const struct { std::uint32_t rate, bytes; } rows[] = {{44100, 35280}, {48000, 38400}, {8000, 6400}, {44102, 35280}, {65535, 52428}};
    for (const auto& row : rows) {
        const WaveOutRig rig(row.rate);
        EXPECT_EQ(rig.driver->GetBufferSize(), row.bytes);
        EXPECT_EQ(rig.script.openedRate, row.rate);
    }
    const LogCapture log;
    EXPECT_EQ(WaveOutRig(65536).started, 0) << "a rate that the system's 16 bits would cut";
    EXPECT_TRUE(log.Has("\terror: badformat\n"));
}

TEST(WaveOutDevice, ThePositionCountsSamplesAroundTheRing) {
    WaveOutRig rig;
    EXPECT_EQ(rig.Position(100), 400u);
    EXPECT_EQ(rig.Position(8820), 0u);
    EXPECT_EQ(rig.Position((1ull << 32) + 8820 * 3), ((1ull << 32) * 4) % 35280) << "no wrap of the system's own";
    const LogCapture log;
    rig.script.failing = "position";
    const struct { WaveResult result; const char* line; } rows[] = {
        {WaveResult::InvalidHandle, "\terror: invalhandle\n"},
        {WaveResult::NoDriver, "\terror: no driver\n"},
        {WaveResult::NoMemory, "\terror: nomem\n"},
    };
    const std::uint32_t before = rig.Position(100);
    for (const auto& row : rows) {
        rig.script.failure = row.result;
        EXPECT_EQ(rig.Position(500), before) << "stands still";
        EXPECT_TRUE(log.Text().ends_with(row.line)) << log.Text();
    }
    rig.script.failing.clear();
    rig.script.time.type = WaveTimeType::Bytes;
    EXPECT_EQ(rig.Position(500), 0u);
    EXPECT_TRUE(log.Has("Wave Out GetPosition doesn't support TIME_SAMPLES\n"));
}

TEST(WaveOutDevice, BlocksGoRoundTheRing) {
    WaveOutRig rig;
    rig.driver->WriteBlock(DeviceRig::Ramp(72), 72, 0);         // 280 bytes are left at the end
    const auto ring = rig.script.Ring();
    EXPECT_EQ((std::array{ring[17500], ring[17501], ring[17639], ring[0], ring[1], ring[3], ring[4]}),
              (std::array<std::int16_t, 7>{0, 100, 169, 70, 170, 171, 0}));
    EXPECT_EQ(rig.driver->SetLatency(50000), 35280u);
    rig.driver->WriteBlock(DeviceRig::Ramp(1), 1, 3 * 35280 + 400);
    EXPECT_EQ(ring[201], 100);
    EXPECT_EQ(rig.driver->SetLatency(1003), 1000u);
    EXPECT_EQ(rig.driver->GetLatency(), 1000u);
}

TEST(WaveOutDevice, VolumesAreSixteenBitsASide) {
    WaveOutRig rig;
    rig.driver->SetVolume(0.5f);
    EXPECT_EQ(rig.script.volume, 0x7FFF7FFFu);
    EXPECT_NEAR(rig.driver->GetVolume(), 0.5f, 1e-4f);
    rig.driver->SetVolume(7.0f);
    EXPECT_EQ(rig.driver->GetVolume(), 1.0f);
    rig.script.volume = 0x8000FFFF;
    EXPECT_EQ(rig.driver->GetVolume(), 1.0f) << "the low half speaks for both";
    const LogCapture log;
    rig.script.failing = "volume";
    EXPECT_EQ(rig.driver->GetVolume(), 0.0f);
    rig.driver->SetVolume(1.0f);
    EXPECT_EQ(log.Text(), "* Error setting wave out volume\n* Error setting wave out volume\n");
}

TEST(WaveOutDevice, ALoopThatTheSystemEndsIsWrittenAnew) {
    WaveOutRig rig;
    rig.script.lost = true;
    EXPECT_TRUE(rig.driver->IsLost());
    rig.script.calls.clear();
    rig.script.back = false;
    EXPECT_FALSE(rig.driver->Restore());
    rig.script.back = true;
    const LogCapture log;
    EXPECT_TRUE(rig.driver->Restore());
    EXPECT_EQ(rig.script.calls, (std::vector<std::string>{"unprepare", "prepare", "write", "unprepare", "prepare", "write"}));
    EXPECT_TRUE(log.Text().starts_with("\twaveoutproc: WOM_DONE\n")) << log.Text();
    EXPECT_TRUE(log.Text().ends_with("\twaveoutproc: end WOM_DONE\n"));
    EXPECT_EQ(rig.Position(100), 400u);
}

TEST(WaveOutDevice, CountsTheBlocksThatComeTooLate) {
    WaveOutRig rig;                                  // 8750 of the ring's 8820 frames ahead
    const auto cycle = [&](std::uint64_t played) {
        rig.Position(played);
        rig.driver->WriteBlock(DeviceRig::Ramp(1), 1, 0);
        return rig.driver->GetUnderruns();
    };
    EXPECT_EQ(cycle(50000), 0u);
    EXPECT_EQ(cycle(58750), 0u);
    EXPECT_EQ(cycle(67501), 1u);
}

}  // namespace
}  // namespace vonta::test
