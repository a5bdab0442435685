// An X server without a screen, under a free number, which is also this process's display while the object lives; what
// it would show can be read, and its mouse and keyboard be moved.
#pragma once

#include <fcntl.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/support/TempDirectory.h"

namespace vonta::test {

class XServer {
public:
    XServer(int width, int height, int depth) {
        int ends[2] = {-1, -1};
        if (pipe2(ends, 0) != 0) throw std::runtime_error("no pipe");
        const std::string screen = std::to_string(width) + "x" + std::to_string(height) + "x" + std::to_string(depth);
        const std::string report = std::to_string(ends[1]);
        server_ = Run([&] {
            close(ends[0]);
            execlp("Xvfb", "Xvfb", "-displayfd", report.c_str(), "-screen", "0", screen.c_str(), "-nolisten", "tcp",
                   "-fbdir", directory_.Path().c_str(), static_cast<char*>(nullptr));
        });
        close(ends[1]);
        std::string display = ":";
        for (char c; read(ends[0], &c, 1) == 1;)     // to the end: the server writes more than the number
            if (c != '\n') display += c;
        close(ends[0]);
        if (display.size() == 1) throw std::runtime_error("Xvfb does not start; is the package xvfb installed?");
        setenv("DISPLAY", display.c_str(), 1);
    }
    ~XServer() {
        Stop(manager_);
        Stop(server_);
        unsetenv("DISPLAY");
    }
    XServer(const XServer&) = delete;
    XServer& operator=(const XServer&) = delete;

    // Without one, windows have no frame and cannot go full screen.
    void StartWindowManager() {
        manager_ = Run([] { execlp("openbox", "openbox", "--sm-disable", static_cast<char*>(nullptr)); });
        for (int tries = 0; std::system("xdotool get_num_desktops >/dev/null 2>&1") != 0; ++tries) {
            if (tries == 100) throw std::runtime_error("openbox does not start; is the package openbox installed?");
            usleep(50000);
        }
    }

    // "mousemove 10 20 click 1"
    static void Do(const std::string& xdotool) {
        if (std::system(std::string("xdotool ").append(xdotool).c_str()) != 0) throw std::runtime_error("xdotool fails: " + xdotool);
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
    template <class Execute>
    static pid_t Run(Execute execute) {
        const pid_t pid = fork();
        if (pid != 0) return pid;
        prctl(PR_SET_PDEATHSIG, SIGTERM);
        dup2(open("/dev/null", O_WRONLY), STDERR_FILENO);
        execute();
        _exit(127);
    }
    static void Stop(pid_t pid) {
        if (pid <= 0) return;
        kill(pid, SIGTERM);
        waitpid(pid, nullptr, 0);
    }

    TempDirectory directory_;
    pid_t server_ = -1, manager_ = -1;
};

}  // namespace vonta::test
