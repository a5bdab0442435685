// The player on its timer's thread while another edits, plays, stops and swaps songs. What fails here fails under the
// thread checker.
#include <gtest/gtest.h>

#include <thread>

#include "audio/CreateDevice.h"
#include "tests/support/PlayerRig.h"

namespace vonta {
namespace {

std::unique_ptr<Song> Busy() {
    SongBuilder song;
    song.Channels(8).Tempo(2).Bpm(250);
    for (int i = 0; i < 4; ++i) song.SineInstrument(i, 500, {VTSAMPLE_LOOP_FORDWARD, 0, 500});
    for (int row = 0; row < 64; ++row)
        for (int track = 0; track < 8; ++track) song.Note(row, track, 40 + row % 24, 1 + track % 4, 64, row % 21, row);
    return song.Build();
}

TEST(Threads, EditingAndPlayingGoTogether) {
    SndPlayer player(CreateDevice);
    ASSERT_EQ(player.StartSound(nullptr, static_cast<int>(DeviceKind::NoSound), 0, nullptr, 44100), 0);
    player.SetSong(Busy());
    player.SetMixerOn(true);
    player.Play(0);
    std::thread reader([&player] {
        for (int i = 0; i < 200; ++i) {
            player.GetPositionNotice().Wait(1);
            player.GetPositionNotice().TakeFlags();
        }
    });
    for (int turn = 0; turn < 60; ++turn) {
        Song& song = player.GetSong();
        Pattern& pattern = *song.GetPattern(0);
        pattern.Write(turn % 64, turn % 8, {static_cast<std::uint8_t>(turn), 1, 100, 10, 0x20});
        pattern.SetNumRows(turn % 2 ? 16 : 64);
        player.SetTempo(2 + static_cast<std::uint32_t>(turn % 3));
        player.SetBPM(static_cast<float>(100 + turn));
        player.SetSongEndListener(nullptr);
        song.SetPatternPosIndex(0, 0);
        player.SetRow(turn % 16);
        player.SetMasterVolume(0.5f);
        player.SetChannelMuted(turn % 8, turn % 3 == 0);
        player.MuteInstrument(turn % 4, turn % 2 == 0);
        player.QueueNote(50, 1, 64);
        player.KillChannel(turn % 64);
        player.GetCurrentPlayPos();
        player.SetInterpolation(turn % 2 ? Interpolation::Cubic : Interpolation::Linear);
        if (turn % 7 == 0) player.Stop(0, 1);
        if (turn % 7 == 1) player.Play(0);
        if (turn % 20 == 19) {
            const MixerPause pause(player);
            player.SetSong(Busy());
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(4));
    }
    reader.join();
    EXPECT_GT(player.GetMixer().cpuScan->CyclesPerSecond(), 0.0f);
    player.SetMixerOn(false);
    EXPECT_EQ(inCallback, 0);
}

struct Crash final : CrashHandler {
    std::atomic<int> faults{0};
    void OnCrash(int audioFault) override { faults += audioFault; }
};

// A plug-in that reads where nothing is, on the audio thread.
class FaultyEffect final : public EffectSlot {
public:
    FaultyEffect() { on = 1; }
    bool Load(const std::string&) override { return true; }
    bool Init(int, int, int, std::uint32_t) override { return true; }
    void Uninit() override {}
    std::string GetPath() const override { return {}; }
    int Process(float*, int, int) override { return *static_cast<volatile int*>(nowhere_); }

private:
    void* nowhere_ = reinterpret_cast<void*>(64);   // no page is mapped so low
};

TEST(Threads, AFaultOfTheBlockCycleReachesTheCrashHandler) {
    Crash crash;
    SndPlayer player(CreateDevice);
    ASSERT_EQ(player.StartSound(nullptr, static_cast<int>(DeviceKind::NoSound), 0, &crash, 44100), 0);
    player.GetMixer().SetEffect(0, std::make_unique<FaultyEffect>());
    player.SetMixerOn(true);
    for (int wait = 0; wait < 300 && !crash.faults; ++wait) std::this_thread::sleep_for(std::chrono::milliseconds(10));
    EXPECT_EQ(inCallback, 1);                     // what the cycle held is lost
    player.SetMixerOn(false);                     // and yet nobody waits for it
    EXPECT_EQ(crash.faults, 1);
    inCallback = 0;
}

}  // namespace
}  // namespace vonta
