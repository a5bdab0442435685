#include <SDL.h>
#include <pthread.h>
#include <signal.h>
#include <sys/prctl.h>

#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "platform/DisplayLoss.h"
#include "platform/OsWindow.h"
#include "platform/SdlDesktop.h"

namespace vonta {
namespace {

bool WantsBox() {
    const char* messages = std::getenv("VONTA_MESSAGES");
    return HasDesktop() && (!messages || std::string_view(messages) != "output");
}

// SDL shows the box from a process of its own and waits for that one. It goes with us, and the loss of its display is
// not the program's.
void GoWithParent() {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    TellOfDisplayLoss(nullptr);
}

void ShowBox(const char* caption, const char* text) {
    [[maybe_unused]] static const int registered = pthread_atfork(nullptr, nullptr, GoWithParent);
    SDL_ShowSimpleMessageBox(SDL_MESSAGEBOX_INFORMATION, caption, text, nullptr);
}

}  // namespace

void ShowMessage(const std::string& caption, const std::string& text) {
    const std::string line = text.substr(0, text.find_last_not_of('\n') + 1);
    std::fprintf(stderr, "%s%s%s\n", caption.c_str(), caption.empty() ? "" : ": ", line.c_str());
    if (WantsBox()) ShowBox(caption.c_str(), text.c_str());
}

}  // namespace vonta
