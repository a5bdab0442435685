// `vonta render`: a song to WAV files, faster than it plays.
#pragma once

#include <functional>

namespace CLI {
class App;
}

namespace vonta {

void AddRenderCommand(CLI::App& command, std::function<int()>& chosen);

}  // namespace vonta
