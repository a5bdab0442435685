// A JACK server with the dummy driver under a private name, which is also this process's default server while the
// object lives. Synchronous: it waits for its clients, so that a busy machine delays sound but tears no hole in it.
#pragma once

#include <jack/jack.h>

#include <cstdlib>
#include <optional>
#include <stdexcept>
#include <string>

#include "tests/support/Await.h"
#include "tests/support/ChildProcess.h"

namespace vonta::test {

class JackServerProcess {
public:
    explicit JackServerProcess(int rate = 48000, int frames = 256, int ports = 2)
        : rate_(rate), frames_(frames), ports_(ports) {
        setenv("JACK_DEFAULT_SERVER", name_.c_str(), 1);
        setenv("JACK_NO_AUDIO_RESERVATION", "1", 1);
        jack_set_error_function([](const char*) {});
        jack_set_info_function([](const char*) {});
        Start();
    }
    ~JackServerProcess() { unsetenv("JACK_DEFAULT_SERVER"); }
    JackServerProcess(const JackServerProcess&) = delete;
    JackServerProcess& operator=(const JackServerProcess&) = delete;

    // Throws, which fails the test, if there can be none.
    void Start() {
        server_.emplace(std::vector<std::string>{
            "jackd", "-r", "-S", "-t", "10000", "-n", name_, "-d", "dummy", "-r", std::to_string(rate_), "-p",
            std::to_string(frames_), "-P", std::to_string(ports_)});
        if (!Await(Answers)) throw std::runtime_error("jackd does not start; is the package jackd2 installed?");
    }
    void Stop(int signal = SIGTERM) { server_->Stop(signal); }

private:
    static bool Answers() {
        jack_client_t* client = jack_client_open("probe", JackNoStartServer, nullptr);
        return client && jack_client_close(client) == 0;
    }

    const std::string name_ = "vonta-test-" + std::to_string(getpid());
    int rate_, frames_, ports_;
    std::optional<ChildProcess> server_;
};

}  // namespace vonta::test
