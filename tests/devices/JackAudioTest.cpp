// With a real JACK server, started by the test under a private name.
#include <gtest/gtest.h>

#include <thread>

#include "audio/CreateDevice.h"
#include "audio/DrvASIO.h"
#include "tests/support/JackRecorder.h"
#include "tests/support/JackServerProcess.h"
#include "tests/support/SteadyNote.h"

namespace vonta {
namespace {

constexpr float kHeadroom = 131072.0f;             // full scale of the device

std::vector<std::string> Ports(int count) {
    std::vector<std::string> names;
    for (int i = 0; i < count; ++i)
        names.push_back("Vonta Tracker:Output " + std::to_string(i / 2 + 1) + (i % 2 ? " right" : " left"));
    return names;
}

struct JackPlayer {
    bool Open() {
        if (player.StartSound(nullptr, static_cast<int>(DeviceKind::Asio), 0, nullptr, 44100) != 0) return false;
        player.SetSong(SteadyNote());
        player.SetMixerOn(true);
        return true;
    }
    void PlayFromTheStart() {
        player.SetTempo(1);
        player.Play(0);
        std::this_thread::sleep_for(std::chrono::milliseconds(300));
    }
    bool IsLost() { return player.GetDevice()->IsLost(); }
    bool BecomesLost() {
        return test::Await([this] { return IsLost(); });
    }
    bool Restore() {
        const MixerPause pause(player);
        return player.GetDevice()->Restore();
    }

    SndPlayer player{CreateDevice};
};

TEST(JackAudio, ASteadyNoteIsHeardAtItsFrequencyAndLevelOnItsSideWithoutAGap) {
    struct { int ports, frames, rate; } const cases[] = {
        {2, 64, 44100}, {4, 256, 96000}, {32, 1024, 44100}, {32, 4096, 96000},
    };
    for (const auto& each : cases) {
        SCOPED_TRACE(testing::Message() << each.ports << " ports, " << each.frames << " frames, " << each.rate << " Hz");
        const test::JackServerProcess server(each.rate, each.frames, each.ports);
        JackPlayer jack;
        ASSERT_TRUE(jack.Open());
        EXPECT_EQ(jack.player.GetMixer().sampleRate, static_cast<std::uint32_t>(each.rate)) << "the server's";
        const auto second = static_cast<std::size_t>(each.rate);
        JackRecorder recorder(Ports(each.ports), second);
        EXPECT_EQ(recorder.Missing(), "");
        jack.PlayFromTheStart();
        recorder.Record(second);
        for (const std::size_t side : {0, 1}) {
            Tone expected = SteadyTone(static_cast<std::uint32_t>(each.rate), side);
            expected.peak /= kHeadroom;
            const Tone heard = MeasureTone(recorder.Track(side), each.rate);
            EXPECT_GT(expected.peak, 0.01f);
            EXPECT_NEAR(heard.frequency, expected.frequency, 1.0);
            EXPECT_NEAR(heard.peak, expected.peak, 0.01f * expected.peak);
            EXPECT_EQ(heard.gaps, 0);
        }
        EXPECT_NEAR(MeasureTone(recorder.Track(1), 1).peak / MeasureTone(recorder.Track(0), 1).peak, 0.5f, 0.01f);
        for (std::size_t track = 2; track < static_cast<std::size_t>(each.ports); ++track)
            EXPECT_EQ(MeasureTone(recorder.Track(track), 1).peak, 0.0f);
    }
}

TEST(JackAudio, ConnectionsHoldAThousandStopsAndStartsOfTheMixer) {
    const test::JackServerProcess server(44100, 64, 2);
    JackPlayer jack;
    ASSERT_TRUE(jack.Open());
    JackRecorder recorder(Ports(2), 4410);
    for (int i = 0; i < 1000; ++i) {
        jack.player.SetMixerOn(false);
        ASSERT_FALSE(jack.player.IsMixerOn());
        jack.player.SetMixerOn(true);
        ASSERT_TRUE(jack.player.IsMixerOn());
    }
    EXPECT_FALSE(jack.IsLost());
    EXPECT_EQ(recorder.Connections(0), 1);
    jack.PlayFromTheStart();
    recorder.Record(4410);
    EXPECT_GT(MeasureTone(recorder.Track(0), 44100).peak, 0.01f);
}

TEST(JackAudio, AServerThatDiesOrChangesItsBlockSizeIsLostUntilTheDeviceIsOpenedAnew) {
    test::JackServerProcess server(44100, 256, 2);
    JackPlayer jack;
    ASSERT_TRUE(jack.Open());
    {
        JackRecorder recorder(Ports(2), 4410);
        EXPECT_FALSE(jack.IsLost());
        ASSERT_EQ(jack_set_buffer_size(recorder.Client(), 512), 0);
        EXPECT_TRUE(jack.BecomesLost());
        recorder.Record(4410);
        EXPECT_EQ(MeasureTone(recorder.Track(0), 44100).peak, 0.0f);
    }
    ASSERT_TRUE(jack.Restore());
    EXPECT_FALSE(jack.IsLost());
    for (const int signal : {SIGTERM, SIGKILL}) {
        server.Stop(signal);
        EXPECT_TRUE(jack.BecomesLost()) << signal;
        EXPECT_FALSE(jack.Restore()) << "no server";
        server.Start();
        ASSERT_TRUE(jack.Restore()) << signal;
        JackRecorder recorder(Ports(2), 4410);
        jack.PlayFromTheStart();
        recorder.Record(4410);
        EXPECT_GT(MeasureTone(recorder.Track(0), 44100).peak, 0.01f);
    }
}

TEST(JackAudio, WithoutAServerTheDeviceSaysSo) {
    setenv("JACK_DEFAULT_SERVER", "vonta-test-nobody", 1);
    JackPlayer jack;
    EXPECT_FALSE(jack.Open());
}

}  // namespace
}  // namespace vonta
