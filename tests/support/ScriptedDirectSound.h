// A sound system that a test plays by hand: it sets what fails and where the cursors stand, and finds out what was asked
// of it and what lies in the ring.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/DirectSound.h"

namespace vonta::test {

struct DirectSoundScript {
    std::vector<SoundDeviceInfo> devices = {{"", "System default", "twin"}, {"{1}", "Card one", "twin"}};
    std::uint32_t primaryBytes = 32768;
    std::string failing;                             // the step that fails, as it stands in calls
    CooperativeResult cooperation = CooperativeResult::Ok;
    SoundCaps caps;
    SoundCursors cursors;
    bool lost = false, back = true;                  // whether Restore would find the device

    std::vector<std::string> calls;
    std::vector<std::int16_t> ring;                  // of the buffer that plays
    std::uint32_t unlocked = 0;                      // bytes, at the last Unlock
    int objects = 0;                                 // alive: devices and buffers

    bool Does(const std::string& step) {
        calls.push_back(step);
        return step != failing;
    }
};

class ScriptedDirectSound final : public DirectSound {
public:
    explicit ScriptedDirectSound(DirectSoundScript& script) : script_(script) {}
    std::vector<SoundDeviceInfo> Enumerate() override { return script_.devices; }
    std::unique_ptr<SoundDevice> Create(const std::string& guid) override {
        return script_.Does("create " + guid) ? std::make_unique<Device>(script_) : nullptr;
    }

private:
    struct Counted {
        explicit Counted(DirectSoundScript& theScript) : script(theScript) { ++script.objects; }
        ~Counted() { --script.objects; }
        Counted(const Counted&) = delete;
        Counted& operator=(const Counted&) = delete;
        DirectSoundScript& script;
    };

    struct Buffer final : SoundBuffer, Counted {
        Buffer(DirectSoundScript& s, const char* kind, std::uint32_t bytes) : Counted(s), name(kind), size(bytes) {}
        bool SetFormat(std::uint32_t rate) override { return script.Does("format " + std::to_string(rate)); }
        std::uint32_t GetSize() const override { return size; }
        bool Play() override {
            script.ring.assign(size / 2, -1);
            return script.Does("play " + name);
        }
        SoundCursors GetCurrentPosition() const override { return script.cursors; }
        std::span<std::int16_t> Lock() override {
            return script.failing == "lock" ? std::span<std::int16_t>() : std::span(script.ring);
        }
        void Unlock(std::uint32_t bytes) override { script.unlocked = bytes; }
        bool IsLost() const override { return script.lost; }
        bool Restore() override {
            if (script.back) script.lost = false;
            return script.back;
        }
        std::string name;
        std::uint32_t size;
    };

    struct Device final : SoundDevice, Counted {
        explicit Device(DirectSoundScript& s) : Counted(s) {}
        bool GetCaps(SoundCaps& caps) override {
            caps = script.caps;
            return script.Does("caps");
        }
        CooperativeResult SetCooperativeLevel(void*, CooperativeLevel level) override {
            script.Does("level " + std::to_string(static_cast<int>(level)));
            return script.cooperation;
        }
        std::unique_ptr<SoundBuffer> CreatePrimaryBuffer() override {
            return script.Does("primary") ? std::make_unique<Buffer>(script, "primary", script.primaryBytes) : nullptr;
        }
        std::unique_ptr<SoundBuffer> CreateSecondaryBuffer(std::uint32_t bytes, std::uint32_t rate) override {
            return script.Does("secondary " + std::to_string(bytes) + " " + std::to_string(rate))
                       ? std::make_unique<Buffer>(script, "secondary", bytes) : nullptr;
        }
    };

    DirectSoundScript& script_;
};

}  // namespace vonta::test
