// Who turns a library's path into a plug-in. The formats know the order in which a plug-in is searched; how it is
// loaded, and at which rate, belongs to whoever asks for the file.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "plugins/EffectSlot.h"
#include "plugins/SynthPlugin.h"

namespace vonta {

struct PluginLoader {
    // Null if the path is no plug-in of this kind. Either may be empty: then there are none.
    std::function<std::unique_ptr<EffectSlot>(const std::string& path, std::uint32_t sampleRate)> effect;
    std::function<std::unique_ptr<SynthPlugin>(const std::string& path, std::uint32_t sampleRate)> synth;
    std::uint32_t sampleRate = 44100;                // Hz, the mixer's
};

}  // namespace vonta
