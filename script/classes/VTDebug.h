// The log of scripts, and the hook that shows a script every line of it.
#pragma once

#include <atomic>
#include <functional>
#include <string_view>

#include "script/host/Reporting.h"

namespace vonta {

// Prints each line, and calls the action that VTDebug:SetODSHook names with it, unless that action is what prints.
class HookSink final : public OutputSink {
public:
    explicit HookSink(std::function<void(std::string_view)> print) : print_(std::move(print)) {}
    void Print(const char* text) override;

private:
    std::function<void(std::string_view)> print_;
    std::atomic<bool> hookRuns_{false};
};

}  // namespace vonta
