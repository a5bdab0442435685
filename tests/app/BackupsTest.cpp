#include "app/backup/Backups.h"

#include <gtest/gtest.h>

#include "formats/Loaders.h"
#include "tests/support/SongBuilder.h"
#include "tests/support/TempDirectory.h"

namespace vonta {
namespace {

namespace fs = std::filesystem;

std::unique_ptr<Song> Titled(const std::string& title) {
    auto song = SongBuilder().SineInstrument(0, 64).Note(0, 0, 48, 1).Build();
    song->SetTitle(title);
    return song;
}

std::vector<std::string> Titles(const std::vector<WaitingBackup>& backups) {
    std::vector<std::string> titles;
    for (const WaitingBackup& backup : backups) titles.push_back(backup.title);
    return titles;
}

TEST(Backups, WaitUnderTheirTimesAndAreFoundTheNewestFirst) {
    TempDirectory directory;
    const std::vector<BackupPlace> places{{directory.Path() / "new", true}};
    for (const char* title : {"one", "two", "three"}) {      // all within a second
        const BackupResult result = WriteBackup(*Titled(title), places);
        EXPECT_EQ(result.file, directory.File("new/backup.vtm")) << result.error;
    }
    auto waiting = WaitingBackups(places);
    EXPECT_EQ(Titles(waiting), (std::vector<std::string>{"three", "two", "one"}));
    const fs::path aside = PutAside(waiting.front());
    EXPECT_EQ(aside.parent_path(), directory.Path() / "new/Backups");
    PutAside(waiting.back());
    EXPECT_EQ(Titles(WaitingBackups(places)), std::vector<std::string>{"two"});
}

TEST(Backups, GoToTheFirstPlaceThatTakesThemAndTouchNothingThere) {
    TempDirectory directory;
    const std::string own = directory.Write("backup.vtm", "a song that its user calls so");
    directory.Write("full", "");
    const std::vector<BackupPlace> places{{directory.Path() / "full", true}, {directory.Path(), false}};
    const BackupResult result = WriteBackup(*Titled("elsewhere"), places);
    EXPECT_TRUE(fs::path(result.file).filename().string().starts_with("vonta-backup-")) << result.file;
    EXPECT_EQ(directory.Text("backup.vtm"), "a song that its user calls so");
    auto waiting = WaitingBackups(places);
    ASSERT_EQ(Titles(waiting), std::vector<std::string>{"elsewhere"});
    PutAside(waiting.front());
    EXPECT_TRUE(WaitingBackups(places).empty());
    EXPECT_EQ(directory.List().size(), 3u);
}

TEST(Backups, FollowNoLinksOfOthers) {
    TempDirectory directory;
    const std::string precious = directory.Write("precious", "of the user");
    fs::create_directory(directory.Path() / "start");
    fs::create_symlink(precious, directory.Path() / "start/backup.vtm");
    const std::vector<BackupPlace> places{{directory.Path() / "start", true}};
    EXPECT_FALSE(WriteBackup(*Titled("new"), places).file.empty());
    EXPECT_EQ(directory.Text("precious"), "of the user");
    EXPECT_EQ(Titles(WaitingBackups(places)), std::vector<std::string>{"new"});
}

TEST(Backups, TellWhyNoPlaceTakesThem) {
    const BackupResult result = WriteBackup(*Titled("lost"), {{"/dev/null/start", true}, {"/dev/null", false}});
    EXPECT_EQ(result.file, "");
    EXPECT_NE(result.error.find("/dev/null/start"), std::string::npos) << result.error;
}

}  // namespace
}  // namespace vonta
