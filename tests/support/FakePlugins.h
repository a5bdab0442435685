// Plug-ins that only hold what they are told, and a loader that makes them of known paths.
#pragma once

#include <set>
#include <string>
#include <utility>
#include <vector>

#include "formats/PluginLoader.h"

namespace vonta::test {

// What both kinds remember.
template <class Plugin>
class FakePlugin : public Plugin {
public:
    static constexpr std::size_t kParameters = 3;

    explicit FakePlugin(std::string path) : path_(std::move(path)), name_("fake") {}
    bool Load(const std::string&) override { return true; }
    bool Init(int, int, int, std::uint32_t) override { return true; }
    std::string GetPath() const override { return path_; }
    std::string GetName() const override { return name_; }
    void SetName(const std::string& text) override { name_ = text; }
    int GetNumParameters() const override { return static_cast<int>(values_.size()); }
    void SetParameter(int index, float value) override { values_.at(static_cast<std::size_t>(index)) = value; }
    float GetParameter(int index) const override { return values_.at(static_cast<std::size_t>(index)); }

private:
    std::string path_, name_;
    std::vector<float> values_ = std::vector<float>(kParameters, 0.5f);
};

class FakeEffect final : public FakePlugin<EffectSlot> {
public:
    using FakePlugin::FakePlugin;
    void Uninit() override {}
};

class FakeSynth final : public FakePlugin<SynthPlugin> {
public:
    using FakePlugin::FakePlugin;
    int Work(float*, int, int) override { return 0; }
    void NoteOn(int, int, int) override {}
    void NoteOff(int) override {}
};

// Loads these paths (all if none are given), and remembers what it was asked for.
class FakeLoader {
public:
    explicit FakeLoader(std::set<std::string> known = {}) : known_(std::move(known)) {
        loader_.effect = [this](const std::string& path, std::uint32_t) { return Make<FakeEffect>(path); };
        loader_.synth = [this](const std::string& path, std::uint32_t) { return Make<FakeSynth>(path); };
    }
    FakeLoader(const FakeLoader&) = delete;
    FakeLoader& operator=(const FakeLoader&) = delete;

    const PluginLoader* Get() const { return &loader_; }
    std::vector<std::string> asked;

private:
    template <class Plugin>
    std::unique_ptr<Plugin> Make(const std::string& path) {
        asked.push_back(path);
        if (!known_.empty() && !known_.contains(path)) return nullptr;
        return std::make_unique<Plugin>(path);
    }

    std::set<std::string> known_;
    PluginLoader loader_;
};

}  // namespace vonta::test
