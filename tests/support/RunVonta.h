// Runs the program as a person's shell would, and hands back what it left.
#pragma once

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "tests/support/TempDirectory.h"

namespace vonta::test {

struct Outcome {
    int status = -1;                                 // of exit; 128 and the signal if one ended it
    std::string out, err;
};

class Program {
public:
    // The arguments after the program's name; it starts in `directory`.
    Program(const std::vector<std::string>& arguments, const std::filesystem::path& directory) {
        child_ = fork();
        if (child_ == 0) Become(arguments, directory);
    }
    ~Program() { if (child_ > 0) Interrupt(), Wait(); }
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    void Interrupt() const { kill(child_, SIGINT); }

    // What it has said to the error output so far.
    std::string ErrorText() const { return files_.Text("err"); }

    // Looks every few milliseconds, for a minute at most.
    static bool WaitUntil(const std::function<bool()>& seen) {
        for (int i = 0; i < 6000; ++i) {
            if (seen()) return true;
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
        return false;
    }

    Outcome Wait() {
        int status = 0;
        waitpid(child_, &status, 0);
        child_ = 0;
        return {WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status), files_.Text("out"), ErrorText()};
    }

private:
    [[noreturn]] void Become(const std::vector<std::string>& arguments, const std::filesystem::path& directory) const {
        const auto redirect = [&](const char* name, int target) {
            dup2(open(files_.File(name).c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600), target);
        };
        redirect("out", STDOUT_FILENO);
        redirect("err", STDERR_FILENO);
        if (chdir(directory.c_str()) != 0) _exit(126);
        std::vector<char*> argv{const_cast<char*>("vonta")};
        for (const std::string& argument : arguments) argv.push_back(const_cast<char*>(argument.c_str()));
        argv.push_back(nullptr);
        execv(VONTA_PROGRAM, argv.data());
        _exit(127);
    }

    TempDirectory files_;
    pid_t child_ = 0;
};

inline Outcome RunVonta(const std::vector<std::string>& arguments, const std::filesystem::path& directory) {
    return Program(arguments, directory).Wait();
}

}  // namespace vonta::test
