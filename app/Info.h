// `vonta info`: what a song (and how long it is), an instrument or a sample holds, for people or as JSON.
#pragma once

#include <functional>

namespace CLI {
class App;
}

namespace vonta {

void AddInfoCommand(CLI::App& command, std::function<int()>& chosen);

}  // namespace vonta
