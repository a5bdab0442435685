// `vonta play` on a real PulseAudio server, which each test starts for itself.
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstring>

#include "app/SoundKinds.h"
#include "formats/Loaders.h"
#include "tests/devices/PulseServer.h"
#include "tests/support/RunVonta.h"
#include "tests/support/SteadyNote.h"

namespace vonta::test {
namespace {

constexpr std::size_t kRate = 44100;
constexpr float kWaveOutVolume = 0.8f;
constexpr struct { const char* device; float volume; } kKinds[] = {
    {"directsound", 1.0f}, {"secondary", 1.0f}, {"waveout", kWaveOutVolume},
};

// tools/listen asks for more than a test has time for.
std::size_t Seconds() {
    const char* wanted = std::getenv("VONTA_LISTEN_SECONDS");
    return wanted ? std::strtoul(wanted, nullptr, 10) : 3;
}

class PulseAudio : public testing::Test {
protected:
    void Save(std::unique_ptr<Song> song) const {
        DiskStream stream;
        ASSERT_TRUE(stream.Open(directory_.File("song.vtm"), "wb"));
        ASSERT_EQ(SaveFile(&stream, SaveMode::Module, *song, {}), 0);
    }
    void Play(const std::string& device) {
        program_.emplace(std::vector<std::string>{"play", "song.vtm", "--log", "--device", device}, directory_.Path());
    }
    bool Says(const std::string& text) {
        return Await([&] { return program_->ErrorText().find(text) != std::string::npos; });
    }
    // Once it sounds.
    static bool Sounds(const PulseServer::Recorder& recorder) {
        return Await([&] { return std::ranges::any_of(recorder.Record(kRate / 10), [](int value) { return value != 0; }); });
    }

    TempDirectory directory_;
    PulseServer server_;
    std::optional<Program> program_;
};

TEST_F(PulseAudio, ASteadyNoteIsHeardAtItsFrequencyAndLevelOnItsSidesWithoutAGap) {
    Save(SteadyNote());
    for (const auto& [device, volume] : kKinds) {
        SCOPED_TRACE(device);
        const PulseServer::Recorder recorder(server_);
        Play(device);
        ASSERT_TRUE(Sounds(recorder)) << program_->ErrorText();
        // On a machine with too much else to do the server itself may come too late: another take is fair.
        std::vector<std::int16_t> heard;
        int take = 0;
        for (; take == 0 || (take < 5 && MeasureTone(SideOf(heard, 0), kRate).gaps > 0); ++take) {
            recorder.Record(kRate / 2);
            heard = recorder.Record(Seconds() * kRate);
        }
        for (const std::size_t side : {0, 1}) {
            const Tone expected = SteadyTone(kRate, side), tone = MeasureTone(SideOf(heard, side), kRate);
            EXPECT_NEAR(tone.frequency, expected.frequency, 1.0);
            EXPECT_NEAR(tone.peak, volume * expected.peak, 0.01f * expected.peak);
            EXPECT_EQ(tone.gaps, 0);
            std::printf("%s, side %zu, take %d: %.3f s, %.3f Hz (%.3f), peak %.0f (%.0f), %d gaps\n", device, side, take,
                        static_cast<double>(heard.size()) / 2 / kRate, tone.frequency, expected.frequency,
                        static_cast<double>(tone.peak), static_cast<double>(volume * expected.peak), tone.gaps);
        }
        program_->Interrupt();
        const Outcome outcome = program_->Wait();
        EXPECT_EQ(outcome.status, 130);
        EXPECT_NE(outcome.out.find("underruns 0"), std::string::npos) << outcome.out;
    }
}

TEST_F(PulseAudio, TheSongIsHeardToItsEndAndNotBegunAnew) {
    auto song = SteadyNote();
    song->SetPatternPosLenght(1);
    song->GetPattern(0)->SetNumRows(2);
    Save(std::move(song));
    const PulseServer::Recorder recorder(server_);
    Play("secondary");
    const auto heard = recorder.Record(4 * kRate);
    EXPECT_EQ(program_->Wait().status, 0);
    const auto sounding = std::ranges::count_if(heard, [](int value) { return value != 0; });
    EXPECT_NEAR(static_cast<double>(sounding) / 2 / kRate, 1.24, 0.05);
}

TEST_F(PulseAudio, AServerThatDiesIsToldOnceAndTheSongIsHeardAgainWhenItIsBack) {
    Save(SteadyNote());
    for (const auto& [device, volume] : kKinds) {
        SCOPED_TRACE(device);
        Play(device);
        ASSERT_TRUE(Says("* Creating timer"));
        server_.Stop(SIGKILL);
        ASSERT_TRUE(Says("The sound device is gone"));
        server_.Start();
        ASSERT_TRUE(Says("The sound device is back"));
        EXPECT_TRUE(Sounds(PulseServer::Recorder(server_)));
        program_->Interrupt();
        const Outcome outcome = program_->Wait();
        EXPECT_EQ(outcome.status, 130);
        const auto first = outcome.err.find("is gone");
        EXPECT_EQ(outcome.err.find("is gone", first + 1), std::string::npos) << outcome.err;
    }
}

TEST_F(PulseAudio, DevicesListsTheOutputForEachKind) {
    const Outcome outcome = RunVonta({"devices"}, directory_.Path());
    EXPECT_EQ(outcome.status, 0);
    for (const auto& [device, volume] : kKinds) {
        const auto line = outcome.out.find("  " + std::string(device));
        ASSERT_NE(line, std::string::npos) << outcome.out;
    }
    EXPECT_NE(outcome.out.find("Null Output"), std::string::npos) << outcome.out;
}

TEST_F(PulseAudio, NeitherALongLatencyNorAServerThatHangsHoldsTheEnd) {
    Save(SteadyNote());
    for (const auto& [device, volume] : kKinds)
        for (const bool hangs : {false, true})
            for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
                SCOPED_TRACE(device + std::string(hangs ? ", hanging, " : ", ") + strsignal(signal));
                program_.emplace(std::vector<std::string>{"play", "song.vtm", "--log", "--device", device, "--latency", "5000"},
                                 directory_.Path());
                ASSERT_TRUE(Says("* Creating timer"));
                if (hangs) server_.Signal(SIGSTOP);
                const auto start = std::chrono::steady_clock::now();
                program_->Signal(signal);
                const Outcome outcome = program_->Wait();
                EXPECT_EQ(outcome.status, 130) << outcome.err;
                const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
                server_.Signal(SIGCONT);
                EXPECT_LT(took.count(), hangs ? 2.0 : 0.5);
            }
}

}  // namespace
}  // namespace vonta::test
