#include <gtest/gtest.h>

#include "tests/support/LogCapture.h"
#include "tests/support/PlayerRig.h"
#include "tests/support/TestDevice.h"

namespace vonta {
namespace {

// A player on a device that the test plays by hand.
struct Cycle {
    explicit Cycle(std::unique_ptr<Song> song = nullptr) {
        auto owned = std::make_unique<TestDevice>();
        device = owned.get();
        player.StartSound(nullptr, 0, 0, nullptr, 44100, std::move(owned));
        if (song) player.SetSong(std::move(song));
    }
    int FramesWritten() const {
        int frames = 0;
        for (const TestDevice::Block& block : device->blocks) frames += block.frames;
        return frames;
    }
    // One tick of the device at this position; the frames it wrote.
    int Fire(std::uint32_t position) {
        device->blocks.clear();
        device->position = position;
        device->timer.Fire();
        return FramesWritten();
    }

    SndPlayer player;
    TestDevice* device;
};

TEST(BlockCycle, WritesWhatTheDeviceHasMovedInChunks) {
    Cycle cycle;
    cycle.device->position = 1000;
    cycle.player.SetMixerOn(true);
    EXPECT_EQ(cycle.Fire(1000), 220);             // 882 bytes, whole frames: the first block after a start
    EXPECT_EQ(cycle.device->blocks[0].byteOffset, 1000u);
    EXPECT_EQ(cycle.Fire(1000), 0);
    EXPECT_EQ(cycle.Fire(1000 + 10002), 2500);
    ASSERT_EQ(cycle.device->blocks.size(), 3u);
    EXPECT_EQ(cycle.device->blocks[0].frames, kRenderFrames);
    EXPECT_EQ(cycle.device->blocks[2].byteOffset, 1000u + 8192);
    EXPECT_EQ(cycle.Fire(4), (0x10000 - 11002 + 4) / 4);   // round the ring
}

TEST(BlockCycle, OneRingIsTheMostAndSilenceFillsItAtAStop) {
    Cycle cycle;
    cycle.device->ringBytes = 400;
    cycle.player.SetMixerOn(true);
    EXPECT_EQ(cycle.Fire(0), 100);
    cycle.device->blocks.clear();
    cycle.player.SetMixerOn(false);
    EXPECT_FALSE(cycle.player.IsMixerOn());
    EXPECT_EQ(cycle.FramesWritten(), 100);
    for (const float value : cycle.device->blocks[0].values) EXPECT_EQ(value, 0.0f);
}

TEST(BlockCycle, CommandsTakeEffectInTheirOrderAtTheNextBlock) {
    Cycle cycle(SongBuilder().Tempo(1).SineInstrument(0, 64, {VTSAMPLE_LOOP_FORDWARD, 0, 64}).Note(0, 0, 48, 1).Build());
    cycle.player.SetMixerOn(true);
    cycle.player.Play(0);
    EXPECT_FALSE(cycle.player.IsPlaying());
    cycle.Fire(0);
    EXPECT_TRUE(cycle.player.IsPlaying());
    cycle.Fire(8000);                             // beyond a tick: row 0 sounds
    EXPECT_TRUE(cycle.player.GetChannel(0).active);
    cycle.player.KillChannel(0);
    EXPECT_TRUE(cycle.player.GetChannel(0).active);
    cycle.Fire(8000);
    EXPECT_FALSE(cycle.player.GetChannel(0).active);
    cycle.player.Stop(1, 0);
    cycle.player.Play(kPlayFromHere);
    cycle.player.Stop(0, 1);
    cycle.Fire(8000);
    EXPECT_FALSE(cycle.player.IsPlaying());
    EXPECT_EQ(inCallback, 0);
}

TEST(BlockCycle, NoticesTempoAndPosition) {
    Cycle cycle(SongBuilder().Tempo(1).Build());
    cycle.player.SetMixerOn(true);
    cycle.Fire(0);
    cycle.player.GetPositionNotice().TakeFlags();
    cycle.player.Play(0);
    cycle.Fire(16000);
    EXPECT_EQ(cycle.player.GetPositionNotice().TakeFlags(), PositionNotice::kPositionChanged);
    cycle.player.SetBPM(90);
    cycle.Fire(16000);
    EXPECT_EQ(cycle.player.GetPositionNotice().TakeFlags(), PositionNotice::kBpmChanged);
    EXPECT_EQ(cycle.player.GetPositionNotice().TakeFlags(), 0);
}

TEST(StartSound, RefusesWhatItCannotOpenAndSaysSo) {
    const LogCapture log;
    auto device = std::make_unique<TestDevice>();
    device->initResult = 0;
    SndPlayer player;
    EXPECT_EQ(player.StartSound(nullptr, 3, 0, nullptr, 44100, std::move(device)), 1);
    EXPECT_EQ(player.StartSound(nullptr, 6, 0, nullptr, 44100, std::make_unique<TestDevice>()), 1);
    EXPECT_EQ(player.StartSound(nullptr, 5, 0, nullptr, 44100), 1);
    EXPECT_EQ(player.StartSound(nullptr, 5, 0, nullptr, 48000, std::make_unique<TestDevice>()), 0);
    EXPECT_EQ(player.GetMixer().timerFlag, 0);
    EXPECT_NE(log.Text().find("SampleRate = 44100\n\t- starting waveout...\n\t- waveout failed\n"), std::string::npos);
    EXPECT_NE(log.Text().find("\t- starting ASIO...\n\t- ASIO started\n\t- Starting MIDI OUT\n"), std::string::npos);
}

TEST(Latency, IsBytesToTheDeviceAndMillisecondsToTheRest) {
    Cycle cycle;
    cycle.player.SetLatencyMs(0);
    EXPECT_EQ(cycle.device->latency, 20u);
    cycle.player.SetLatencyMs(50);
    EXPECT_EQ(cycle.device->latency, 44100u * 4 * 50 / 1000 + 20);
    EXPECT_EQ(cycle.player.GetLatencyMs(), 50);
}

TEST(MixerPause, RestoresWhatItFoundAndNests) {
    Cycle cycle;
    { const MixerPause pause(cycle.player); }
    EXPECT_FALSE(cycle.player.IsMixerOn());
    cycle.player.SetMixerOn(true);
    {
        const MixerPause pause(cycle.player);
        const MixerPause inner(cycle.player);
        EXPECT_FALSE(cycle.player.IsMixerOn());
    }
    EXPECT_TRUE(cycle.player.IsMixerOn());
}

// The host's position in units of 24 ticks; the song has 6 ticks a row.
struct Hosted : Cycle {
    Hosted() : Cycle(SongBuilder().Tempo(6).Build()) {
        device->synced = device->syncPlaying = true;
        device->syncTempo = 125;
        device->syncSampleRate = 44100;
        player.SetMixerOn(true);
        Fire(0);                                  // posts the play command
        Fire(0);                                  // performs it
    }
    void Host(double ticks) { device->syncTime = ticks / 24; }
};

TEST(ExternalSync, StartsStopsAndTakesTempoAndRate) {
    Hosted hosted;
    EXPECT_TRUE(hosted.player.IsPlaying());
    hosted.device->syncTempo = 140.5f;
    hosted.device->syncSampleRate = 48000;
    hosted.Fire(0);
    EXPECT_EQ(hosted.player.GetBPM(), 140.5f);
    EXPECT_EQ(hosted.player.GetSong().GetBPM(), 140u);
    EXPECT_EQ(hosted.player.GetMixer().sampleRate, 48000u);
    hosted.device->syncPlaying = false;
    hosted.Fire(0);
    hosted.Fire(0);
    EXPECT_FALSE(hosted.player.IsPlaying());
}

TEST(ExternalSync, CorrectsByUpToOneTickAndSeeksBeyond) {
    struct { const char* name; double hostTicks; int own; float expected; std::uint32_t counter; const char* line; } const cases[] = {
        {"inside the tick", 0.5, 0, 441, 0, " OK\n"},
        {"exact", 0.0, 0, 0, 0, " Perfect\n"},
        {"the host is a tick ahead", 1.2, 0, 882, 0, " Tick anterior\n"},
        {"the host is a tick behind", 3.9, 4, 0, 4, " Tick siguiente\n"},
        {"far away", 30.0, 2, 0, 30, " (Not Sync): Setting current tick to sincronice\n"},
    };
    for (const auto& each : cases) {
        SCOPED_TRACE(each.name);
        Hosted hosted;
        for (int i = 0; i < each.own; ++i) hosted.player.DoTick();
        hosted.player.GetMixer().tickPosition = 0;
        hosted.Host(each.hostTicks);
        const LogCapture log;
        hosted.Fire(0);                           // asks for no frames: what sync set stands
        EXPECT_EQ(hosted.player.GetMixer().tickPosition, each.expected);
        EXPECT_EQ(hosted.player.TicksPlayed(), each.counter);
        EXPECT_NE(log.Text().find(each.line), std::string::npos) << log.Text();
        EXPECT_EQ(hosted.player.IsDesynced(), each.counter == 30);
        EXPECT_EQ(hosted.player.TakePositionJump(), each.counter == 30);
    }
}

TEST(ExternalSync, AnAbsurdHostDoesNotHoldTheCallback) {
    Hosted hosted;
    for (const double time : {1e300, -1e300, static_cast<double>(NAN)}) {
        hosted.device->syncTime = time;
        hosted.device->syncTempo = static_cast<float>(time);
        hosted.Fire(0);
        hosted.Fire(20000);
    }
    EXPECT_EQ(inCallback, 0);
}

TEST(Jam, AKeyThatIsLetGoWithinATickSoundsUntilTheNext) {
    Cycle cycle(SongBuilder().SineInstrument(0, 64, {VTSAMPLE_LOOP_FORDWARD, 0, 64}).Build());
    SndPlayer& player = cycle.player;
    const auto sounds = [&player](int channel) { player.DoTick(); return player.GetChannel(channel).active != 0; };
    player.QueueNoteOn(48, 0, 3, 255);
    player.QueueKeyOff(3);
    EXPECT_TRUE(sounds(3));
    player.QueueNoteOn(50, 0, 3, 255);            // the next tap
    EXPECT_TRUE(sounds(3));
    EXPECT_TRUE(sounds(3));
    player.QueueKeyOff(3);
    EXPECT_FALSE(sounds(3));
    player.QueueNoteOn(48, 0, 4, 255);            // a tap and a key that is held
    player.QueueKeyOff(4);
    player.QueueNoteOn(50, 0, 4, 255);
    EXPECT_TRUE(sounds(4));
    EXPECT_TRUE(sounds(4));
}

// Tells whether it was reset while the block cycle could be inside.
class WatchedEffect final : public EffectSlot {
public:
    explicit WatchedEffect(SndPlayer& player) : player_(player) { on = 1; }
    bool Load(const std::string&) override { return true; }
    bool Init(int, int, int, std::uint32_t) override { return true; }
    void Uninit() override {}
    std::string GetPath() const override { return {}; }
    int Process(float*, int, int) override { return 1; }
    void Suspend() override { ++(player_.IsMixerOn() || player_.GetChannel(0).active ? early : resets); }
    int resets = 0, early = 0;

private:
    SndPlayer& player_;
};

TEST(Panic, ResetsEffectsInAPauseWithoutNotes) {
    Cycle cycle(SongBuilder().SineInstrument(0, 64, {VTSAMPLE_LOOP_FORDWARD, 0, 64}).Build());
    auto owned = std::make_unique<WatchedEffect>(cycle.player);
    const WatchedEffect& effect = *owned;
    cycle.player.GetMixer().SetEffect(0, std::move(owned));
    cycle.player.SetMixerOn(true);
    cycle.player.PlayNote(0, 48, 0, 128, 0, 0, 0);
    cycle.player.Panic();
    EXPECT_EQ(effect.resets, 1);
    EXPECT_EQ(effect.early, 0);
    EXPECT_TRUE(cycle.player.IsMixerOn());
}

TEST(SampleRate, OfANoteThatSoundsChangesWithItsPitchKept) {
    Cycle cycle(SongBuilder().SineInstrument(0, 64, {VTSAMPLE_LOOP_FORDWARD, 0, 64}).Build());
    cycle.player.PlayNote(0, 60, 0, 128, 0, 0, 0);
    const std::uint32_t step = cycle.player.GetChannel(0).voices[0].step;
    cycle.player.SetSampleRate(88200);
    EXPECT_NEAR(cycle.player.GetChannel(0).voices[0].step, step / 2, 1);
}

}  // namespace
}  // namespace vonta
