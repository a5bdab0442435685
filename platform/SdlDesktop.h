// SDL's video subsystem, started while one of these lives, and whether there is a desktop to start it on.
#pragma once

#include <string>

namespace vonta {

// As the user's session tells it; a display that is named but does not answer shows when a window is opened.
bool HasDesktop();

class SdlDesktop {
public:
    SdlDesktop();
    ~SdlDesktop();
    SdlDesktop(const SdlDesktop&) = delete;
    SdlDesktop& operator=(const SdlDesktop&) = delete;

    bool IsReady() const { return error_.empty(); }
    const std::string& Error() const { return error_; }

private:
    std::string error_;
};

}  // namespace vonta
