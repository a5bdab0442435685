// An X server without a screen, under a free number, which is also this process's display while the object lives; what
// it would show can be read, and its mouse and keyboard be moved.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/support/Await.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/TempDirectory.h"

namespace vonta::test {

class XServer {
public:
    XServer(int width, int height, int depth) {
        const std::string screen = std::to_string(width) + 'x' + std::to_string(height) + 'x' + std::to_string(depth);
        const ChildPlace place{.out = directory_.File("number")};
        server_.emplace(std::vector<std::string>{"Xvfb", "-displayfd", "1", "-screen", "0", screen, "-nolisten", "tcp",
                                                 "-noreset", "-fbdir", directory_.Path().string()}, place);
        std::string number;
        if (!Await([&] { number = directory_.Text("number"); return number.ends_with('\n'); }))
            throw std::runtime_error("Xvfb (package xvfb) does not start");
        number.pop_back();
        setenv("DISPLAY", number.insert(0, 1, ':').c_str(), 1);
    }
    ~XServer() { unsetenv("DISPLAY"); }
    XServer(const XServer&) = delete;
    XServer& operator=(const XServer&) = delete;

    void Crash() { server_->Stop(SIGKILL); }

    // Without one, windows have no frame and cannot go full screen.
    void StartWindowManager() {
        manager_.emplace(std::vector<std::string>{"openbox", "--sm-disable"});
        if (!Await([] { return ChildProcess({"xdotool", "get_num_desktops"}).Wait() == 0; }))
            throw std::runtime_error("openbox (package openbox) does not start");
    }

    // "mousemove 10 20 click 1", as a shell reads it.
    static void Do(const std::string& xdotool) {
        if (ChildProcess({"sh", "-c", std::string("xdotool ").append(xdotool)}).Wait() != 0)
            throw std::runtime_error("xdotool (package xdotool) fails: " + xdotool);
    }

    // What stands on the screen now; one number a pixel, as the server packs it.
    struct Shot {
        int width = 0, height = 0;
        std::vector<std::uint32_t> pixels;
        std::uint32_t At(int x, int y) const { return pixels[static_cast<std::size_t>(y * width + x)]; }
    };
    // The server keeps its screen in a file: a head of big-endian numbers, a colour map, the rows.
    Shot Look() const {
        const auto bytes = directory_.Bytes("Xvfb_screen0");
        const auto head = [&](std::size_t i) {
            return bytes[4 * i] << 24 | bytes[4 * i + 1] << 16 | bytes[4 * i + 2] << 8 | bytes[4 * i + 3];
        };
        enum { kHeadSize = 0, kWidth = 4, kHeight = 5, kBitsPerPixel = 11, kBytesPerLine = 12, kColours = 19 };
        const int bytesPerPixel = head(kBitsPerPixel) / 8, start = head(kHeadSize) + 12 * head(kColours);
        Shot shot{head(kWidth), head(kHeight), {}};
        for (int y = 0; y < shot.height; ++y)
            for (int x = 0; x < shot.width; ++x) {
                std::uint32_t pixel = 0;
                for (int i = 0; i < bytesPerPixel && i < 3; ++i)
                    pixel |= std::uint32_t{bytes[static_cast<std::size_t>(start + y * head(kBytesPerLine) + x * bytesPerPixel + i)]} << 8 * i;
                shot.pixels.push_back(pixel);
            }
        return shot;
    }

private:
    TempDirectory directory_;
    std::optional<ChildProcess> server_, manager_;
};

}  // namespace vonta::test
