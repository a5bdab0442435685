// `vonta convert`: a song, an instrument or a sample in another format.
#pragma once

#include <functional>

namespace CLI {
class App;
}

namespace vonta {

void AddConvertCommand(CLI::App& command, std::function<int()>& chosen);

}  // namespace vonta
