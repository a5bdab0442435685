// vonta edit [FILE]: the tracker in its window.
#pragma once

#include <functional>

namespace CLI { class App; }

namespace vonta {

void AddEditCommand(CLI::App& command, std::function<int()>& chosen);

}  // namespace vonta
