#include "formats/NativeLoad.h"

namespace vonta {
namespace {

template <class Plugin, class Factory>
std::unique_ptr<Plugin> FirstOf(const Factory& factory, const std::vector<std::string>& paths, std::uint32_t rate) {
    if (!factory) return nullptr;
    for (const std::string& path : paths) {
        if (path.empty()) continue;
        if (auto plugin = factory(path, rate)) return plugin;
    }
    return nullptr;
}

}  // namespace

std::unique_ptr<EffectSlot> NativeLoad::LoadEffect(const std::vector<std::string>& paths) {
    const PluginLoader* plugins = report.plugins;
    auto effect = plugins ? FirstOf<EffectSlot>(plugins->effect, paths, plugins->sampleRate) : nullptr;
    if (effect) return effect;
    ++lostPlugins;
    report.Add("Can't load effect %s", FileNameOf(paths.front()).c_str());
    DebugOutput("ERROR: Can't load Effect: %s", paths.front().c_str());
    return nullptr;
}

std::unique_ptr<SynthPlugin> NativeLoad::LoadSynth(const std::vector<std::string>& paths) {
    const PluginLoader* plugins = report.plugins;
    auto synth = plugins ? FirstOf<SynthPlugin>(plugins->synth, paths, plugins->sampleRate) : nullptr;
    if (synth) return synth;
    ++lostPlugins;
    report.Add("Can't load Synth %s", FileNameOf(paths.front()).c_str());
    DebugOutput("ERROR: Can't load Synth: %s", paths.front().c_str());
    return nullptr;
}

void NativeLoad::ReportLosses() {
    if (chunks.In().Truncated()) report.Add("The file ends early: what is missing has its default values.");
    if (lostPlugins > 0)
        report.Add("%d plug-ins are missing: a save will not keep their settings.", lostPlugins);
}

void KeepSendsInside(Sends& sends) {
    static constexpr Sends fresh = DefaultSends();
    for (std::size_t i = 0; i < sends.size(); ++i)   // those that are not mixed are only held, and name themselves
        KeepInside(sends[i].slot, (i < kMixedSends ? kEffectSlots : kSends) - 1, fresh[i].slot);
}

std::string FileNameOf(const std::string& path) { return path.substr(path.find_last_of("\\/") + 1); }

}  // namespace vonta
