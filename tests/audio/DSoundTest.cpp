#include <gtest/gtest.h>

#include <array>
#include <memory>

#include "audio/DrvDSound.h"
#include "engine/SndPlayer.h"
#include "tests/support/DeviceRig.h"
#include "tests/support/LogCapture.h"
#include "tests/support/ScriptedDirectSound.h"

namespace vonta::test {
namespace {

struct DSoundRig : DeviceRig {
    explicit DSoundRig(int plane = 1, std::uint32_t rate = 44100, DirectSoundScript withScript = {}, int number = 0)
        : script(std::move(withScript)),
          driver(std::make_unique<DrvDSound>(std::make_unique<ScriptedDirectSound>(script))) {
        mixer->sampleRate = rate;
        started = driver->Init(nullptr, plane, number, *mixer, &nobody);
    }
    void WriteRamp(int frames, std::uint32_t offset) { driver->WriteBlock(Ramp(frames), frames, offset); }

    DirectSoundScript script;
    std::unique_ptr<DrvDSound> driver;
    int started = 0;
};

using Steps = std::vector<std::string>;

TEST(DSoundDevice, StartsItsPlanes) {
    const DSoundRig first(0);
    EXPECT_EQ(first.script.calls, (Steps{"create ", "caps", "level 4", "primary", "format 44100", "play primary"}));
    EXPECT_EQ(first.driver->GetBufferSize(), 32768u);
    EXPECT_EQ(first.started, 18000);
    DSoundRig second(1, 48000, {}, 1);
    EXPECT_EQ(second.script.calls, (Steps{"create {1}", "level 2", "primary", "format 48000", "secondary 38400 48000",
                                          "play secondary"}));
    EXPECT_EQ(second.driver->GetBufferSize(), 38400u);
    EXPECT_EQ(second.driver->GetCurrentDeviceName(), "Card one");
    second.driver.reset();
    EXPECT_EQ(second.script.objects, 0);
}

TEST(DSoundDevice, EveryFailingStepIsToldAndFailsTheStart) {
    const struct { int plane; const char *step, *line; } rows[] = {
        {0, "create ", "\t\t- error abriendo dsound device\n"},
        {0, "caps", "\t- error getcaps\n"},
        {0, "primary", "\t\t- error creando buffer de sonido primario\n"},
        {0, "format 44100", "\t\t- error estableciendo formato del buffer primario\n"},
        {0, "play primary", "\t\t- error colocando a play el buffer primario\n"},
        {1, "create ", "\t\t- error abriendo dsound device\n"},
        {1, "format 44100", "\t\t- error estableciendo formato del buffer primario\n"},
        {1, "secondary 35280 44100", "\t\t- error creando buffer de sonido secundario\n"},
        {1, "play secondary", "\t\t- error colocando a play el buffer secundario\n"},
    };
    for (const auto& row : rows) {
        const LogCapture log;
        DirectSoundScript script;
        script.failing = row.step;
        const DSoundRig rig(row.plane, 44100, script);
        EXPECT_EQ(rig.started, 0) << row.step;
        EXPECT_TRUE(log.Has(row.line)) << log.Text();
        EXPECT_EQ(rig.driver->GetBufferSize(), 0u);
        EXPECT_EQ(rig.script.calls.back(), row.step) << "nothing follows the failure";
    }
    EXPECT_EQ(DSoundRig(2).started, 0);
    EXPECT_EQ(DSoundRig(0, 44100, {}, 2).started, 0) << "no such device";
    EXPECT_EQ(DSoundRig(0, 44100, {}, -1).started, 0);
}

TEST(DSoundDevice, ARefusedCooperativeLevelFailsTheFirstPlaneOnly) {
    DirectSoundScript script;
    script.cooperation = CooperativeResult::Allocated;
    for (const int plane : {0, 1}) {
        const LogCapture log;
        EXPECT_EQ(DSoundRig(plane, 44100, script).started != 0, plane == 1);
        EXPECT_TRUE(log.Has("\t- error estableciendo nivel de cooperacion\n"
                            "\t\tdriver allocated by other aplication.\n"));
    }
}

TEST(DSoundDevice, LogsWhatTheDeviceCan) {
    DirectSoundScript script;
    script.caps = {SoundCaps::Primary16Bit, 1, 7};
    const LogCapture log;
    const DSoundRig rig(0, 44100, script);
    EXPECT_TRUE(log.Has("\t\tInfo:\n\t\t\tprimary 16 bit\n\t\t\tNum primary buffers: 1\n"
                        "\t\t\tNum sec hard mix buffers: 7\n"));
}

TEST(DSoundDevice, TheDefaultLatencyFitsTheRingAndKeepsTheSidesApart) {
    DirectSoundScript script;
    for (const auto& [bytes, latency] : std::map<std::uint32_t, std::uint32_t>{{16000, 15998}, {18000, 17998}, {18004, 18000}}) {
        script.primaryBytes = bytes;
        DSoundRig rig(0, 44100, script);
        EXPECT_EQ(rig.driver->GetLatency(), latency);
        rig.WriteRamp(2, 0);
        const std::size_t at = latency / 4 * 2;
        EXPECT_EQ(rig.script.ring[at], 0);
        EXPECT_EQ(rig.script.ring[at + 1], 100);
    }
}

TEST(DSoundDevice, ALatencyHoldsFromTheNextBlockOn) {
    DSoundRig rig(1);
    const struct { std::uint32_t asked, taken; } rows[] = {{1001, 1000}, {3, 0}, {35280, 35280}, {50000, 35280}};
    for (const auto& row : rows) {
        const std::uint32_t before = rig.driver->GetLatency();
        EXPECT_EQ(rig.driver->SetLatency(row.asked), row.taken);
        EXPECT_EQ(rig.driver->GetLatency(), before);
        rig.WriteRamp(1, 0);
        EXPECT_EQ(rig.driver->GetLatency(), row.taken);
    }
    DSoundRig closed(7);
    EXPECT_EQ(closed.driver->SetLatency(50001), 50000u) << "nothing to hold it to";
}

TEST(DSoundDevice, BlocksGoRoundTheRingInWholeFrames) {
    DSoundRig rig(1);
    rig.driver->SetLatency(8);
    rig.WriteRamp(3, 35280 - 12);                    // its last frame, then around
    const auto& ring = rig.script.ring;
    const std::size_t last = ring.size() - 2;
    EXPECT_EQ((std::array{ring[last], ring[last + 1], ring[0], ring[1], ring[2], ring[3], ring[4]}),
              (std::array<std::int16_t, 7>{0, 100, 1, 101, 2, 102, -1}));
    EXPECT_EQ(rig.script.unlocked, 12u);
    rig.WriteRamp(1, 5 * 35280);                     // an offset far beyond the ring
    EXPECT_EQ(ring[4], 0);
    rig.script.failing = "lock";
    rig.WriteRamp(100, 0);                           // costs the block, no more
    EXPECT_EQ(ring[6], -1);
}

TEST(DSoundDevice, ThePositionIsTheWriteCursor) {
    DSoundRig rig(1);
    rig.script.cursors = {4000, 6048, 123456};
    std::uint32_t bytes = 0;
    EXPECT_NE(rig.driver->GetPosition(&bytes), 0);
    EXPECT_EQ(bytes, 6048u);
    DSoundRig closed(7);
    EXPECT_EQ(closed.driver->GetPosition(&bytes), 0);
    EXPECT_EQ(bytes, 0u);
}

TEST(DSoundDevice, CountsTheBlocksThatComeTooLate) {
    DSoundRig rig(1);
    rig.driver->SetLatency(400);
    std::uint32_t bytes = 0;
    const auto cycle = [&](std::uint32_t played) {   // the write cursor is 50 frames ahead: 150 with the latency
        rig.script.cursors = {played * 4 % 35280, (played + 50) * 4 % 35280, played};
        rig.driver->GetPosition(&bytes);
        rig.WriteRamp(1, 0);
        return rig.driver->GetUnderruns();
    };
    EXPECT_EQ(cycle(100000), 0u) << "the first block after the start cannot be late";
    EXPECT_EQ(cycle(100150), 0u);
    EXPECT_EQ(cycle(100301), 1u);
    EXPECT_EQ(cycle(200000), 2u);
    rig.driver->WriteBlock(DeviceRig::Ramp(8820), 8820, 0);     // silence, all around: the mixer rests
    EXPECT_EQ(cycle(900000), 2u);
    EXPECT_EQ(cycle(900151), 3u);
}

TEST(DSoundDevice, ALostDeviceIsPlayedAgainWhenItIsBack) {
    DSoundRig rig(1);
    EXPECT_FALSE(rig.driver->IsLost());
    rig.script.lost = true;
    rig.script.back = false;
    EXPECT_TRUE(rig.driver->IsLost());
    EXPECT_FALSE(rig.driver->Restore());
    rig.script.back = true;
    EXPECT_TRUE(rig.driver->Restore());
    EXPECT_FALSE(rig.driver->IsLost());
}

TEST(DSoundDevice, ListsAsManyDevicesAsItsCountHolds) {
    DirectSoundScript script;
    script.devices.resize(300, {"x", "y", "z"});
    DSoundRig rig(1, 44100, script, 254);
    EXPECT_EQ(rig.driver->GetNumDevices(), 255);
    EXPECT_NE(rig.started, 0);
    EXPECT_EQ(rig.driver->GetDeviceName(255), "");
    EXPECT_EQ(rig.driver->GetDeviceName(-1), "");
}

}  // namespace
}  // namespace vonta::test
