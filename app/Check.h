// `vonta check`: whether files load, and what is dropped or repaired on the way.
#pragma once

#include <functional>

namespace CLI {
class App;
}

namespace vonta {

void AddCheckCommand(CLI::App& command, std::function<int()>& chosen);

}  // namespace vonta
