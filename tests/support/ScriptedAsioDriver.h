// The twin of a sound driver that sets the pace: a test says what it has and where it fails, calls the host by hand or
// from a thread, and reads what the host wrote. Its script outlives it, as the test has it.
#pragma once

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "platform/AsioDriver.h"

namespace vonta {

struct AsioScript {
    // Set by the test before the driver is opened.
    int outputs = 2, frames = 256;
    double rate = 44100;
    std::int32_t sampleType = kAsioInt32LSB;
    std::string failAt;                              // the verb that fails: "Init", "CreateBuffers", "Start"
    bool ownThread = false;                          // calls the host by itself, at once when the last call is done

    // Found by the test.
    std::string verbs;                               // those that change the driver's state, as they came
    AsioHost* host = nullptr;
    std::vector<std::vector<std::uint8_t>> bytes;    // by channel and half: 2 x channel + half
    std::atomic<int> drivers{0}, calls{0};

    // One call of the host; its half of the buffers is the marks of a test before.
    void Switch(int half = 0) {
        for (auto& buffer : bytes) std::ranges::fill(buffer, kMark);
        host->BufferSwitch(half);
        ++calls;
    }
    template <class Value = std::int32_t>
    std::vector<Value> Values(int channel, int half = 0) const {
        const auto& from = bytes[static_cast<std::size_t>(2 * channel + half)];
        std::vector<Value> values(static_cast<std::size_t>(frames));
        std::memcpy(values.data(), from.data(), values.size() * sizeof(Value));
        return values;
    }
    bool Untouched(int channel, int half) const {
        return std::ranges::count(bytes[static_cast<std::size_t>(2 * channel + half)], kMark) == 8 * frames;
    }

    static constexpr std::uint8_t kMark = 0xA5;
};

class ScriptedAsioDriver final : public AsioDriver {
public:
    explicit ScriptedAsioDriver(AsioScript& script) : script_(script) { ++script_.drivers; }
    ~ScriptedAsioDriver() override {
        Stop();
        --script_.drivers;
    }

    bool Init(void*) override { return Verb("Init"); }
    std::string GetErrorMessage() override { return script_.failAt.empty() ? "" : "as the script says"; }
    int GetNumOutputs() override { return script_.outputs; }
    int GetPreferredSize() override { return script_.frames; }
    double GetSampleRate() override { return script_.rate; }
    std::int32_t GetSampleType(int) override { return script_.sampleType; }
    bool CreateBuffers(std::span<AsioBufferInfo> channels, int frames, AsioHost& host) override {
        script_.host = &host;
        script_.bytes.assign(2 * channels.size(), std::vector<std::uint8_t>(static_cast<std::size_t>(8 * frames)));
        for (std::size_t i = 0; i < channels.size(); ++i)
            for (const std::size_t half : {0, 1}) channels[i].buffers[half] = script_.bytes[2 * i + half].data();
        return Verb("CreateBuffers");
    }
    void DisposeBuffers() override { Verb("DisposeBuffers"); }
    bool Start() override {
        if (!Verb("Start")) return false;
        if (script_.ownThread) thread_ = std::thread([this] { Run(); });
        return true;
    }
    void Stop() override {
        ended_ = true;
        if (thread_.joinable()) thread_.join();
    }

    std::uint32_t GetUnderruns() const override { return 3; }

private:
    void Run() {
        for (int half = 0; !ended_; half ^= 1) {
            script_.host->BufferSwitch(half);
            ++script_.calls;
            std::this_thread::sleep_for(std::chrono::microseconds(100));
        }
    }
    bool Verb(const char* name) {
        script_.verbs += std::string(name) + " ";
        return script_.failAt != name;
    }

    AsioScript& script_;
    std::thread thread_;
    std::atomic<bool> ended_{false};
};

// The list with the one driver that plays the script.
inline std::vector<AsioDriverRecord> ScriptedDrivers(AsioScript& script) {
    return {{"Scripted", [&script] { return std::make_unique<ScriptedAsioDriver>(script); }}};
}

}  // namespace vonta
