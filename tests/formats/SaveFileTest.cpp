#include <gtest/gtest.h>

#include "formats/Loaders.h"
#include "tests/support/FileSizeLimit.h"
#include "tests/support/FullSong.h"
#include "tests/support/TempDirectory.h"

namespace vonta {
namespace {

TEST(SaveFile, ModesWithoutAFileLeaveNoneBehind) {
    const TempDirectory dir;
    const auto song = Song::MakeDefault();
    std::string base;
    SaveOptions mixdown;
    mixdown.mixdown = [&](const std::string& path, Song&) {
        base = path;
        return 0;
    };
    const struct { int mode; const SaveOptions& options; int result; } cases[] = {
        {0, mixdown, 1}, {1, mixdown, 1}, {7, mixdown, 1}, {-1, mixdown, 1}, {5, mixdown, 0}, {6, mixdown, 0},
        {6, {}, 1},
    };
    for (const auto& c : cases) {
        DiskStream stream;
        ASSERT_TRUE(stream.Open(dir.File("out"), "wb"));
        EXPECT_EQ(SaveFile(&stream, static_cast<SaveMode>(c.mode), *song, c.options), c.result) << c.mode;
        EXPECT_EQ(dir.List().size(), 0u) << c.mode;
    }
    EXPECT_EQ(base, dir.File("out"));
    EXPECT_EQ(SaveFile(nullptr, SaveMode::Nothing, *song, {}), 1);
}

TEST(SaveFile, ASongIsNamedAfterTheFullPathOfItsLastSaveOrLoad) {
    const TempDirectory dir;
    const auto song = Song::MakeDefault();
    const auto relative = std::filesystem::relative(dir.Path() / "x/../song.vtm").string();
    DiskStream stream;
    ASSERT_TRUE(stream.Open(relative, "wb"));
    ASSERT_EQ(SaveFile(&stream, SaveMode::Module, *song, {}), 0);
    EXPECT_EQ(song->fileName, dir.File("song.vtm"));
    ASSERT_TRUE(stream.Open("/dev/full", "wb"));
    EXPECT_EQ(SaveFile(&stream, SaveMode::Module, *song, {}), 1);
    EXPECT_EQ(song->fileName, dir.File("song.vtm"));
    const std::string moved = dir.File(std::string(200, 'm') + ".vtm");
    std::filesystem::rename(dir.File("song.vtm"), moved);
    LoadReport report;
    bool unknown = false;
    EXPECT_EQ(LoadModule(std::filesystem::relative(moved).string(), unknown, report)->fileName, moved);
}

class FullDisk : public testing::Test {
protected:
    // Saves over an old file, with a disk that takes `bytes`.
    void Save(Song& song, SaveMode mode, bool compress, rlim_t bytes) {
        SaveOptions options;
        options.compress = compress;
        DiskStream stream;
        {
            const test::FileSizeLimit disk(bytes);
            opened_ = stream.Open(path_, "wb");
            result_ = SaveFile(&stream, mode, song, options);
        }
        error_ = stream.Error();
    }
    // Fails after each number of bytes from 0 on, in steps; those of the packed form, which is slow to make, are longer.
    void FailEverywhere(Song& song, std::size_t step, std::size_t packedStep) {
        const struct { SaveMode mode; bool compress; std::size_t step; } kModes[] = {{SaveMode::Module, false, step},
                                                                                    {SaveMode::Module, true, packedStep},
                                                                                    {SaveMode::Xm, false, step},
                                                                                    {SaveMode::Mod, false, step}};
        for (const auto& [mode, compress, modeStep] : kModes) {
            Save(song, mode, compress, RLIM_INFINITY);
            ASSERT_EQ(result_, 0) << error_;
            const std::size_t size = directory_.Bytes("song").size();
            directory_.Write("song", "old");
            for (std::size_t bytes = 0; bytes < size; bytes += modeStep) {
                Save(song, mode, compress, bytes);
                ASSERT_TRUE(opened_);
                ASSERT_EQ(result_, 1) << bytes;
                ASSERT_NE(error_, "") << bytes;
                ASSERT_EQ(directory_.Text("song"), "old") << bytes;
                ASSERT_EQ(directory_.List().size(), 1u) << bytes;
            }
        }
    }

    TempDirectory directory_;
    std::string path_ = directory_.File("song");
    bool opened_ = false;
    int result_ = 0;
    std::string error_;
};

TEST_F(FullDisk, AfterAnyByteLeavesTheOldFileAndNothingBeside) { FailEverywhere(*test::SmallSong(), 1, 211); }

// Of these, much has reached the disk before it fails, and lengths behind are patched.
TEST_F(FullDisk, InTheMiddleOfALongFileLeavesTheOldFileAndNothingBeside) {
    FailEverywhere(*SongBuilder().Pattern(0).SineInstrument(0, 120000).SineInstrument(1, 90000).Build(), 16411, 65521);
}

}  // namespace
}  // namespace vonta
