// A bar on the error output while something long is made; nothing at all where that is no terminal.
#pragma once

#include <cstdint>

namespace vonta {

class ProgressBar {
public:
    explicit ProgressBar(double totalSeconds);       // of sound; 0 if unknown
    ~ProgressBar();                                  // wipes it
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;

    void Show(double seconds);                       // at most ten times a second

private:
    bool onTerminal_;
    double totalSeconds_;
    std::uint32_t start_, lastShown_;                // milliseconds
    bool shown_ = false;
};

}  // namespace vonta
