// What is left on the disk when the program is gone between two saves.
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <random>
#include <thread>

#include "app/recovery/FormerFiles.h"
#include "app/recovery/LeftWork.h"
#include "app/recovery/Recovery.h"
#include "tests/support/FullSong.h"
#include "tests/support/ModuleBytes.h"
#include "tests/support/SongBuilder.h"
#include "tests/support/TempDirectory.h"

namespace vonta::test {
namespace {

namespace fs = std::filesystem;

std::vector<std::uint8_t> BytesOf(Song& song) { return SaveBytes(song, SaveMode::Module).bytes; }

// As a save and a load give it: some numbers are brought inside their limits on the way.
std::vector<std::uint8_t> SavedAndLoaded(Song& song) {
    const Loaded loaded = LoadBytes(BytesOf(song));
    return loaded.song ? BytesOf(*loaded.song) : std::vector<std::uint8_t>{};
}

// An editor with a clock of its own, whose work is kept in a directory for itself.
class Desk {
public:
    explicit Desk(const std::string& directory) : directory_(directory) {
        player_.SetSong(Song::MakeDefault());
        recovery_ = std::make_unique<Recovery>(directory_);
    }

    Editor& Edits() { return editor_; }
    Song& GetSong() { return editor_.GetSong(); }
    Recovery& Kept() { return *recovery_; }

    void Frame(std::uint32_t milliseconds = 20) { recovery_->Look(editor_, now_ += milliseconds); }
    // As many frames as it takes to have everything on the disk.
    void Settle() {
        for (int i = 0; i < 60; ++i) {
            Frame(Recovery::kDelayMs);
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
    }
    void Write(int row, int note) {
        const Editor::StepScope step(editor_, "note", {});
        editor_.SetCell(0, row, 0, {static_cast<std::uint8_t>(note), 1});
    }
    void SaveTo(const std::string& path) {
        DiskStream stream;
        ASSERT_TRUE(stream.Open(path, "wb"));
        ASSERT_EQ(SaveFile(&stream, SaveMode::Module, GetSong(), {}), 0);
        GetSong().SetFileName(path);
        editor_.MarkSaved();
    }
    // As kill -9 leaves it: nothing is told, nothing is tidied, the lock is gone.
    std::unique_ptr<Song> Killed(LoadReport& report) {
        recovery_.reset();
        works_ = FindLeftWork(directory_);
        return works_.empty() ? nullptr : LoadLeftWork(works_.front(), report);
    }
    const std::vector<LeftWork>& Found() const { return works_; }

private:
    std::string directory_;
    SndPlayer player_;
    Editor editor_{player_};
    std::unique_ptr<Recovery> recovery_;
    std::vector<LeftWork> works_;
    std::uint32_t now_ = 4000000000u;            // wraps on the way
};

TEST(Recovery, EditsOfANewSongComeBack) {
    const TempDirectory home;
    Desk desk(home.Path().string());
    desk.Frame();
    desk.Write(0, 40);
    desk.Write(5, 52);
    desk.Settle();
    desk.Write(6, 60);
    desk.Settle();
    const auto wanted = SavedAndLoaded(desk.GetSong());
    LoadReport report;
    const auto song = desk.Killed(report);
    ASSERT_TRUE(song);
    EXPECT_EQ(BytesOf(*song), wanted);
    EXPECT_TRUE(report.lines.empty());
    EXPECT_EQ(desk.Found().front().edits, 2u);       // the two between the same frames count as one look
}

TEST(Recovery, PartsLieOverTheFileThatTheSongCameFrom) {
    const TempDirectory home;
    Desk desk(home.Path().string());
    {
        const Editor::StepScope step(desk.Edits(), "load song", {});
        desk.Edits().SetSong(FullSong());
    }
    const std::string path = home.File("mine.vtm");
    desk.SaveTo(path);
    desk.Frame();
    std::mt19937 random(7);
    for (int round = 0; round < 12; ++round) {
        const int slot = static_cast<int>(random() % 3);
        {
            const Editor::StepScope step(desk.Edits(), "step", {});
            desk.Edits().SetCell(static_cast<int>(random() % 3), static_cast<int>(random() % 32), 1, {30, 1});
            desk.Edits().Set(InstrumentField(slot, &Instrument::gain), 0.25f * static_cast<float>(random() % 8));
            desk.Edits().Set(SongField(&Song::comments), std::string("round ") + std::to_string(round));
            if (round % 4 == 1)
                desk.Edits().SetSample(0, 0, MakeSample(SineWave(300 + static_cast<std::uint32_t>(random() % 100)), 1,
                                                        {VTSAMPLE_LOOP_PINGPONG, 10, 200}));
            if (round % 4 == 2) desk.Edits().SetInstrument(5, MakeInstrument(MakeSample(SineWave(64, 2), 2)));
            if (round % 4 == 3) desk.Edits().SetInstrument(5, nullptr);
            if (round == 6) desk.Edits().SetPattern(1, nullptr);
        }
        if (round == 8) desk.Edits().Steps().Undo();
        desk.Frame();
        if (round % 3 == 0) desk.Settle();
    }
    desk.Settle();
    fs::remove(path);                                // the link keeps what was there
    const auto wanted = SavedAndLoaded(desk.GetSong());
    LoadReport report;
    const auto song = desk.Killed(report);
    ASSERT_TRUE(song);
    EXPECT_EQ(BytesOf(*song), wanted);
    EXPECT_EQ(song->fileName, path);
}

TEST(Recovery, WhatIsSavedUndoneOrDiscardedLeavesNothingToOffer) {
    const TempDirectory home;
    for (const int end : {0, 1, 2}) {
        Desk desk(home.Path().string());
        desk.Frame();
        desk.Write(3, 44);
        desk.Settle();
        EXPECT_TRUE(FindLeftWork(home.Path().string()).empty()) << "one that lives is not offered";
        if (end == 0) desk.SaveTo(home.File("saved.vtm"));
        if (end == 1) desk.Edits().Steps().Undo();
        if (end == 2) desk.Kept().Discard();
        else desk.Settle();
        LoadReport report;
        EXPECT_FALSE(desk.Killed(report)) << end;
    }
}

TEST(Recovery, APlaceThatCannotBeWrittenIsToldOnceAndTriedAgain) {
    const TempDirectory home;
    std::ofstream(home.File("Recovery")) << "a file where the folder should be";
    Desk desk(home.Path().string());
    desk.Frame();
    desk.Write(0, 40);
    desk.Settle();
    EXPECT_NE(desk.Kept().TakeMessage(), "");
    fs::remove(home.File("Recovery"));
    desk.Write(1, 41);
    desk.Settle();
    EXPECT_EQ(desk.Kept().TakeMessage(), "");
    const auto wanted = SavedAndLoaded(desk.GetSong());
    LoadReport report;
    const auto song = desk.Killed(report);
    ASSERT_TRUE(song);
    EXPECT_EQ(BytesOf(*song), wanted);
}

TEST(Recovery, ADamagedDirectoryGivesWhatItHoldsOrNothingAtAll) {
    const TempDirectory home;
    Desk desk(home.Path().string());
    desk.Frame();
    desk.Write(0, 40);
    desk.Settle();
    LoadReport report;
    ASSERT_TRUE(desk.Killed(report));
    const std::string directory = desk.Found().front().directory, manifest = directory + "/manifest.json";
    std::ifstream in(manifest);
    const std::string text{std::istreambuf_iterator<char>(in), {}};
    std::mt19937 random(3);
    for (int i = 0; i < 300; ++i) {
        std::string damaged = text.substr(0, i % 3 == 0 ? random() % text.size() : text.size());
        for (int j = 0; j < 3 && !damaged.empty(); ++j) damaged[random() % damaged.size()] = static_cast<char>(random());
        std::ofstream(manifest) << damaged;
        LoadReport each;
        LoadLeftWork(desk.Found().front(), each);    // under the checkers
    }
    std::ofstream(manifest) << R"({"version":1,"numbers":"../../etc/passwd","patterns":[{"number":0,"file":"/etc/passwd"}]})";
    LoadReport outside;
    EXPECT_FALSE(LoadLeftWork(desk.Found().front(), outside));
}

TEST(Recovery, OldWorkGoesByAgeAndBySize) {
    const TempDirectory home;
    for (int i = 0; i < 3; ++i) {
        const std::string directory = home.File("Recovery/") + std::to_string(i);
        fs::create_directories(directory);
        std::ofstream(directory + "/manifest.json") << R"({"version":1,"time":)" << 1000000 + 40 * 86400 * i << "}";
    }
    std::ofstream(home.File("Recovery/1/big")).close();
    fs::resize_file(home.File("Recovery/1/big"), kKeptBytes);      // sparse
    auto works = FindLeftWork(home.Path().string());
    ASSERT_EQ(works.size(), 3u);
    RemoveOldWork(works, 1000000 + 81 * 86400);
    ASSERT_EQ(works.size(), 3u) << "what was not offered yet stays";
    for (LeftWork& work : works) Decline(work);
    RemoveOldWork(works, 1000000 + 81 * 86400);
    ASSERT_EQ(works.size(), 1u);
    EXPECT_EQ(works.front().time, 1000000 + 80 * 86400);
}

TEST(FormerFiles, TheLastFiveOfANameAreKept) {
    const TempDirectory home;
    const std::string path = home.File("song.vtm");
    std::string error;
    EXPECT_TRUE(KeepFormerFile(home.Path().string(), path, error)) << "there is none yet";
    for (int i = 0; i < 8; ++i) {
        fs::remove(path);                            // a save replaces the file, it does not write into it
        std::ofstream(path) << i;
        ASSERT_TRUE(KeepFormerFile(home.Path().string(), path, error)) << error;
    }
    std::vector<std::string> kept;
    for (const auto& entry : fs::directory_iterator(home.File("Backups"))) {
        std::ifstream in(entry.path());
        kept.emplace_back(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    }
    std::ranges::sort(kept);
    EXPECT_EQ(kept, (std::vector<std::string>{"3", "4", "5", "6", "7"}));
}

}  // namespace
}  // namespace vonta::test
