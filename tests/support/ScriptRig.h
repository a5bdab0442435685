// A host of scripts that keeps what it prints, and a directory of its own for scripts and their files.
#pragma once

#include <filesystem>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "audio/DrvNoSound.h"
#include "script/Scripting.h"
#include "script/classes/VTDictionary.h"
#include "tests/support/TempDirectory.h"
#include "tests/support/TestDevice.h"

namespace vonta::test {

class ScriptRig {
public:
    explicit ScriptRig(StopQuestion stop = nullptr)
        : formerDirectory_(std::filesystem::current_path()),
          scripting({[this](std::string_view line) { Keep(line); }, MakeDevice, nullptr, stop}) {
        std::filesystem::current_path(directory.Path());
    }
    ~ScriptRig() { std::filesystem::current_path(formerDirectory_); }

    // Writes the text as a script file and runs it, with its function.
    bool Run(const std::string& text, const std::string& function = "", ScriptObject* argument = nullptr) {
        return ExecuteScriptFile(nullptr, directory.Write("script.vtc", text), function, argument, !function.empty());
    }
    // What an expression gives, as the script's own text of it.
    std::string Value(const std::string& expression, const std::string& before = "") {
        Take();
        Run(before + "\nvtDebug:ODS(vtBinUtils:ToString(" + expression + "))");
        const auto lines = Take();
        return lines.empty() ? "" : lines.back();
    }

    std::vector<std::string> Take() {
        const std::lock_guard lock(lock_);
        return std::exchange(lines_, {});
    }

    static std::unique_ptr<DrvSound> MakeDevice(DeviceKind kind) {
        if (kind == DeviceKind::NoSound) return std::make_unique<DrvNoSound>();
        auto device = std::make_unique<TestDevice>();
        device->initResult = kind == DeviceKind::DirectSoundPrimary;
        return device;
    }

    TempDirectory directory;

private:
    void Keep(std::string_view line) {
        const std::lock_guard lock(lock_);
        lines_.emplace_back(line);
    }

    std::mutex lock_;
    std::vector<std::string> lines_;
    std::filesystem::path formerDirectory_;

public:
    Scripting scripting;
};

}  // namespace vonta::test
