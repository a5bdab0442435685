// Exchanging parts of a song that sounds: nobody hears it, and nothing reads what has left.
#include <gtest/gtest.h>

#include <thread>

#include "tests/support/PlayerRig.h"
#include "tests/support/TestDevice.h"

namespace vonta {
namespace {

constexpr std::uint32_t kMoved = 512;             // bytes that the device plays between two calls
constexpr int kCalls = 3000;
constexpr std::size_t kCompared = std::size_t{kCalls} * kMoved / 2;   // values; a call that is left out adds one at the end

// Two patterns that are alike, so that exchanging them changes nothing.
std::unique_ptr<Song> TwinSong() {
    SongBuilder song;
    song.Channels(4).Tempo(2).Order({0});
    for (int i = 0; i < 4; ++i) song.SineInstrument(i, 500, {VTSAMPLE_LOOP_FORDWARD, 0, 500});
    for (const int pattern : {0, 1}) {
        song.Pattern(pattern, 16);
        for (int row = 0; row < 16; ++row) song.Note(row, row % 4, 40 + row, 1 + row % 4, 64, 10, 0x02);
    }
    return song.Build();
}

// What the device was given, in the order of the ring, while `edit` goes on beside it.
template <class Edit>
std::vector<float> Played(Edit edit) {
    auto owned = std::make_unique<TestDevice>();
    TestDevice& device = *owned;
    SndPlayer player;
    EXPECT_EQ(player.StartSound(nullptr, 0, 0, nullptr, 44100, std::move(owned)), 0);
    player.SetSong(TwinSong());
    player.SetMixerOn(true);
    player.Play(0);
    device.timer.Fire();                          // the little block after a start
    std::atomic<bool> done{false};
    std::thread audio([&] {
        for (int call = 0, waiting = 0; call < kCalls || waiting;) {
            if (waiting < 100) {                  // a ring that ran round would be a gap of the test's own
                device.position = (device.position + kMoved) % device.ringBytes;
                ++call;
            }
            const std::size_t before = device.blocks.size();
            device.timer.Fire();
            waiting = device.blocks.size() == before ? waiting + 1 : 0;
            if (call % 8 == 0) std::this_thread::sleep_for(std::chrono::microseconds(50));
        }
        done = true;
    });
    while (!done) edit(player);
    audio.join();
    std::vector<float> frames;
    for (const TestDevice::Block& block : device.blocks) frames.insert(frames.end(), block.values.begin(), block.values.end());
    frames.resize(std::min(frames.size(), kCompared));
    return frames;
}

TEST(CycleHold, ThousandsOfExchangesAreNotHeard) {
    const std::vector<float> alone = Played([](SndPlayer&) { std::this_thread::yield(); });
    int holds = 0;
    const std::vector<float> edited = Played([&holds](SndPlayer& player) {
        const CycleHold hold(player);
        const CycleHold nested(player);
        Song& song = player.GetSong();
        std::swap(song.patterns[0], song.patterns[1]);
        auto instrument = std::move(song.instruments[0]);   // away for a moment
        song.instruments[0] = std::move(instrument);
        ++holds;
    });
    EXPECT_GT(holds, 1000);
    ASSERT_EQ(alone.size(), kCompared);
    EXPECT_TRUE(std::equal(alone.begin(), alone.end(), edited.begin(), edited.end()))
        << "from value " << std::mismatch(alone.begin(), alone.end(), edited.begin()).first - alone.begin() << " on";
    EXPECT_TRUE(std::any_of(alone.begin(), alone.end(), [](float value) { return value != 0; }));
}

TEST(CycleHold, LeavesTheDeviceAloneAndTheNextCallMakesUpForIt) {
    auto owned = std::make_unique<TestDevice>();
    TestDevice& device = *owned;
    SndPlayer player;
    player.StartSound(nullptr, 0, 0, nullptr, 44100, std::move(owned));
    player.SetMixerOn(true);
    device.timer.Fire();
    device.blocks.clear();
    {
        const CycleHold hold(player);
        device.position += 400;
        device.timer.Fire();
        { const MixerPause pause(player); }       // within, too
        device.blocks.clear();
        device.timer.Fire();
        EXPECT_TRUE(device.blocks.empty());
        EXPECT_TRUE(player.IsMixerOn());
    }
    {
        const MixerPause pause(player);
        const CycleHold hold(player);
    }
    device.blocks.clear();
    device.timer.Fire();                          // the first after a start
    device.position += 800;
    device.timer.Fire();
    ASSERT_EQ(device.blocks.size(), 2u);
    EXPECT_EQ(device.blocks[1].frames, 200);
}

// Each instrument with a volume envelope and two notes on one track, so that one of them is in the reserve.
TEST(StopInstrument, LetsOneInstrumentLeaveWhileTheOthersPlayOn) {
    const auto make = [](int rows) {
        SongBuilder song;
        song.Channels(2).Tempo(1);
        for (int i = 0; i < 2; ++i) {
            song.SineInstrument(i, 500, {VTSAMPLE_LOOP_FORDWARD, 0, 500});
            Instrument& instrument = *song.Edit().GetInstrument(i);
            instrument.GetEnvelopes(EnvelopeKind::Volume)[0].enabled = 1;
            instrument.newNoteAction = 1;
        }
        for (int row = 0; row < rows; ++row) song.Note(row, 0, 48 + row, 1).Note(row, 1, 55 + row, 2);
        song.Note(4, 0, 60);                      // on the instrument that stands there by then
        return song.Build();
    };
    PlayerRig rig(make(2));
    rig.ToRow(1);
    rig.Frames(500);
    rig.player.StopInstrument(0);
    rig.player.GetSong().SetInstrument(0, nullptr);
    EXPECT_FALSE(rig.Track(0).HasSound());
    EXPECT_TRUE(rig.Track(1).active);
    int sounding = 0;
    for (const auto& channel : rig.player.GetMixer().reserve) sounding += channel->HasSound();
    EXPECT_EQ(sounding, 1);
    rig.Frames(882);
    rig.player.GetSong().SetInstrument(0, MakeInstrument(MakeSample(SineWave(500))));
    rig.ToRow(4 - 2);
    EXPECT_TRUE(rig.Track(0).active);
}

}  // namespace
}  // namespace vonta
