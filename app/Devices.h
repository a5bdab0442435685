// `vonta devices`: what can be chosen to play on.
#pragma once

#include <functional>

namespace CLI {
class App;
}

namespace vonta {

void AddDevicesCommand(CLI::App& command, std::function<int()>& chosen);

}  // namespace vonta
