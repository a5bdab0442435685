// The real window on a real X server.
#include <gtest/gtest.h>
#if defined(__SANITIZE_ADDRESS__)
#include <dlfcn.h>
#include <sanitizer/lsan_interface.h>
#endif

#include <array>
#include <cstdint>

#include "platform/Display.h"
#include "platform/OsWindow.h"
#include "platform/Surface.h"
#include "tests/support/Await.h"
#include "tests/support/XServer.h"

namespace vonta {
namespace {

using test::XServer;

constexpr int kWidth = 800, kHeight = 600;
constexpr std::uint32_t kLeft = 0xF80000, kRight = 0x00F8;   // both exact at 16 bits

// Two colours side by side, and one pixel of the other in each, so that a scale shows.
std::unique_ptr<Surface> Picture(int bits) {
    auto picture = Surface::Create(kWidth, kHeight, bits);
    const std::uint32_t left = bits == 16 ? 0xF800 : kLeft, right = bits == 16 ? 0x001F : kRight;
    picture->Fill(0, 0, kWidth / 2, kHeight, left);
    picture->Fill(kWidth / 2, 0, kWidth / 2, kHeight, right);
    picture->Fill(100, 50, 1, 1, right);
    picture->Fill(799, 599, 1, 1, left);
    return picture;
}

struct OpenWindow {
    std::string error;
    std::unique_ptr<OsWindow> window = OpenDesktopWindow(error);

    explicit OpenWindow(int bits = 32) {
        EXPECT_TRUE(window) << error;
        EXPECT_TRUE(window->Create("Vonta Tracker", ""));
        EXPECT_EQ(window->Screen().Open(kWidth, kHeight, bits, false), 0);
    }
    // Puts the window's corner into the screen's, at the given size, with the picture in it.
    void Show(int width, int height, const Surface& picture) {
        window->SetClientSize(width, height);
        window->SetPosition(0, 0);
        Drain();
        window->Screen().Present(picture);
    }
    void Drain() {
        WindowEvent event;
        while (window->PollEvent(event)) {}
    }
    // What comes of it, up to the first event of the kind.
    std::vector<WindowEvent> Until(WindowEventKind last, const std::string& xdotool) {
        Drain();
        XServer::Do(xdotool);
        std::vector<WindowEvent> events;
        test::Await([&] {
            WindowEvent event;
            if (window->WaitEvent(event, 10)) events.push_back(event);
            return !events.empty() && events.back().kind == last;
        });
        return events;
    }
};

WindowEvent Only(const std::vector<WindowEvent>& events, WindowEventKind kind) {
    WindowEvent found;
    int count = 0;
    for (const WindowEvent& event : events)
        if (event.kind == kind) { found = event; ++count; }
    EXPECT_EQ(count, 1);
    return found;
}

TEST(Window, OpensAtTheLargestWholeFactorWithRoomForItsFrame) {
    const struct { int screenWidth, screenHeight, width, height; } cases[] = {
        {1920, 1080, 800, 600}, {1700, 1280, 1600, 1200}, {800, 600, 800, 600}, {640, 480, 640, 480}};
    for (const auto& c : cases) {
        XServer server(c.screenWidth, c.screenHeight, 24);
        OpenWindow open;
        int width = 0, height = 0;
        open.window->GetSize(width, height);
        EXPECT_EQ(width, c.width) << c.screenWidth;
        EXPECT_EQ(height, c.height) << c.screenWidth;
    }
}

TEST(Window, ShowsWholeFactorsPixelByPixelAtEveryDepth) {
    XServer server(1700, 1280, 24);
    for (const int bits : {16, 24, 32})
        for (const int factor : {1, 2}) {
            OpenWindow open(bits);
            const auto picture = Picture(bits);
            open.Show(factor * kWidth, factor * kHeight, *picture);
            const auto shot = server.Look();
            const bool wide = bits == 16;            // five bits become eight
            const std::uint32_t left = wide ? 0xFF0000 : kLeft, right = wide ? 0x0000FF : kRight;
            for (int y = 0; y < factor * kHeight; ++y)
                for (int x = 0; x < factor * kWidth; ++x) {
                    const int px = x / factor, py = y / factor;
                    const bool isLeft = (px < kWidth / 2) != ((px == 100 && py == 50) || (px == 799 && py == 599));
                    ASSERT_EQ(shot.At(x, y), isLeft ? left : right) << bits << ' ' << factor << ' ' << x << ',' << y;
                }
        }
}

TEST(Window, KeepsEdgesSharpBetweenWholeFactorsAndTheShapeInAnyWindow) {
    XServer server(1700, 1280, 24);
    OpenWindow open;
    const auto picture = Picture(32);
    open.Show(1200, 900, *picture);
    auto shot = server.Look();
    int blended = 0;
    for (int x = 300; x < 1200; ++x) {
        const std::uint32_t pixel = shot.At(x, 300);
        if (pixel != kLeft && pixel != kRight) ++blended;
        else EXPECT_EQ(pixel, x < 600 ? kLeft : kRight) << x;
    }
    EXPECT_LE(blended, 1);

    open.Show(1000, 600, *picture);
    shot = server.Look();
    EXPECT_EQ(shot.At(99, 300), 0u);
    EXPECT_EQ(shot.At(100, 300), kLeft);
    EXPECT_EQ(shot.At(899, 300), kRight);
    EXPECT_EQ(shot.At(900, 300), 0u);
}

TEST(Window, TheMouseHitsThePixelThatItPointsAt) {
    XServer server(1700, 1280, 24);
    OpenWindow open;
    const auto picture = Picture(32);
    const struct { int width, height, x, y, pictureX, pictureY; } cases[] = {
        {800, 600, 0, 0, 0, 0},         {800, 600, 799, 599, 799, 599},   {1600, 1200, 201, 100, 100, 50},
        {1600, 1200, 1599, 1199, 799, 599}, {1200, 900, 150, 75, 100, 50}, {1200, 900, 1199, 899, 799, 599},
        {1000, 600, 100, 0, 0, 0},      {1000, 600, 899, 300, 799, 300},  {1000, 600, 99, 0, -1, 0},
        {400, 300, 50, 25, 101, 51}};
    for (const auto& c : cases) {
        open.Show(c.width, c.height, *picture);
        const std::string place = std::to_string(c.x) + ' ' + std::to_string(c.y);
        const auto events = open.Until(WindowEventKind::LeftUp, "mousemove " + place + " click 1");
        const WindowEvent down = Only(events, WindowEventKind::LeftDown);
        EXPECT_EQ(down.x, c.pictureX) << c.width << ' ' << c.x;
        EXPECT_EQ(down.y, c.pictureY) << c.width << ' ' << c.x;
        EXPECT_TRUE(down.left);
        EXPECT_FALSE(Only(events, WindowEventKind::LeftUp).left);
    }
    EXPECT_GT(Only(open.Until(WindowEventKind::Wheel, "click 4"), WindowEventKind::Wheel).amount, 0);
}

TEST(Window, KeysComeByTheirPlaceAndTextAsTyped) {
    XServer server(900, 700, 24);
    OpenWindow open;
    open.Show(kWidth, kHeight, *Picture(32));
    open.window->SetFocus();
    ASSERT_TRUE(test::Await([&] { open.Drain(); return open.window->HasFocus(); }));
    const struct { const char* key; int scanCode; const char* text; } cases[] = {
        {"q", 20, "q"}, {"BackSpace", 42, "\b"}, {"Return", 40, "\r"}, {"Escape", 41, "\x1b"}, {"F9", 66, nullptr}};
    for (const auto& c : cases) {
        const auto events = open.Until(WindowEventKind::KeyUp, std::string("key ") + c.key);
        EXPECT_EQ(Only(events, WindowEventKind::KeyDown).scanCode, c.scanCode) << c.key;
        EXPECT_EQ(Only(events, WindowEventKind::KeyUp).scanCode, c.scanCode) << c.key;
        if (c.text) {
            EXPECT_EQ(Only(events, WindowEventKind::Character).text, c.text) << c.key;
        }
    }
    const auto held = open.Until(WindowEventKind::KeyUp, "keydown a sleep 1 keyup a");
    EXPECT_EQ(Only(held, WindowEventKind::KeyDown).scanCode, 4);
}

TEST(Window, GoesFullScreenAndBackToItsSize) {
    XServer server(1000, 800, 24);
    server.StartWindowManager();
    OpenWindow open;
    const auto picture = Picture(32);
    const auto covers = [&](int left, int top) {     // the screen's colours at these places, as often as it takes
        return test::Await([&] {
            open.Drain();
            open.window->Screen().Present(*picture);
            const auto shot = server.Look();
            return shot.At(left, 400) == kLeft && shot.At(999 - left, 400) == kRight && shot.At(500, top) != kLeft;
        });
    };
    EXPECT_TRUE(covers(110, 0));
    open.window->Screen().Close();
    ASSERT_EQ(open.window->Screen().Open(kWidth, kHeight, 32, true), 0);
    EXPECT_TRUE(covers(0, 20));
    ASSERT_EQ(open.window->Screen().Open(kWidth, kHeight, 32, false), 0);
    int width = 0, height = 0;
    EXPECT_TRUE(test::Await([&] {
        open.Drain();
        open.window->GetSize(width, height);
        return width < kWidth + 20;                  // with its frame
    }));
}

TEST(Window, WithoutADisplayThereIsNoneAndOneLineTellsWhy) {
    unsetenv("DISPLAY");
    unsetenv("WAYLAND_DISPLAY");
    for (const char* display : {"", ":4711"}) {
        setenv("DISPLAY", display, 1);
        std::string error;
        EXPECT_FALSE(OpenDesktopWindow(error));
        EXPECT_NE(error, "");
        EXPECT_EQ(error.find('\n'), std::string::npos) << error;
        ShowMessage("caption", "A message without a display waits for nobody.\n");
    }
    unsetenv("DISPLAY");
}

#if defined(__SANITIZE_ADDRESS__)
void DrawWithBadDriver() {
    void* driver = dlopen(VONTA_TEST_DRIVER, RTLD_NOW | RTLD_LOCAL);
    ASSERT_TRUE(driver) << dlerror();
    reinterpret_cast<void (*)()>(dlsym(driver, "Draw"))();
    dlclose(driver);
}

// What draws leaves memory behind when it is unloaded. The checker passes over that, and over nothing of ours.
TEST(Window, TheLeakCheckerTellsOurLeaksFromThoseOfDrivers) {
    XServer server(900, 700, 24);
    OpenWindow().Show(kWidth, kHeight, *Picture(32));
    DrawWithBadDriver();
    EXPECT_EQ(__lsan_do_recoverable_leak_check(), 0);

    // Turned over, so that the checker finds no way to it.
    const volatile auto ours = ~reinterpret_cast<std::uintptr_t>(new std::array<char, 128>);
    OpenWindow().Show(kWidth, kHeight, *Picture(32));
    EXPECT_EQ(__lsan_do_recoverable_leak_check(), 1);
    delete reinterpret_cast<std::array<char, 128>*>(~ours);
}
#endif

}  // namespace
}  // namespace vonta
