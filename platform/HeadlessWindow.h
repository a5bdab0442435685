// A window that nobody sees: it keeps the last picture that was shown, and its events are those that are put into it.
// What the interface does with it is what it does with the desktop's.
#pragma once

#include <deque>
#include <string>
#include <utility>

#include "platform/Display.h"
#include "platform/OsWindow.h"
#include "platform/Surface.h"

namespace vonta {

class HeadlessDisplay final : public Display {
public:
    int Open(int width, int height, int bits, bool fullscreen) override;
    void Close() override { open_ = false; }
    void Present(const Surface& picture) override;
    bool IsLost() const override { return lost; }
    int DesktopBits() const override { return desktopBits; }

    bool IsOpen() const { return open_; }
    bool IsFullscreen() const { return fullscreen_; }
    const Surface* Shown() const { return shown_.get(); }        // the last picture; null before the first
    std::uint32_t PixelAt(int x, int y) const;                   // 0x00RRGGBB of it; black outside
    int Presents() const { return presents_; }

    // To be set by tests.
    bool lost = false;
    bool refuse = false;                         // Open fails
    bool refuseFullscreen = false;               // likewise, for that mode
    int desktopBits = 32;

private:
    std::unique_ptr<Surface> shown_;
    int presents_ = 0;
    bool open_ = false, fullscreen_ = false;
};

class HeadlessWindow final : public OsWindow {
public:
    void Push(WindowEvent event) { events_.push_back(std::move(event)); }

    bool Create(const std::string& title, const std::string&) override { title_ = title; return true; }
    void SetIcon(const std::uint32_t*, int, int) override {}
    void* GetHandle() const override { return nullptr; }
    void SetTitle(const std::string& title) override { title_ = title; }
    std::string GetTitle() const override { return title_; }
    void SetClientSize(int width, int height) override { SetSize(width, height); }
    void SetSize(int width, int height) override { width_ = width; height_ = height; }
    void SetPosition(int x, int y) override { x_ = x; y_ = y; }
    void GetPosition(int& x, int& y) const override { x = x_; y = y_; }
    void GetSize(int& width, int& height) const override { width = width_; height = height_; }
    void Show(bool on) override { visible_ = on; }
    bool IsVisible() const override { return visible_; }
    void SetFocus() override {}
    bool HasFocus() const override { return visible_; }

    HeadlessDisplay& Screen() override { return display_; }
    void ShowCursor(bool on) override { cursor_ = on; }
    void TakeText(bool) override {}
    bool CursorShown() const { return cursor_; }
    bool PollEvent(WindowEvent& event) override;
    bool WaitEvent(WindowEvent& event, int) override { return PollEvent(event); }   // nothing would ever come

private:
    HeadlessDisplay display_;
    std::deque<WindowEvent> events_;
    std::string title_;
    int x_ = 0, y_ = 0, width_ = 0, height_ = 0;
    bool visible_ = false, cursor_ = true;
};

}  // namespace vonta
