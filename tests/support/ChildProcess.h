// A program that a test runs beside itself, and that ends with the test at the latest, also when the test crashes.
#pragma once

#include <fcntl.h>
#include <sched.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <string>
#include <vector>

#include "tests/support/Await.h"

namespace vonta::test {

struct ChildPlace { std::string out = "/dev/null", err = "/dev/null", directory = "."; };

class ChildProcess {
public:
    // The program, looked up in the path, and its arguments.
    explicit ChildProcess(const std::vector<std::string>& command, const ChildPlace& place = {}) : pid_(fork()) {
        if (pid_ == 0) Become(command, place);
    }
    ~ChildProcess() { Stop(SIGTERM); }
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    // Before all that does not run in real time, if this user may.
    void Hasten() const {
        const sched_param lowest{.sched_priority = 1};
        sched_setscheduler(pid_, SCHED_RR, &lowest);
    }

    void Signal(int signal) const { if (pid_ > 0) kill(pid_, signal); }

    // The status of its exit; 128 and the signal if one ended it, -1 if it was waited for before.
    int Wait() {
        if (pid_ <= 0) return -1;
        int status = 0;
        waitpid(pid_, &status, 0);
        pid_ = -1;
        return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    }
    // One that does not follow within some seconds is killed.
    int Stop(int signal) {
        Signal(signal);
        siginfo_t ended{};
        const auto hasEnded = [&] {
            return waitid(P_PID, static_cast<id_t>(pid_), &ended, WEXITED | WNOHANG | WNOWAIT) != 0 || ended.si_pid != 0;
        };
        if (pid_ > 0 && !Await(hasEnded, 10)) Signal(SIGKILL);
        return Wait();
    }

private:
    [[noreturn]] static void Become(const std::vector<std::string>& command, const ChildPlace& place) {
        prctl(PR_SET_PDEATHSIG, SIGTERM);
        const auto redirect = [](const std::string& file, int target) {
            dup2(open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600), target);
        };
        redirect(place.out, STDOUT_FILENO);
        redirect(place.err, STDERR_FILENO);
        if (chdir(place.directory.c_str()) != 0) _exit(126);
        std::vector<char*> arguments;
        for (const std::string& argument : command) arguments.push_back(const_cast<char*>(argument.c_str()));
        arguments.push_back(nullptr);
        execvp(arguments[0], arguments.data());
        _exit(127);
    }

    pid_t pid_;
};

}  // namespace vonta::test
