#include <SDL.h>

#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "platform/OsWindow.h"
#include "platform/SdlDesktop.h"

namespace vonta {
namespace {

bool WantsBox() {
    const char* messages = std::getenv("VONTA_MESSAGES");
    return HasDesktop() && (!messages || std::string_view(messages) != "output");
}

}  // namespace

void ShowMessage(const std::string& caption, const std::string& text) {
    const std::string line = text.substr(0, text.find_last_not_of('\n') + 1);
    std::fprintf(stderr, "%s%s%s\n", caption.c_str(), caption.empty() ? "" : ": ", line.c_str());
    if (WantsBox()) SDL_ShowSimpleMessageBox(SDL_MESSAGEBOX_INFORMATION, caption.c_str(), text.c_str(), nullptr);
}

}  // namespace vonta
