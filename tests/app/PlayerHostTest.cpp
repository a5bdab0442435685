#include "app/PlayerHost.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <optional>

#include "app/config/StartDirectory.h"
#include "formats/Loaders.h"
#include "tests/support/FullSong.h"
#include "tests/support/SongCompare.h"
#include "tests/support/TempDirectory.h"

namespace vonta {
namespace {

namespace fs = std::filesystem;

// The surroundings that decide on the start directory, put back at the end.
class StartDirectoryTest : public testing::Test {
protected:
    StartDirectoryTest() { fs::current_path(directory_.Path()); }
    ~StartDirectoryTest() override {
        fs::current_path(before_);
        Set("HOME", home_);
        Set("XDG_DATA_HOME", data_);
    }
    static std::optional<std::string> Get(const char* name) {
        const char* value = std::getenv(name);
        return value ? std::optional<std::string>(value) : std::nullopt;
    }
    static void Set(const char* name, const std::optional<std::string>& value) {
        if (value) setenv(name, value->c_str(), 1);
        else unsetenv(name);
    }

    fs::path before_ = fs::current_path();
    std::optional<std::string> home_ = Get("HOME"), data_ = Get("XDG_DATA_HOME");
    TempDirectory directory_;
};

TEST_F(StartDirectoryTest, IsThePortableOneThenTheUsers) {
    Set("HOME", "/home/somebody");
    Set("XDG_DATA_HOME", {});
    EXPECT_EQ(FindStartDirectory(), "/home/somebody/.local/share/vonta");
    Set("XDG_DATA_HOME", "relative/does/not/count");
    EXPECT_EQ(FindStartDirectory(), "/home/somebody/.local/share/vonta");
    Set("XDG_DATA_HOME", "/data");
    EXPECT_EQ(FindStartDirectory(), "/data/vonta");
    directory_.Write("Vonta.cfg", "");
    EXPECT_EQ(fs::canonical(FindStartDirectory()), fs::canonical(directory_.Path()));
}

using CrashBackupTest = StartDirectoryTest;

void CrashWithSong(PlayerHost& app, bool audioFault) {
    app.StartPlayer();
    auto song = SongBuilder().SineInstrument(0, 64).Note(0, 0, 48, 1).Build();
    song->SetTitle("Precious");
    app.InstallSong(std::move(song));
    app.CrashBackup(audioFault);
}

TEST_F(CrashBackupTest, SavesTheSongInTheStartDirectoryAndEndsTheProcess) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    for (const bool audioFault : {false, true}) {
        TempDirectory data;
        Set("XDG_DATA_HOME", data.Path().string());
        EXPECT_EXIT(
            {
                Set("XDG_DATA_HOME", data.Path().string());
                PlayerHost app;
                CrashWithSong(app, audioFault);
            },
            testing::ExitedWithCode(1), "Internal error, backup.vtm saved");
    }
}

TEST_F(CrashBackupTest, GoesElsewhereOrSaysThatItCannotSave) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const auto cache = Get("XDG_CACHE_HOME"), temporary = Get("TMPDIR");
    const struct { bool cacheTakesIt; const char* text; } cases[] = {
        {true, "backup.vtm saved: .*/cache/vonta/backup.vtm"}, {false, "backup.vtm could not be saved"}};
    for (const auto& c : cases) {
        EXPECT_EXIT(
            {
                Set("XDG_DATA_HOME", "/dev/null");
                Set("XDG_CACHE_HOME", c.cacheTakesIt ? directory_.File("cache") : "/dev/null");
                Set("TMPDIR", "/proc");
                fs::current_path("/proc/self");
                PlayerHost app;
                CrashWithSong(app, false);
            },
            testing::ExitedWithCode(1), c.text);
    }
    Set("XDG_CACHE_HOME", cache);
    Set("TMPDIR", temporary);
}

void Fault() {
    volatile std::uintptr_t nowhere = 16;
    *reinterpret_cast<volatile int*>(nowhere) = 1;
}

class FaultingEffect final : public test::FakePlugin<EffectSlot> {
public:
    using FakePlugin::FakePlugin;
    void Uninit() override {}
    int Process(float*, int, int) override { return Fault(), 0; }
};

template <class Effect>
std::unique_ptr<Song> DoomedSong() {
    auto song = test::FullSong();
    song->fxSlots[3] = std::make_unique<Effect>("doomed.so");
    song->fxSlots[3]->on = 1;
    song->fxNames[3] = song->fxSlots[3]->GetName();
    return song;
}

// The child is this program anew, which runs the test up to its crash: it finds the parent's directory here.
class RealFaultTest : public testing::Test {
protected:
    static constexpr const char* kShared = "VONTA_TEST_DATA";
    RealFaultTest() {
        GTEST_FLAG_SET(death_test_style, "threadsafe");
        if (!std::getenv(kShared)) setenv(kShared, own_.emplace().Path().c_str(), 1);
        setenv("XDG_DATA_HOME", std::getenv(kShared), 1);
    }
    ~RealFaultTest() override {
        unsetenv(kShared);
        unsetenv("XDG_DATA_HOME");
    }
    void ExpectWholeBackup() const {
        const test::FakeLoader plugins;
        LoadReport report;
        report.plugins = plugins.Get();
        bool hasUnknownChunks = false;
        const auto saved = LoadModule(own_->File("vonta/backup.vtm"), hasUnknownChunks, report);
        ASSERT_TRUE(saved) << report.error;
        const auto doomed = DoomedSong<test::FakeEffect>();
        doomed->SetFileName(saved->fileName);        // that of where it was found
        test::ExpectSame(*doomed, *saved);
    }
    std::optional<TempDirectory> own_;
};

TEST_F(RealFaultTest, OfTheInterfaceThreadLeavesTheWholeSong) {
    EXPECT_EXIT(
        {
            PlayerHost app;
            app.StartPlayer(SoundChoice{});
            app.InstallSong(DoomedSong<test::FakeEffect>());
            app.Guarded([] { return Fault(), 0; });
        },
        testing::ExitedWithCode(1), "Internal error, backup.vtm saved");
    ExpectWholeBackup();
}

TEST_F(RealFaultTest, OfTheAudioThreadLeavesTheWholeSong) {
    EXPECT_EXIT(
        {
            PlayerHost app;
            app.StartPlayer(SoundChoice{});
            app.InstallSong(DoomedSong<FaultingEffect>());
            while (true) pause();
        },
        testing::ExitedWithCode(1), "Internal error, backup.vtm saved");
    ExpectWholeBackup();
}

}  // namespace
}  // namespace vonta
