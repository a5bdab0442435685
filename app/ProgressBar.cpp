#include "app/ProgressBar.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <string>

#include "app/Messages.h"
#include "platform/Clock.h"

namespace vonta {
namespace {

constexpr int kWidth = 40;                           // characters
constexpr std::uint32_t kPeriodMs = 100;
constexpr const char* kWipe = "\r\033[K";

}  // namespace

ProgressBar::ProgressBar(double totalSeconds)
    : onTerminal_(isatty(STDERR_FILENO)), totalSeconds_(totalSeconds), start_(Milliseconds()), lastShown_(start_) {}

ProgressBar::~ProgressBar() {
    if (shown_) std::fputs(kWipe, stderr);
}

void ProgressBar::Show(double seconds) {
    const std::uint32_t now = Milliseconds();
    if (!onTerminal_ || now - lastShown_ < kPeriodMs) return;
    lastShown_ = now;
    shown_ = true;
    const double way = totalSeconds_ > 0 ? std::min(seconds / totalSeconds_, 1.0) : 0.0;
    const int filled = static_cast<int>(way * kWidth);
    const std::string bar = std::string(static_cast<std::size_t>(filled), '#') +
                            std::string(static_cast<std::size_t>(kWidth - filled), '.');
    std::fprintf(stderr, "%s[%s] %3d%%  %s of %s  %.0fx", kWipe, bar.c_str(), static_cast<int>(way * 100),
                 ClockText(seconds).c_str(), ClockText(totalSeconds_).c_str(), seconds * 1000.0 / (now - start_));
    std::fflush(stderr);
}

}  // namespace vonta
