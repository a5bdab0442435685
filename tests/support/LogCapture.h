// Collects the debug lines that are written while it lives.
#pragma once

#include <string>
#include <string_view>

#include "platform/Debug.h"

namespace vonta {

class LogCapture {
public:
    LogCapture() {
        SetDebugSink([this](std::string_view line) { text_ += line; });
    }
    ~LogCapture() { SetDebugSink({}); }
    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;

    const std::string& Text() const { return text_; }
    bool Has(std::string_view line) const { return text_.find(line) != std::string::npos; }

private:
    std::string text_;
};

}  // namespace vonta
