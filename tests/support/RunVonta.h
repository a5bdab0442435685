// Runs the program as a person's shell would, and hands back what it left.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "tests/support/ChildProcess.h"
#include "tests/support/TempDirectory.h"

namespace vonta::test {

struct Outcome {
    int status = -1;                                 // of exit; 128 and the signal if one ended it
    std::string out, err;
};

class Program {
public:
    // The arguments after the program's name; it starts in `directory`. By: a command that becomes the program.
    Program(const std::vector<std::string>& arguments, const std::filesystem::path& directory,
            std::vector<std::string> by = {})
        : child_(Command(std::move(by), arguments), {files_.File("out"), files_.File("err"), directory}) {}

    ~Program() { child_.Stop(SIGINT); }
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    void Signal(int signal) const { child_.Signal(signal); }
    void Interrupt() const { Signal(SIGINT); }

    // What it has said to the error output so far.
    std::string ErrorText() const { return files_.Text("err"); }

    Outcome Wait() {
        const int status = child_.Wait();
        return {status, files_.Text("out"), ErrorText()};
    }

private:
    static std::vector<std::string> Command(std::vector<std::string> by, const std::vector<std::string>& arguments) {
        by.emplace_back(VONTA_PROGRAM);
        by.insert(by.end(), arguments.begin(), arguments.end());
        return by;
    }

    TempDirectory files_;
    ChildProcess child_;
};

inline Outcome RunVonta(const std::vector<std::string>& arguments, const std::filesystem::path& directory) {
    return Program(arguments, directory).Wait();
}

}  // namespace vonta::test
