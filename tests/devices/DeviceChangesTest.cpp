// Every kind of device by turns: a JACK server of the test's own, and SDL's output without hardware.
#include <gtest/gtest.h>

#include "audio/CreateDevice.h"
#include "tests/devices/Leftovers.h"
#include "tests/support/JackServerProcess.h"
#include "tests/support/SteadyNote.h"
#include "tests/support/TempDirectory.h"

namespace vonta::test {
namespace {

TEST(DeviceChanges, AThousandLeaveNothingBehindAndHangNowhere) {
    constexpr DeviceKind kKinds[] = {DeviceKind::DirectSoundPrimary, DeviceKind::WaveOut, DeviceKind::DirectSoundSecondary,
                                     DeviceKind::NoSound, DeviceKind::DiskWritter};
    const JackServerProcess server(44100, 256);
    const TempDirectory directory;                   // of the disk writer
    std::filesystem::current_path(directory.Path());
    setenv("SDL_AUDIODRIVER", "dummy", 1);
    SndPlayer player(CreateDevice);
    const auto change = [&](std::size_t i) {
        const DeviceKind kind = i % 10 == 9 ? DeviceKind::Asio : kKinds[i % std::size(kKinds)];
        EXPECT_EQ(player.StartSound(nullptr, static_cast<int>(kind), 0, nullptr, 44100), 0);
        player.SetSong(SteadyNote());
        player.SetMixerOn(true);
        player.Play(0);
        player.SetMixerOn(i % 3 == 0);
    };
    for (std::size_t i = 0; i < 20; ++i) change(i);
    change(1000);
    const Leftovers before;
    const auto start = std::chrono::steady_clock::now();
    for (std::size_t i = 0; i < 1000; ++i) change(i);
    change(1000);
    ExpectNothingMoreThan(before);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(200));
}

}  // namespace
}  // namespace vonta::test
