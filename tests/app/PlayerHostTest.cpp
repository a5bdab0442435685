#include "app/PlayerHost.h"

#include <gtest/gtest.h>
#include <signal.h>

#include <cstdlib>
#include <optional>

#include "app/config/StartDirectory.h"
#include "formats/Loaders.h"
#include "tests/support/SongBuilder.h"
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

TEST_F(CrashBackupTest, ABackupHoldsTheSong) {
    // A fork, so that the child writes where the parent reads.
    TempDirectory data;
    Set("XDG_DATA_HOME", data.Path().string());
    GTEST_FLAG_SET(death_test_style, "fast");
    EXPECT_EXIT(
        {
            PlayerHost app;
            CrashWithSong(app, false);
        },
        testing::ExitedWithCode(1), "saved");
    LoadReport report;
    bool hasUnknownChunks = false;
    const auto song = LoadModule(data.File("vonta/backup.vtm"), hasUnknownChunks, report);
    ASSERT_TRUE(song) << report.error;
    EXPECT_EQ(song->title, "Precious");
    EXPECT_EQ(song->GetInstrument(0)->GetSample(0)->Count(), 64u);
}

TEST_F(CrashBackupTest, SaysSoWhenItCannotSave) {
    Set("XDG_DATA_HOME", "/dev/null");
    EXPECT_EXIT(
        {
            PlayerHost app;
            CrashWithSong(app, false);
        },
        testing::ExitedWithCode(1), "Internal error, backup.vtm could not be saved");
}

TEST_F(CrashBackupTest, AFaultOfTheWorkLeadsThere) {
    TempDirectory data;
    Set("XDG_DATA_HOME", data.Path().string());
    EXPECT_EXIT(
        {
            PlayerHost app;
            app.StartPlayer();
            app.Guarded([] { return raise(SIGSEGV); });
        },
        testing::ExitedWithCode(1), "Internal error, backup.vtm saved");
}

// Faults on its first block.
class BrokenEffect final : public EffectSlot {
public:
    BrokenEffect() { on = 1; }
    bool Load(const std::string&) override { return true; }
    bool Init(int, int, int, std::uint32_t) override { return true; }
    void Uninit() override {}
    std::string GetPath() const override { return {}; }
    int Process(float*, int, int) override { return raise(SIGSEGV); }
};

TEST_F(CrashBackupTest, AFaultOfTheAudioSideLeadsThereFromItsThread) {
    TempDirectory data;
    Set("XDG_DATA_HOME", data.Path().string());
    GTEST_FLAG_SET(death_test_style, "fast");
    EXPECT_EXIT(
        {
            PlayerHost app;
            app.StartPlayer(SoundChoice{});
            {
                const MixerPause hold(*app.GetSndPlayer());
                app.GetSndPlayer()->GetMixer().SetEffect(0, std::make_unique<BrokenEffect>());
            }
            while (true) pause();
        },
        testing::ExitedWithCode(1), "Internal error, backup.vtm saved");
    EXPECT_TRUE(fs::exists(data.Path() / "vonta/backup.vtm"));
}

}  // namespace
}  // namespace vonta
