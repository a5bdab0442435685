// A JACK server with the dummy driver under a private name, which is also this process's default server while the
// object lives. Synchronous: it waits for its clients, so that a busy machine delays sound but tears no hole in it.
#pragma once

#include <jack/jack.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <fcntl.h>
#include <stdexcept>
#include <string>
#include <thread>

namespace vonta {

class JackServerProcess {
public:
    JackServerProcess(int rate, int frames, int ports) : rate_(rate), frames_(frames), ports_(ports) {
        setenv("JACK_DEFAULT_SERVER", name_.c_str(), 1);
        setenv("JACK_NO_AUDIO_RESERVATION", "1", 1);
        jack_set_error_function([](const char*) {});
        jack_set_info_function([](const char*) {});
        Start();
    }
    ~JackServerProcess() { Stop(SIGTERM); }
    JackServerProcess(const JackServerProcess&) = delete;
    JackServerProcess& operator=(const JackServerProcess&) = delete;

    void Start() {
        const std::string rate = std::to_string(rate_), frames = std::to_string(frames_), ports = std::to_string(ports_);
        pid_ = fork();
        if (pid_ == 0) {
            prctl(PR_SET_PDEATHSIG, SIGTERM);
            const int null = open("/dev/null", O_WRONLY);
            dup2(null, STDOUT_FILENO);
            dup2(null, STDERR_FILENO);
            execlp("jackd", "jackd", "-r", "-S", "-t", "10000", "-n", name_.c_str(), "-d", "dummy", "-r", rate.c_str(),
                   "-p", frames.c_str(), "-P", ports.c_str(), static_cast<char*>(nullptr));
            _exit(127);
        }
        for (int tries = 0; !Answers(); ++tries) {
            if (tries == 200) throw std::runtime_error("jackd does not start; is the package jackd2 installed?");
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
        }
    }
    void Stop(int signal) {
        if (pid_ <= 0) return;
        kill(pid_, signal);
        waitpid(pid_, nullptr, 0);
        pid_ = -1;
    }

private:
    static bool Answers() {
        jack_client_t* client = jack_client_open("probe", JackNoStartServer, nullptr);
        return client && jack_client_close(client) == 0;
    }

    const std::string name_ = "vonta-test-" + std::to_string(getpid());
    int rate_, frames_, ports_;
    pid_t pid_ = -1;
};

}  // namespace vonta
