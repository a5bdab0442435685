#include "formats/native/NativeLoad.h"

namespace vonta {
namespace {

template <class Plugin>
using Factory = std::function<std::unique_ptr<Plugin>(const std::string& path, std::uint32_t sampleRate)>;

template <class Plugin>
std::unique_ptr<Plugin> FirstOf(const Factory<Plugin>& make, const std::vector<std::string>& paths,
                                std::uint32_t rate) {
    for (const std::string& path : paths)
        if (auto plugin = make && !path.empty() ? make(path, rate) : nullptr) return plugin;
    return nullptr;
}

// The kind as the user reads it, and as the log names it.
template <class Plugin>
std::unique_ptr<Plugin> LoadPlugin(NativeLoad& load, Factory<Plugin> PluginLoader::*make,
                                   const std::vector<std::string>& paths, const char* kind,
                                   const char* logged) {
    const PluginLoader* plugins = load.report.plugins;
    if (auto plugin = plugins ? FirstOf(plugins->*make, paths, plugins->sampleRate) : nullptr) return plugin;
    ++load.missingPlugins;
    load.report.Add("Can't load %s %s", kind, FileNameOf(paths.front()).c_str());
    DebugOutput("ERROR: Can't load %s: %s", logged, paths.front().c_str());
    return nullptr;
}

}  // namespace

std::unique_ptr<EffectSlot> NativeLoad::LoadEffect(const std::vector<std::string>& paths) {
    return LoadPlugin(*this, &PluginLoader::effect, paths, "effect", "Effect");
}

std::unique_ptr<SynthPlugin> NativeLoad::LoadSynth(const std::vector<std::string>& paths) {
    return LoadPlugin(*this, &PluginLoader::synth, paths, "Synth", "Synth");
}

void NativeLoad::ReportLosses() {
    if (chunks.In().Truncated()) report.Add("The file ends early: what is missing has its default values.");
    if (missingPlugins > 0) report.Add("%d plug-ins are missing: a save keeps their settings.", missingPlugins);
}

void KeepSendsInside(Sends& sends) {
    static constexpr Sends fresh = DefaultSends();
    // Those that are not mixed are only held, and name themselves.
    for (std::size_t i = 0; i < sends.size(); ++i)
        KeepInside(sends[i].slot, (i < kMixedSends ? kEffectSlots : kSends) - 1, fresh[i].slot);
}

std::string FileNameOf(const std::string& path) { return path.substr(path.find_last_of("\\/") + 1); }

}  // namespace vonta
