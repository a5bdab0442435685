// A PulseAudio server of the test's own, whose one output goes nowhere and can be recorded. Every client of this process
// and of those that it starts goes to the server while it lives.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/Await.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/TempDirectory.h"

namespace vonta::test {

class PulseServer {
public:
    explicit PulseServer(int rate = 44100) : rate_(std::to_string(rate)) {
        for (const auto& [name, value] : environment_) setenv(name.c_str(), value.c_str(), 1);
        Start();
    }
    ~PulseServer() { for (const auto& each : environment_) unsetenv(each.first.c_str()); }
    PulseServer(const PulseServer&) = delete;
    PulseServer& operator=(const PulseServer&) = delete;

    void Start() {
        std::filesystem::remove(socket_);
        server_.emplace(std::vector<std::string>{
            "pulseaudio", "-n", "--daemonize=no", "--use-pid-file=no", "--exit-idle-time=-1",
            "--load=module-null-sink sink_name=rig format=s16le channels=2 rate=" + rate_,
            "--load=module-native-protocol-unix auth-anonymous=1 socket=" + socket_});
        if (!Await([this] { return ChildProcess({"pactl", "get-default-sink"}).Wait() == 0; }))
            throw std::runtime_error("pulseaudio (packages pulseaudio, pulseaudio-utils) does not start");
        server_->Hasten();                           // what it does too late is no fault of ours
    }
    void Stop(int signal) { server_->Stop(signal); }
    void Signal(int signal) const { server_->Signal(signal); }

    // What the output plays from now on: left and right by turns. Recording keeps the output awake; without it, the
    // server would hear its programs once in a second.
    class Recorder {
    public:
        explicit Recorder(const PulseServer& server)
            : client_({"parec", "--device=rig.monitor", "--latency-msec=20", "--format=s16le", "--channels=2",
                       "--rate=" + server.rate_}, {directory_.Write("take", "")}) {}
        // The next so many frames; less if they do not come.
        std::vector<std::int16_t> Record(std::size_t frames) const {
            const std::size_t from = Bytes();
            Await([&] { return Bytes() >= from + frames * kFrameBytes; }, static_cast<int>(frames / 8000) + 30);
            std::vector<std::int16_t> values(2 * frames);
            std::ifstream file(directory_.File("take"), std::ios::binary);
            file.seekg(static_cast<std::streamoff>(from / kFrameBytes * kFrameBytes));
            file.read(reinterpret_cast<char*>(values.data()), static_cast<std::streamsize>(frames * kFrameBytes));
            values.resize(static_cast<std::size_t>(file.gcount()) / kFrameBytes * 2);
            return values;
        }

    private:
        static constexpr std::size_t kFrameBytes = 4;
        std::size_t Bytes() const { return std::filesystem::file_size(directory_.File("take")); }

        TempDirectory directory_;
        ChildProcess client_;
    };

private:
    TempDirectory directory_;
    const std::string rate_, socket_ = directory_.File("socket");
    const std::vector<std::pair<std::string, std::string>> environment_{
        {"PULSE_SERVER", "unix:" + socket_}, {"PULSE_RUNTIME_PATH", directory_.File("runtime")},
        {"PULSE_STATE_PATH", directory_.File("state")}, {"PULSE_COOKIE", directory_.File("cookie")},
        {"SDL_AUDIODRIVER", "pulseaudio"}};
    std::optional<ChildProcess> server_;
};

}  // namespace vonta::test
