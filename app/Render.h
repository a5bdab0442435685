// `vonta render`: a song to WAV files, faster than it plays.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "audio/Mixdown.h"

namespace CLI {
class App;
}

namespace vonta {

struct RenderRequest {
    std::string song;                                // path
    std::string base;                                // as given, or empty
    MixdownOptions options;
    MixdownLimits limits;
    std::string interpolation = "linear";            // none, linear or cubic
    bool byParts = false;
};

// Writes BASE.wav, or the files by parts, and tells how it went. An ExitStatus.
int RenderSong(std::unique_ptr<Song> song, RenderRequest request, const std::string& base);

void AddRenderCommand(CLI::App& command, std::function<int()>& chosen);

}  // namespace vonta
