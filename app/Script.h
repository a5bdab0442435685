// `vonta script`: runs a script file, and a function of it.
#pragma once

#include <functional>

namespace CLI {
class App;
}

namespace vonta {

void AddScriptCommand(CLI::App& command, std::function<int()>& chosen);

}  // namespace vonta
