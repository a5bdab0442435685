// The program in its window, with a note in a song that nobody has saved, ended in every way that is not the user's
// wish: the note is there at the next start.
#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <cstdio>
#include <functional>
#include <map>
#include <set>

#include "formats/Loaders.h"
#include "interface/layout/DiskOpLayout.h"
#include "interface/layout/QuestionLayouts.h"
#include "platform/Library.h"
#include "tests/devices/PulseServer.h"
#include "tests/support/RunVonta.h"
#include "tests/support/SongBuilder.h"
#include "tests/support/XServer.h"

namespace vonta {
namespace {

using test::Program;
using test::XServer;

constexpr int kTypedNote = 48;
constexpr double kEndSeconds = 2.0;

class Ending : public testing::Test {
protected:
    Ending() {
        Set("XDG_DATA_HOME", home_.File("data"));
        Set("XDG_CACHE_HOME", home_.File("cache"));
        Set("TMPDIR", MakeDirectory("tmp"));
        Set("SDL_AUDIODRIVER", "dummy");
        Set("VONTA_MESSAGES", "output");
    }
    ~Ending() override {
        program_.reset();
        for (const auto& [name, value] : before_) value ? setenv(name, value->c_str(), 1) : unsetenv(name);
    }

    void Set(const char* name, const std::string& value) {
        const char* old = std::getenv(name);
        before_.try_emplace(name, old ? std::optional<std::string>(old) : std::nullopt);
        setenv(name, value.c_str(), 1);
    }
    std::string MakeDirectory(const char* name) {
        std::filesystem::create_directory(home_.Path() / name);
        return home_.File(name);
    }

    void Start(const std::string& file = {}) { StartBy({}, file); }
    // By a command that becomes the program whose name and arguments follow.
    void StartBy(const std::vector<std::string>& command, const std::string& file = {}) {
        std::vector<std::string> arguments{"edit", "--no-curtain"};
        if (!file.empty()) arguments.push_back(file);
        program_.emplace(arguments, songs_.Path(), command);
        window_ = Answer("timeout 20 xdotool search --sync --onlyvisible --class vonta | tail -1");
        ASSERT_NE(window_, "") << program_->ErrorText();
        XServer::Do("windowmove --sync " + window_ + " 0 0 windowfocus " + window_ + " sleep 0.7");
    }
    static void Click(const ScreenLayout& layout, int id) {
        const LayoutItem& item = ItemOf(layout, id);
        const int x = layout.x - layout.OriginX() + item.x + item.width / 2;
        const int y = layout.y - layout.OriginY() + item.y + item.height / 2;
        XServer::Do("mousemove --sync " + std::to_string(x) + " " + std::to_string(y) +
                    " sleep 0.1 mousedown 1 sleep 0.1 mouseup 1 sleep 0.2");
    }
    static void Keys(const std::string& keys) { XServer::Do("key --delay 60 " + keys + " sleep 0.3"); }
    void WriteNote() { Keys("Return space z"); }     // the first closes the notice to a new user

    // The status, and in `seconds_` how long it took.
    int EndBy(const std::function<void()>& blow) {
        const auto start = std::chrono::steady_clock::now();
        blow();
        outcome_ = program_->Wait();
        seconds_ = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        program_.reset();
        return outcome_.status;
    }
    int EndBy(int signal) { return EndBy([&] { program_->Signal(signal); }); }

    static int NoteIn(const std::string& file) {
        LoadReport report;
        bool unknown = false;
        const auto song = LoadModule(file, unknown, report);
        return song && song->GetPattern(0) ? song->GetPattern(0)->Read(0, 0).note : -1;
    }
    std::string Newest() const { return home_.File("data/vonta/backup.vtm"); }
    static std::size_t FilesIn(const std::string& directory) {
        std::error_code failed;
        return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(directory, failed), {}));
    }
    static std::string Answer(const std::string& command) {
        std::string answer;
        std::array<char, 100> part;
        if (FILE* pipe = popen(command.c_str(), "r")) {
            while (fgets(part.data(), part.size(), pipe)) answer += part.data();
            pclose(pipe);
        }
        return answer.substr(0, answer.find('\n'));
    }

    TempDirectory home_, songs_;
    XServer server_{900, 700, 24};
    std::optional<Program> program_;
    std::string window_;
    test::Outcome outcome_;
    double seconds_ = 0;
    std::map<const char*, std::optional<std::string>> before_;
};

// As another client: xdotool can only ask for it.
void DestroyWindow(unsigned long window) {
    const Library x11("libX11.so.6");
    void* (*open)(const char*) = nullptr;
    int (*destroy)(void*, unsigned long) = nullptr;
    int (*close)(void*) = nullptr;
    ASSERT_TRUE(x11.Bind(open, "XOpenDisplay") && x11.Bind(destroy, "XDestroyWindow") && x11.Bind(close, "XCloseDisplay"));
    void* display = open(nullptr);
    ASSERT_TRUE(display);
    destroy(display, window);
    close(display);
}

struct Blow {
    const char* name;
    int signal;
    int status;
};
class EndingBySignal : public Ending, public testing::WithParamInterface<Blow> {};
INSTANTIATE_TEST_SUITE_P(All, EndingBySignal,
                         testing::Values(Blow{"Int", SIGINT, 130}, Blow{"Term", SIGTERM, 130}, Blow{"Hup", SIGHUP, 130},
                                         Blow{"Quit", SIGQUIT, 130}, Blow{"FileSize", SIGXFSZ, 130},
                                         Blow{"Abort", SIGABRT, 1}, Blow{"BadAccess", SIGSEGV, 1}),
                         [](const auto& test) { return std::string(test.param.name); });

TEST_P(EndingBySignal, KeepsTheSong) {
    Start();
    WriteNote();
    EXPECT_EQ(EndBy(GetParam().signal), GetParam().status) << outcome_.err;
    EXPECT_LT(seconds_, kEndSeconds);
    EXPECT_EQ(NoteIn(Newest()), kTypedNote);
    EXPECT_NE(outcome_.err.find(Newest()), std::string::npos) << outcome_.err;
}

TEST_F(Ending, WithTheDisplayKeepsTheSong) {
    const std::map<std::string, std::function<void()>> losses{
        {"the server dies", [&] { server_.Crash(); }},
        {"another client destroys the window", [&] { DestroyWindow(std::stoul(window_)); }},
        {"the server cuts us off", [&] { XServer::Do("windowkill " + window_); }}};
    for (const char* how : {"another client destroys the window", "the server cuts us off", "the server dies"}) {
        std::filesystem::remove_all(home_.File("data"));
        Start();
        WriteNote();
        EXPECT_EQ(EndBy(losses.at(how)), 130) << how << ": " << outcome_.err;
        EXPECT_LT(seconds_, kEndSeconds) << how;
        EXPECT_EQ(NoteIn(Newest()), kTypedNote) << how;
    }
}

TEST_F(Ending, IsNotHeldByAMessageBox) {
    unsetenv("VONTA_MESSAGES");
    const auto windows = [] { return std::stoi(Answer("xdotool search --onlyvisible --name '' | wc -l")); };
    const int before = windows();
    Start();
    WriteNote();
    const int without = windows();
    program_->Signal(SIGABRT);
    ASSERT_TRUE(test::Await([&] { return windows() > without; }, 10)) << program_->ErrorText();
    EXPECT_EQ(EndBy(SIGTERM), 1);
    EXPECT_LT(seconds_, kEndSeconds);
    EXPECT_EQ(NoteIn(Newest()), kTypedNote);
    EXPECT_TRUE(test::Await([&] { return windows() == before; }, 5)) << windows();
}

TEST_F(Ending, IsNotHeldByASoundServerThatHangs) {
    test::PulseServer sound;
    Start();
    WriteNote();
    sound.Signal(SIGSTOP);
    Keys("space Return x");                          // what needs the device meanwhile
    EXPECT_EQ(EndBy(SIGTERM), 130);
    EXPECT_LT(seconds_, kEndSeconds);
    EXPECT_EQ(NoteIn(Newest()), kTypedNote);
    sound.Signal(SIGCONT);

    std::filesystem::remove(Newest());
    Start();
    sound.Signal(SIGSTOP);
    EXPECT_EQ(EndBy([] { Keys("Escape y"); }), 0);
    EXPECT_LT(seconds_, kEndSeconds + 1);            // with the typing
    sound.Signal(SIGCONT);
}

TEST_F(Ending, OfTwoInstancesKeepsBothSongsAndOffersBothTheNewestFirst) {
    Start();
    WriteNote();
    const std::string first = window_;
    Program second({"edit", "--no-curtain"}, songs_.Path());
    std::string other;
    ASSERT_TRUE(test::Await([&] {
        other = Answer("xdotool search --onlyvisible --class vonta | grep -v '^" + first + "$'");
        return !other.empty();
    }));
    XServer::Do("windowfocus " + other + " sleep 0.7");
    Keys("space x");
    EXPECT_EQ(EndBy(SIGTERM), 130);
    std::this_thread::sleep_for(std::chrono::milliseconds(1100));   // times of files in whole seconds
    second.Signal(SIGTERM);
    EXPECT_EQ(second.Wait().status, 130);
    EXPECT_EQ(NoteIn(Newest()), kTypedNote + 2);
    EXPECT_EQ(Answer("ls " + home_.File("data/vonta") + " | grep -c '^backup'"), "2");

    Start();                                         // the newest is declined, the other one taken
    Keys("n y");
    std::this_thread::sleep_for(std::chrono::milliseconds(500));
    EXPECT_EQ(EndBy(SIGTERM), 130);
    EXPECT_EQ(NoteIn(Newest()), kTypedNote);
    EXPECT_EQ(FilesIn(home_.File("data/vonta/Backups")), 2u);
}

TEST_F(Ending, WhereNothingCanBeWrittenGoesToTheNextPlaceAndTheStartTellsOfIt) {
    home_.Write("data", "a file where the directory should be");
    for (const std::string& place : {home_.File("cache/vonta"), songs_.Path().string()}) {
        if (place == songs_.Path()) home_.Write("cache", "likewise");
        Start();
        WriteNote();
        EXPECT_EQ(EndBy(SIGTERM), 130);
        EXPECT_NE(outcome_.err.find(home_.File("data")), std::string::npos) << outcome_.err;
        const auto at = outcome_.err.find("kept as ");
        ASSERT_NE(at, std::string::npos) << outcome_.err;
        const std::string file = outcome_.err.substr(at + 8, outcome_.err.find('\n', at) - at - 8);
        EXPECT_EQ(file.find(place), 0u) << file;
        EXPECT_EQ(NoteIn(file), kTypedNote);
        std::filesystem::remove_all(home_.File("cache"));
    }
}

TEST_F(Ending, OfAMixdownIsQuickAndLeavesNothing) {
    constexpr int kSlowest = 31;                     // ticks a row
    constexpr double kMixdownEndSeconds = 0.5;
    SongBuilder builder;
    builder.Tempo(kSlowest).Bpm(32).Order({0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}).SineInstrument(0, 64);
    for (int track = 0; track < 8; ++track) builder.Note(0, track, 48 + track);
    const auto song = builder.Build();
    DiskStream stream;
    ASSERT_TRUE(stream.Open(songs_.File("long.vtm"), "wb"));
    ASSERT_EQ(SaveFile(&stream, SaveMode::Module, *song, {}), 0);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        Start("long.vtm");
        if (signal == SIGINT) Keys("Return");
        Keys("ctrl+d");
        Click(kDiskOpLayout, kDiskKind);
        Click(kDiskOpLayout, kDiskSave);
        Click(kSaveLayout, kSaveWav);
        Click(kSaveLayout, kSaveGo);
        ASSERT_TRUE(test::Await([&] { return songs_.List().size() > 1; }, 5));
        EXPECT_EQ(EndBy(signal), 130) << outcome_.err;
        EXPECT_LT(seconds_, kMixdownEndSeconds);
        EXPECT_EQ(songs_.List(), std::set<std::string>{"long.vtm"});
        std::filesystem::remove(Newest());           // not to be offered
    }
}

// By the shell, before it becomes the program.
TEST_F(Ending, OnAFullDiskGoesToTheNextPlace) {
    Start();
    Keys("Return");
    EndBy(SIGTERM);
    std::filesystem::remove(Newest());
    const std::string data = home_.File("data"), installed = home_.File("installed");
    std::filesystem::rename(data, installed);
    MakeDirectory("data");
    const std::string fill = "mount -t tmpfs -o size=64m tmpfs " + data + " && cp -a " + installed + "/. " + data +
                             " && { cat /dev/zero >" + data + "/fill; true; } 2>/dev/null";
    if (test::ChildProcess({"unshare", "-rm", "sh", "-c", fill}).Wait() != 0) GTEST_SKIP() << "no disk can be mounted here";
    StartBy({"unshare", "-rm", "sh", "-c", fill + " && exec \"$0\" \"$@\""});
    Keys("space z");
    EXPECT_EQ(EndBy(SIGTERM), 130);
    EXPECT_EQ(NoteIn(home_.File("cache/vonta/backup.vtm")), kTypedNote) << outcome_.err;
    EXPECT_EQ(FilesIn(data), 0u);
}

TEST_F(Ending, AtALimitOfFileSizesTheProgramGoesOnAndSaysThatNothingIsKept) {
    Start();
    Keys("Return");
    EndBy(SIGTERM);
    std::filesystem::remove(Newest());
    StartBy({"sh", "-c", "ulimit -f 1; exec \"$0\" \"$@\""});
    Keys("space z");
    EXPECT_EQ(EndBy(SIGTERM), 130);
    EXPECT_NE(outcome_.err.find("File too large"), std::string::npos) << outcome_.err;
    EXPECT_EQ(FilesIn(home_.File("cache/vonta")) + FilesIn(home_.File("tmp")), 0u);
}

}  // namespace
}  // namespace vonta
