// The program's face on a terminal: one program, a sub-command for each thing that it does without a window.
#pragma once

namespace vonta {

// The status with which the process ends.
enum ExitStatus : int {
    kDone = 0,
    kFailed = 1,
    kWrongUsage = 2,
    kInterrupted = 130,                              // by Ctrl+C
};

int RunCommandLine(int argc, char** argv);

}  // namespace vonta
