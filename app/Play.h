// `vonta play`: a song through the block cycle of a device, in real time.
#pragma once

#include <functional>

namespace CLI {
class App;
}

namespace vonta {

void AddPlayCommand(CLI::App& command, std::function<int()>& chosen);

}  // namespace vonta
