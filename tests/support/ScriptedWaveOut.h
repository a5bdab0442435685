// A wave output that a test plays by hand: it sets results and the position, and finds out what was asked of it and what
// lies in the ring.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/WaveOut.h"

namespace vonta::test {

struct WaveOutScript {
    std::vector<WaveCaps> devices = {{"Card", 0x888}};
    std::string failing;                             // the step that fails, as it stands in calls
    WaveResult failure = WaveResult::NoDriver;
    WaveTime time;
    std::uint32_t volume = 0xFFFFFFFF;
    bool lost = false, back = true;                  // whether a header written anew would play

    std::vector<std::string> calls;
    std::uint32_t openedDevice = 0, openedRate = 0;
    const WaveHeader* header = nullptr;              // while prepared
    bool open = false;

    std::span<std::int16_t> Ring() const { return header->values; }
    WaveResult Does(const std::string& step) {
        calls.push_back(step);
        return step == failing ? failure : WaveResult::Ok;
    }
};

class ScriptedWaveOut final : public WaveOut {
public:
    explicit ScriptedWaveOut(WaveOutScript& script) : script_(script) {}
    std::uint32_t GetNumDevs() override { return static_cast<std::uint32_t>(script_.devices.size()); }
    bool GetDevCaps(std::uint32_t device, WaveCaps& caps) override {
        if (device >= script_.devices.size()) return false;
        caps = script_.devices[device];
        return script_.Does("caps") == WaveResult::Ok;
    }
    WaveResult Open(std::uint32_t device, std::uint32_t sampleRate, WaveListener& listener,
                    std::unique_ptr<WaveHandle>& handle) override {
        script_.openedDevice = device;
        script_.openedRate = sampleRate;
        const WaveResult result = script_.Does("open");
        if (result == WaveResult::Ok) handle = std::make_unique<Handle>(script_, listener);
        return result;
    }

private:
    class Handle final : public WaveHandle {
    public:
        Handle(WaveOutScript& script, WaveListener& listener) : script_(script), listener_(listener) {
            script_.open = true;
        }
        ~Handle() override {
            script_.calls.push_back("close");
            script_.open = false;
        }
        WaveResult PrepareHeader(WaveHeader& header) override {
            script_.header = &header;
            return script_.Does("prepare");
        }
        WaveResult UnprepareHeader(WaveHeader&) override {
            script_.header = nullptr;
            return script_.Does("unprepare");
        }
        WaveResult Write(WaveHeader&) override {
            if (script_.back) script_.lost = false;
            return script_.Does("write");
        }
        WaveResult GetPosition(WaveTime& time) const override {
            time = script_.time;
            return script_.failing == "position" ? script_.failure : WaveResult::Ok;
        }
        WaveResult GetVolume(std::uint32_t& volume) const override {
            volume = script_.volume;
            return script_.failing == "volume" ? script_.failure : WaveResult::Ok;
        }
        WaveResult SetVolume(std::uint32_t volume) override {
            script_.volume = volume;
            return script_.failing == "volume" ? script_.failure : WaveResult::Ok;
        }
        bool IsLost() const override { return script_.lost; }
        void Restore() override { listener_.OnWaveDone(); }

    private:
        WaveOutScript& script_;
        WaveListener& listener_;
    };

    WaveOutScript& script_;
};

}  // namespace vonta::test
