// The main window: its place and look, and what happens to it.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

namespace vonta {

class Display;

enum class WindowEventKind {
    MouseMove, LeftDown, LeftUp, RightDown, RightUp, // x, y in the picture; outside it beside what is shown of it
    Wheel,                                           // amount in notches
    KeyDown, KeyUp,                                  // scanCode; repeats of the system are not sent
    Character,                                       // text, one character as typed; "\b", "\r" and "\x1b" too
    Resized, Exposed, Minimised, Restored,
    FocusGained, FocusLost,
    Close,
    FileDropped,                                     // text is the path
};

struct WindowEvent {
    WindowEventKind kind = WindowEventKind::Exposed;
    int x = 0, y = 0;
    int scanCode = 0;
    float amount = 0;
    bool left = false, right = false;                // the buttons after it
    std::string text;
};

class OsWindow {
public:
    virtual ~OsWindow() = default;

    virtual bool Create(const std::string& title, const std::string& icon) = 0;
    // 0xAARRGGBB, row by row; copied.
    virtual void SetIcon(const std::uint32_t* pixels, int width, int height) = 0;
    virtual void* GetHandle() const = 0;
    virtual void SetTitle(const std::string& title) = 0;
    virtual std::string GetTitle() const = 0;
    virtual void SetClientSize(int width, int height) = 0;
    virtual void SetSize(int width, int height) = 0;
    virtual void SetPosition(int x, int y) = 0;
    virtual void GetPosition(int& x, int& y) const = 0;
    virtual void GetSize(int& width, int& height) const = 0;
    virtual void Show(bool on) = 0;
    virtual bool IsVisible() const = 0;
    virtual void SetFocus() = 0;
    virtual bool HasFocus() const = 0;

    virtual Display& Screen() = 0;
    virtual void ShowCursor(bool on) = 0;
    // Characters are sent while on, as at first. Off while nothing is edited, an input method that composes characters
    // keeps no key press to itself.
    virtual void TakeText(bool on) = 0;
    virtual bool PollEvent(WindowEvent& event) = 0;  // false if none waits
    virtual bool WaitEvent(WindowEvent& event, int milliseconds) = 0;   // -1: as long as it takes
};

// The desktop's window; null, with the reason in one line, if there is no display.
std::unique_ptr<OsWindow> OpenDesktopWindow(std::string& error);

// A modal message; on the error output too. Nothing but the output without a display, or while the environment
// variable VONTA_MESSAGES is "output": nobody stands before a test to close the box.
void ShowMessage(const std::string& caption, const std::string& text);

}  // namespace vonta
