// `vonta info`: what a song holds and how long it is, for people or as JSON.
#pragma once

#include <functional>

namespace CLI {
class App;
}

namespace vonta {

void AddInfoCommand(CLI::App& command, std::function<int()>& chosen);

}  // namespace vonta
