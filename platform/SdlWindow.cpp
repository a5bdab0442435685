// The desktop's window on SDL.
#include <SDL.h>

#include <chrono>

#include "platform/OsWindow.h"
#include "platform/SdlDesktop.h"
#include "platform/SdlDisplay.h"
#include "platform/SdlDisplayLoss.h"
#include "platform/SdlEvents.h"

namespace vonta {
namespace {

class SdlWindow final : public OsWindow {
public:
    ~SdlWindow() override {
        display_.reset();
        DestroyWatched(window_);
    }

    const SdlDesktop& Desktop() const { return desktop_; }
    bool Create(const std::string& title, const std::string& icon) override;
    void SetIcon(const std::uint32_t* pixels, int width, int height) override;

    void* GetHandle() const override { return window_; }
    void SetTitle(const std::string& title) override { SDL_SetWindowTitle(window_, title.c_str()); }
    std::string GetTitle() const override { return SDL_GetWindowTitle(window_); }
    void SetClientSize(int width, int height) override { SDL_SetWindowSize(window_, width, height); }
    void SetSize(int width, int height) override;
    void SetPosition(int x, int y) override { SDL_SetWindowPosition(window_, x, y); }
    void GetPosition(int& x, int& y) const override { SDL_GetWindowPosition(window_, &x, &y); }
    void GetSize(int& width, int& height) const override;
    void Show(bool on) override { on ? SDL_ShowWindow(window_) : SDL_HideWindow(window_); }
    bool IsVisible() const override { return HasFlags(SDL_WINDOW_SHOWN) && !HasFlags(SDL_WINDOW_MINIMIZED); }
    void SetFocus() override { SDL_RaiseWindow(window_); }
    bool HasFocus() const override { return HasFlags(SDL_WINDOW_INPUT_FOCUS); }

    Display& Screen() override { return *display_; }
    void ShowCursor(bool on) override { SDL_ShowCursor(on ? SDL_ENABLE : SDL_DISABLE); }
    void TakeText(bool on) override;
    bool PollEvent(WindowEvent& event) override;
    bool WaitEvent(WindowEvent& event, int milliseconds) override;

private:
    struct Frame { int width = 0, height = 0; };
    Frame FrameSize() const;                     // of the borders; nothing where the desktop does not tell
    bool HasFlags(Uint32 flags) const { return (SDL_GetWindowFlags(window_) & flags) != 0; }

    SdlDesktop desktop_;
    SDL_Window* window_ = nullptr;
    std::unique_ptr<SdlDisplay> display_ = std::make_unique<SdlDisplay>(nullptr);
    std::unique_ptr<SdlEvents> events_ = std::make_unique<SdlEvents>(*display_);
};

// Hidden until it has its size.
bool SdlWindow::Create(const std::string& title, const std::string&) {
    if (window_) return true;
    window_ = SDL_CreateWindow(title.c_str(), SDL_WINDOWPOS_UNDEFINED, SDL_WINDOWPOS_UNDEFINED, 1, 1,
                               SDL_WINDOW_HIDDEN | SDL_WINDOW_RESIZABLE | SDL_WINDOW_ALLOW_HIGHDPI);
    display_ = std::make_unique<SdlDisplay>(window_);
    events_ = std::make_unique<SdlEvents>(*display_);
    TakeText(true);
    WatchWindowLoss(window_);
    SDL_EventState(SDL_DROPFILE, SDL_ENABLE);
    return window_ != nullptr;
}

void SdlWindow::SetIcon(const std::uint32_t* pixels, int width, int height) {
    SDL_Surface* icon = SDL_CreateRGBSurfaceWithFormatFrom(const_cast<std::uint32_t*>(pixels), width, height, 32,
                                                           width * 4, SDL_PIXELFORMAT_ARGB8888);
    if (icon && window_) SDL_SetWindowIcon(window_, icon);
    SDL_FreeSurface(icon);
}

SdlWindow::Frame SdlWindow::FrameSize() const {
    int top = 0, left = 0, bottom = 0, right = 0;
    if (SDL_GetWindowBordersSize(window_, &top, &left, &bottom, &right) != 0) return {};
    return {left + right, top + bottom};
}

void SdlWindow::SetSize(int width, int height) {
    const Frame frame = FrameSize();
    SDL_SetWindowSize(window_, width - frame.width, height - frame.height);
}

void SdlWindow::GetSize(int& width, int& height) const {
    const Frame frame = FrameSize();
    SDL_GetWindowSize(window_, &width, &height);
    width += frame.width;
    height += frame.height;
}

void SdlWindow::TakeText(bool on) {
    if (on == (SDL_IsTextInputActive() == SDL_TRUE)) return;
    on ? SDL_StartTextInput() : SDL_StopTextInput();
}

bool SdlWindow::PollEvent(WindowEvent& event) {
    for (SDL_Event taken; !events_->Next(event); events_->Take(taken))
        if (SDL_PollEvent(&taken) == 0) return false;
    return true;
}

bool SdlWindow::WaitEvent(WindowEvent& event, int milliseconds) {
    using Clock = std::chrono::steady_clock;
    const auto end = Clock::now() + std::chrono::milliseconds(milliseconds);
    while (!events_->Next(event)) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now()).count();
        SDL_Event taken;
        if (milliseconds >= 0 && left <= 0) return PollEvent(event);
        if (SDL_WaitEventTimeout(&taken, milliseconds < 0 ? -1 : static_cast<int>(left)) == 0) return false;
        events_->Take(taken);
    }
    return true;
}

}  // namespace

std::unique_ptr<OsWindow> OpenDesktopWindow(std::string& error) {
    auto window = std::make_unique<SdlWindow>();
    error = window->Desktop().Error();
    if (!window->Desktop().IsReady()) return nullptr;
    return window;
}

}  // namespace vonta
