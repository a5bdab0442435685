// `vonta render` and `vonta demo`: a song to WAV files, faster than it plays.
#pragma once

#include <functional>
#include <memory>

#include "song/Song.h"

namespace CLI {
class App;
}

namespace vonta {

void AddRenderCommand(CLI::App& command, std::function<int()>& chosen);
void AddDemoCommand(CLI::App& command, std::function<int()>& chosen);

}  // namespace vonta
