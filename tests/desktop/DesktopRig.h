// The program on a desktop of the test's own, worked as a musician does: by keys and the mouse alone.
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <thread>

#include "formats/Loaders.h"
#include "interface/layout/Layout.h"
#include "tests/support/RunVonta.h"
#include "tests/support/TempDirectory.h"
#include "tests/support/XServer.h"

namespace vonta::test {

struct DesktopRecipe {
    int depth = 24;                                  // of the screen
    double scale = 2;                                // of the window: 2 is what the program chooses here
};

class Desktop {
public:
    explicit Desktop(const DesktopRecipe& recipe = {}) : recipe_(recipe), server_(1700, 1300, recipe.depth) {
        setenv("XDG_DATA_HOME", home_.Path().c_str(), 1);
        setenv("XDG_CACHE_HOME", home_.File("cache").c_str(), 1);   // where a song may wait too
        setenv("SDL_AUDIODRIVER", "dummy", 1);       // plays in real time, heard by nobody
    }
    ~Desktop() {
        program_.reset();
        unsetenv("XDG_DATA_HOME");
        unsetenv("XDG_CACHE_HOME");
        unsetenv("SDL_AUDIODRIVER");
    }

    void Start(const std::string& file = {}) {
        std::vector<std::string> arguments{"edit", "--no-curtain"};
        if (!file.empty()) arguments.push_back(file);
        program_ = std::make_unique<Program>(arguments, songs_.Path());
        window_ = Ask("xdotool search --sync --onlyvisible --class vonta | tail -1");
        XServer::Do("windowmove --sync " + window_ + " 0 0 windowfocus " + window_);
        if (recipe_.scale != 2)
            XServer::Do("windowsize --sync " + window_ + " " + std::to_string(static_cast<int>(800 * recipe_.scale)) + " " +
                        std::to_string(static_cast<int>(600 * recipe_.scale)));
        Rest(500);
        if (first_) Keys("Return");                  // the notice to a new user
        first_ = false;
    }
    std::string Title() const { return Ask("xdotool getwindowname " + window_); }
    // Through the question, without the changes if there are any; the exit status.
    int Quit() {
        Keys("Escape y d");
        return Wait();
    }
    int Wait() {
        const int status = program_->Wait().status;
        program_.reset();
        return status;
    }

    // "z x alt+F4", in the names of xdotool, one after the other.
    void Keys(const std::string& keys) {
        XServer::Do("key --delay 30 " + keys);
        Rest(150);
    }
    // The keys while a modifier is held.
    void Hold(const std::string& modifier, const std::string& keys) {
        XServer::Do("keydown " + modifier);
        Rest(60);
        Keys(keys);
        XServer::Do("keyup " + modifier);
        Rest(100);
    }
    void Type(const std::string& text) {
        XServer::Do("type --delay 30 '" + text + "'");
        Rest(150);
    }
    void Click(int x, int y, int button = 1) {
        const auto at = [&](int pixel) { return std::to_string(static_cast<int>((pixel + 0.5) * recipe_.scale)); };
        XServer::Do("mousemove --sync " + at(x) + " " + at(y));
        Rest(80);
        XServer::Do("mousedown " + std::to_string(button));
        Rest(80);
        XServer::Do("mouseup " + std::to_string(button));
        Rest(150);
    }
    // A control of a screen's table.
    void Click(const ScreenLayout& layout, int id) {
        const LayoutItem& item = ItemOf(layout, id);
        Click(layout.x - layout.OriginX() + item.x + item.width / 2, layout.y - layout.OriginY() + item.y + item.height / 2);
    }
    static void Rest(int milliseconds) { std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds)); }

    std::unique_ptr<Song> Load(const std::string& name) {
        LoadReport report;
        bool unknown = false;
        return LoadModule(songs_.File(name), unknown, report);
    }

    TempDirectory home_, songs_;
    XServer& Server() { return server_; }

private:
    static std::string Ask(const std::string& command) {
        std::string answer;
        std::array<char, 100> part;
        if (FILE* pipe = popen(command.c_str(), "r")) {
            while (fgets(part.data(), part.size(), pipe)) answer += part.data();
            pclose(pipe);
        }
        while (!answer.empty() && answer.back() == '\n') answer.pop_back();
        return answer;
    }

    DesktopRecipe recipe_;
    XServer server_;
    std::unique_ptr<Program> program_;
    std::string window_;
    bool first_ = true;
};

}  // namespace vonta::test
