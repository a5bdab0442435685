#include "platform/SdlEvents.h"

#include <SDL.h>

#include <string_view>

#include "platform/SdlDisplay.h"
#include "platform/SdlDisplayLoss.h"

namespace vonta {
namespace {

// The editing keys come as characters too, since SDL sends only those that can be seen.
struct ControlKey {
    SDL_Scancode scanCode;
    const char* character;
};
constexpr ControlKey kControlKeys[] = {{SDL_SCANCODE_BACKSPACE, "\b"},
                                       {SDL_SCANCODE_RETURN, "\r"},
                                       {SDL_SCANCODE_KP_ENTER, "\r"},
                                       {SDL_SCANCODE_ESCAPE, "\x1b"}};

struct WindowKind {
    SDL_WindowEventID id;
    WindowEventKind kind;
};
constexpr WindowKind kWindowKinds[] = {
    {SDL_WINDOWEVENT_EXPOSED, WindowEventKind::Exposed},         {SDL_WINDOWEVENT_SIZE_CHANGED, WindowEventKind::Resized},
    {SDL_WINDOWEVENT_MINIMIZED, WindowEventKind::Minimised},     {SDL_WINDOWEVENT_RESTORED, WindowEventKind::Restored},
    {SDL_WINDOWEVENT_MAXIMIZED, WindowEventKind::Restored},      {SDL_WINDOWEVENT_FOCUS_GAINED, WindowEventKind::FocusGained},
    {SDL_WINDOWEVENT_FOCUS_LOST, WindowEventKind::FocusLost},    {SDL_WINDOWEVENT_CLOSE, WindowEventKind::Close},
};

// A key with Control or the left Alt is a command; with the right one it may be a character of the layout.
bool IsCommand() {
    const int mods = SDL_GetModState();
    return (mods & KMOD_LALT) != 0 || ((mods & KMOD_CTRL) != 0 && (mods & (KMOD_RALT | KMOD_MODE)) == 0);
}

std::size_t FollowingBytes(std::string_view text) {
    std::size_t end = 1;
    while (end < text.size() && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80) ++end;
    return end;
}

}  // namespace

WindowEvent& SdlEvents::Add(WindowEventKind kind) {
    WindowEvent& event = queue_.emplace_back();
    event.kind = kind;
    event.left = left_;
    event.right = right_;
    return event;
}

bool SdlEvents::Next(WindowEvent& event) {
    if (queue_.empty()) return false;
    event = std::move(queue_.front());
    queue_.pop_front();
    return true;
}

void SdlEvents::Take(const SDL_Event& event) {
    switch (event.type) {
    case SDL_MOUSEMOTION: AddMouse(WindowEventKind::MouseMove, event.motion.x, event.motion.y); break;
    case SDL_MOUSEBUTTONDOWN: OnButton(event, true); break;
    case SDL_MOUSEBUTTONUP: OnButton(event, false); break;
    case SDL_MOUSEWHEEL: Add(WindowEventKind::Wheel).amount = event.wheel.preciseY; break;
    case SDL_KEYDOWN: OnKey(event, true); break;
    case SDL_KEYUP: OnKey(event, false); break;
    case SDL_TEXTINPUT: OnText(event.text.text); break;
    case SDL_WINDOWEVENT: OnWindow(event); break;
    case SDL_QUIT:
    case SDL_SYSWMEVENT: LookForDisplayLoss(event); break;
    case SDL_DROPFILE: Add(WindowEventKind::FileDropped).text = event.drop.file; break;
    case SDL_RENDER_DEVICE_RESET: display_.ForgetTextures(); break;
    case SDL_RENDER_TARGETS_RESET: display_.Expose(); break;
    default: break;
    }
    if (event.type == SDL_DROPFILE || event.type == SDL_DROPTEXT) SDL_free(event.drop.file);
}

void SdlEvents::AddMouse(WindowEventKind kind, int windowX, int windowY) {
    const PicturePoint at = display_.At(windowX, windowY);
    WindowEvent& event = Add(kind);
    event.x = at.x;
    event.y = at.y;
}

void SdlEvents::OnButton(const SDL_Event& event, bool down) {
    using enum WindowEventKind;
    const bool left = event.button.button == SDL_BUTTON_LEFT;
    if (!left && event.button.button != SDL_BUTTON_RIGHT) return;
    (left ? left_ : right_) = down;
    AddMouse(left ? (down ? LeftDown : LeftUp) : (down ? RightDown : RightUp), event.button.x, event.button.y);
}

void SdlEvents::OnKey(const SDL_Event& event, bool down) {
    const SDL_Scancode scanCode = event.key.keysym.scancode;
    if (event.key.repeat == 0) Add(down ? WindowEventKind::KeyDown : WindowEventKind::KeyUp).scanCode = scanCode;
    if (!down || IsCommand()) return;
    for (const ControlKey& key : kControlKeys)
        if (key.scanCode == scanCode) Add(WindowEventKind::Character).text = key.character;
}

void SdlEvents::OnText(const char* text) {
    if (IsCommand()) return;
    for (std::string_view rest = text; !rest.empty(); rest.remove_prefix(FollowingBytes(rest)))
        Add(WindowEventKind::Character).text = rest.substr(0, FollowingBytes(rest));
}

void SdlEvents::OnWindow(const SDL_Event& event) {
    for (const WindowKind& row : kWindowKinds) {
        if (row.id != event.window.event) continue;
        if (row.kind == WindowEventKind::Exposed || row.kind == WindowEventKind::Resized) display_.Expose();
        Add(row.kind);
    }
}

}  // namespace vonta
