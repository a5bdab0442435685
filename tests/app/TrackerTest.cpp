#include <gtest/gtest.h>

#include <cstdlib>

#include "app/Application.h"
#include "formats/Loaders.h"
#include "interface/layout/MainLayout.h"
#include "interface/screens/DiskOpScreen.h"
#include "platform/HeadlessWindow.h"
#include "tests/support/SongBuilder.h"
#include "tests/support/TempDirectory.h"

namespace vonta {
namespace {

namespace fs = std::filesystem;

// The whole program with a window that nobody sees, for a user who starts it for the first time.
class Tracker : public testing::Test {
protected:
    Tracker() {
        setenv("XDG_DATA_HOME", home_.Path().c_str(), 1);
        setenv("XDG_CACHE_HOME", home_.File("cache").c_str(), 1);   // where a song may wait too
        setenv("SDL_AUDIODRIVER", "dummy", 1);       // where a configuration asks for sound
        fs::current_path(home_.Path());
    }
    ~Tracker() override {
        app_.reset();
        fs::current_path(before_);
        unsetenv("XDG_DATA_HOME");
        unsetenv("XDG_CACHE_HOME");
        unsetenv("SDL_AUDIODRIVER");
    }

    // No sound card is needed: MODE 3.
    int Start(const std::string& file = {}) {
        Silence();
        return Launch(file);
    }
    int Launch(const std::string& file = {}) {
        TrackerOptions options;
        options.openWindow = [this](std::string&) {
            auto window = std::make_unique<HeadlessWindow>();
            window_ = window.get();
            return window;
        };
        options.file = file;
        options.curtain = false;
        app_ = std::make_unique<GMain>(std::move(options));
        return app_->Init();
    }
    void Frames(int count) {
        for (int i = 0; i < count; ++i) app_->OnIdle();
    }
    void Key(int scanCode) {
        for (const auto kind : {WindowEventKind::KeyDown, WindowEventKind::KeyUp}) {
            WindowEvent event;
            event.kind = kind;
            event.scanCode = scanCode;
            app_->OnEvent(event);
        }
        Frames(2);
    }
    void Click(int x, int y) {
        for (const auto kind : {WindowEventKind::MouseMove, WindowEventKind::LeftDown, WindowEventKind::LeftUp}) {
            WindowEvent event;
            event.kind = kind;
            event.x = x;
            event.y = y;
            event.left = kind == WindowEventKind::LeftDown;
            app_->OnEvent(event);
            Frames(2);
        }
    }
    Song& CurrentSong() { return app_->GetSndPlayer()->GetSong(); }
    fs::path Directory() const { return home_.Path() / "vonta"; }
    void Silence() {
        config_.flags &= ~std::uint32_t{kFullscreen};
        config_.mode = 3;
        config_.waitTime = 0;
        fs::create_directories(Directory());
        config_.Save(Directory() / "Vonta.cfg", Directory() / "Keyb.cfg");
    }

    Config config_;                                      // that it starts with
    TempDirectory home_;
    fs::path before_ = fs::current_path();
    HeadlessWindow* window_ = nullptr;
    std::unique_ptr<GMain> app_;
};

constexpr int kScanD = 7, kScanY = 28, kScanZ = 29, kScanN = 17, kScanSpace = 44, kScanEscape = 41, kScanReturn = 40,
              kScanShift = 225;

TEST_F(Tracker, StartsForANewUserWritesANoteAndAsksBeforeItGoes) {
    ASSERT_EQ(Start(), 0);
    EXPECT_TRUE(fs::exists(Directory() / "Skins/Default.vts"));
    EXPECT_EQ(window_->GetTitle(), "Vonta Tracker beta 0.81");
    Frames(2);
    EXPECT_GE(window_->Screen().Presents(), 2);
    Key(kScanSpace);
    Key(kScanZ);
    EXPECT_EQ(CurrentSong().GetPattern(0)->Read(0, 0).note, 48);
    Key(kScanEscape);
    Key(kScanN);
    EXPECT_FALSE(app_->GetTracker().m_bQuit);
    for (int i = 0; i < 3; ++i) Key(kScanEscape);    // asked, declined, asked
    Key(kScanY);                                     // which is no answer to a song that is not saved
    EXPECT_FALSE(app_->GetTracker().m_bQuit);
    Frames(10);
    EXPECT_EQ(window_->GetTitle(), "*new song - Vonta Tracker beta 0.81");
    Key(kScanD);
    EXPECT_TRUE(app_->GetTracker().m_bQuit);
}

TEST_F(Tracker, TheFirstSongHasTheAmplificationOfTheConfiguration) {
    config_.amplification = 0.35f;
    ASSERT_EQ(Start(), 0);
    EXPECT_FLOAT_EQ(CurrentSong().masterVolume, 0.35f);
    EXPECT_FLOAT_EQ(app_->GetSndPlayer()->GetMixer().masterAmp, 0.35f);
}

TEST_F(Tracker, TellsThatAMixdownEndedEarly) {
    const fs::path path = home_.Path() / "circle.vtm";
    const auto song = SongBuilder().Tempo(1).Pattern(0, 8).Effect(7, 0, 11, 1).Pattern(1, 8).Effect(5, 0, 11, 1)
                          .Order({0, 1, 0, 1}).Build();
    {
        DiskStream stream;
        ASSERT_TRUE(stream.Open(path, "wb"));
        ASSERT_EQ(SaveFile(&stream, SaveMode::Module, *song, {}), 0);
    }
    ASSERT_EQ(Start(path), 0);
    Frames(3);
    app_->GetInterface().CloseQuestion();            // the notice to a new user
    EXPECT_EQ(CurrentSong().fileName, path);
    app_->GetInterface().DiskOp().Choice().m_nSaveFormat = SaveFormat::Wav;
    app_->GetInterface().DiskOp().SaveSong();
    Frames(2);
    EXPECT_TRUE(fs::exists(home_.Path() / "circle.wav"));
    EXPECT_EQ(app_->GetInterface().Mode(), DialogMode::Report);
    EXPECT_EQ(app_->GetInterface().QuestionText(), "circle.wav is saved, but:");
}

TEST_F(Tracker, RestartsTheVideoWithoutTouchingTheSong) {
    ASSERT_EQ(Start(), 0);
    const Song* song = &CurrentSong();
    fs::create_directory(home_.Path() / "gone");
    fs::current_path(home_.Path() / "gone");
    fs::remove(home_.Path() / "gone");                   // what a user may do meanwhile
    app_->RequestVideoRestart();
    Frames(2);
    EXPECT_TRUE(window_->Screen().IsFullscreen());
    app_->RequestVideoRestart();
    window_->Screen().lost = true;
    Frames(1);
    window_->Screen().lost = false;
    Frames(2);
    EXPECT_FALSE(window_->Screen().IsFullscreen());
    EXPECT_EQ(&CurrentSong(), song);
}

TEST_F(Tracker, DrawsNothingWhileMinimised) {
    ASSERT_EQ(Start(), 0);
    Frames(1);
    WindowEvent event;
    event.kind = WindowEventKind::Minimised;
    app_->OnEvent(event);
    const int shown = window_->Screen().Presents();
    Frames(3);
    EXPECT_EQ(window_->Screen().Presents(), shown);
    event.kind = WindowEventKind::Restored;
    app_->OnEvent(event);
    Frames(3);
    EXPECT_GT(window_->Screen().Presents(), shown);
}

TEST_F(Tracker, LoadsTheFileItIsGivenAndOffersABackupOnce) {
    const auto song = SongBuilder().SineInstrument(0, 64).Note(3, 1, 50, 1).Build();
    song->SetTitle("Precious");
    fs::create_directories(Directory());
    DiskStream stream;
    ASSERT_TRUE(stream.Open((Directory() / "backup.vtm").string(), "wb"));
    ASSERT_EQ(SaveFile(&stream, SaveMode::Module, *song, {}), 0);
    ASSERT_EQ(Start(), 0);
    Frames(1);
    const std::string question = app_->GetInterface().QuestionText();
    EXPECT_TRUE(question.starts_with(" Load the crash backup??\n Precious\n 20")) << question;
    Key(kScanY);
    Frames(3);
    EXPECT_EQ(CurrentSong().GetPattern(0)->Read(3, 1).note, 50);
    EXPECT_FALSE(fs::exists(Directory() / "backup.vtm"));
    std::size_t kept = 0;
    for (const auto& entry : fs::directory_iterator(Directory() / "Backups"))
        kept += entry.path().filename().string().starts_with("backup-");
    EXPECT_EQ(kept, 1u);
}

TEST_F(Tracker, TakesTheOldVideoModeBackWhenTheOtherIsRefused) {
    ASSERT_EQ(Start(), 0);
    window_->Screen().refuseFullscreen = true;
    app_->RequestVideoRestart();
    Frames(3);
    EXPECT_TRUE(window_->Screen().IsOpen());
    EXPECT_FALSE(window_->Screen().IsFullscreen());
    EXPECT_NE(app_->GetInterface().QuestionText().find("video mode"), std::string::npos);
    const int shown = window_->Screen().Presents();
    Frames(2);
    EXPECT_GT(window_->Screen().Presents(), shown);
}

// The desktop keeps the releases of what is held while the window changes.
TEST_F(Tracker, TheWindowButtonForgetsWhatIsHeld) {
    ASSERT_EQ(Start(), 0);
    WindowEvent event;
    event.kind = WindowEventKind::KeyDown;
    event.scanCode = kScanShift;
    app_->OnEvent(event);
    Frames(2);
    ASSERT_TRUE(app_->GetInterface().ShiftHeld());
    const LayoutItem& button = ItemOf(kMainLayout, kMainWindowMode);
    Click(kMainLayout.x - kMainLayout.OriginX() + button.x + 2, kMainLayout.y - kMainLayout.OriginY() + button.y + 2);
    EXPECT_TRUE(window_->Screen().IsFullscreen());
    EXPECT_FALSE(app_->GetInterface().ShiftHeld());
}

TEST_F(Tracker, StartsFromWhatShipsWhereNothingCanBeWrittenAndSaysSo) {
    home_.Write("vonta", "a file where the directory should be");
    testing::internal::CaptureStderr();
    EXPECT_EQ(Launch(), 0);
    EXPECT_NE(testing::internal::GetCapturedStderr().find(Directory().string()), std::string::npos);
    Frames(2);
    EXPECT_GE(window_->Screen().Presents(), 2);
    EXPECT_NE(app_->GetInterface().QuestionText().find("not kept"), std::string::npos);
    Key(kScanReturn);
    app_->SaveConfig();
    EXPECT_NE(app_->GetInterface().QuestionText().find("could not be saved"), std::string::npos);
}

TEST_F(Tracker, NamesTheConfigurationFileThatCannotBeRead) {
    Silence();
    fs::remove(Directory() / "Keyb.cfg");
    fs::create_directories(Directory() / "Keyb.cfg");
    testing::internal::CaptureStderr();
    EXPECT_EQ(Start(), 1);
    EXPECT_NE(testing::internal::GetCapturedStderr().find("Keyb.cfg"), std::string::npos);
}

TEST_F(Tracker, TellsWhatIsMissingAndEnds) {
    Silence();
    fs::create_directories(Directory() / "Vonta.dat");   // nothing to be opened, and nothing to be replaced
    testing::internal::CaptureStderr();
    EXPECT_EQ(Start(), 1);
    EXPECT_NE(testing::internal::GetCapturedStderr().find("Can't open Vonta.dat file"), std::string::npos);
}

}  // namespace
}  // namespace vonta
