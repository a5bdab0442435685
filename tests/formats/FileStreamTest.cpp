#include "formats/streams/FileStream.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <random>

#include "tests/support/ByteBuilder.h"
#include "tests/support/TempDirectory.h"

namespace vonta {
namespace {

using test::ByteBuilder;

TEST(DiskStream, WritesAndReadsWhatAMemoryStreamDoesWhateverTheSteps) {
    const TempDirectory dir;
    std::mt19937 random(7);
    const auto below = [&](std::size_t n) { return std::uniform_int_distribution<std::size_t>(0, n - 1)(random); };
    DiskStream disk;
    MemoryStream memory;
    const std::string path = dir.File("file");
    ASSERT_TRUE(disk.Open(path, "wb"));
    for (int i = 0; i < 3000; ++i) {
        const std::vector<char> block(below(20) == 0 ? below(200000) : below(12), static_cast<char>(i));
        EXPECT_EQ(disk.Write(block.data(), 1, block.size()), memory.Write(block.data(), 1, block.size()));
        if (below(4) == 0) {                         // a length field is patched, near or far behind
            const auto back = static_cast<std::int64_t>(below(static_cast<std::size_t>(memory.Size()) + 1));
            for (FileStream* stream : {static_cast<FileStream*>(&disk), static_cast<FileStream*>(&memory)}) {
                ASSERT_TRUE(stream->Seek(back, kFromStart));
                Writer(*stream).U16(0xABCD);
                ASSERT_TRUE(stream->Seek(stream->Size(), kFromStart));
            }
        }
    }
    ASSERT_TRUE(disk.Close());
    ASSERT_TRUE(disk.Open(path, "rb"));
    ASSERT_EQ(disk.Size(), memory.Size());
    for (int i = 0; i < 3000; ++i) {
        const auto to = static_cast<std::int64_t>(below(static_cast<std::size_t>(memory.Size()) + 1));
        disk.Seek(to, kFromStart);
        memory.Seek(to, kFromStart);
        std::vector<std::uint8_t> a(below(20) == 0 ? below(200000) : below(12)), b(a.size());
        const std::size_t item = 1 + below(4);
        ASSERT_EQ(disk.Read(a.data(), item, a.size() / item), memory.Read(b.data(), item, b.size() / item));
        ASSERT_EQ(a, b);
        ASSERT_EQ(disk.Tell(), memory.Tell());
    }
}

TEST(DiskStream, NothingBesideTheTargetRemainsAndTheOldFileStaysUntilClose) {
    const TempDirectory dir;
    const std::string path = dir.Write("song", "old");
    DiskStream stream;
    ASSERT_TRUE(stream.Open(path, "wb"));
    Writer(stream).Text("new");
    EXPECT_EQ(dir.Text("song"), "old");
    EXPECT_TRUE(stream.Close());
    EXPECT_EQ(dir.Text("song"), std::string("new\0", 4));
    EXPECT_EQ(dir.List().size(), 1u);
    {
        DiskStream dropped;
        ASSERT_TRUE(dropped.Open(path, "wb"));
        Writer(dropped).U32(1);
    }
    EXPECT_EQ(dir.Text("song"), std::string("new\0", 4));
    EXPECT_EQ(dir.List().size(), 1u);
}

TEST(DiskStream, AFullDeviceFailsAtCloseAndStaysADevice) {
    ASSERT_TRUE(std::filesystem::exists("/dev/full"));
    DiskStream stream;
    ASSERT_TRUE(stream.Open("/dev/full", "wb"));
    Writer(stream).U32(1);
    EXPECT_FALSE(stream.Close());
    EXPECT_FALSE(stream.Close()) << "a second close must not turn the failure into a success";
    EXPECT_NE(stream.Error().find("No space"), std::string::npos) << stream.Error();
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/full"));
}

TEST(DiskStream, RefusesWhatIsNoFileWithoutWaiting) {
    const TempDirectory dir;
    ASSERT_EQ(::mkfifo(dir.File("pipe").c_str(), 0600), 0);
    const struct { std::string path; const char* mode; const char* error; } cases[] = {
        {dir.File("missing"), "rb", "cannot open: No such file or directory"},
        {dir.File(""), "rb", "cannot open: Is a directory"},
        {dir.File(""), "wb", "cannot write: Is a directory"},
        {dir.File("no/such/place"), "wb", "cannot write: No such file or directory"},
        {dir.File("pipe"), "rb", "not a plain file: Operation not supported"},
    };
    for (const auto& c : cases) {
        DiskStream stream;
        EXPECT_FALSE(stream.Open(c.path, c.mode)) << c.path;
        EXPECT_EQ(stream.Error(), c.error);
        std::uint8_t byte;
        EXPECT_EQ(stream.Read(&byte, 1, 1), 0u);
        EXPECT_EQ(stream.Write(&byte, 1, 1), 0u);
        EXPECT_FALSE(stream.Close());
    }
    EXPECT_EQ(dir.List().size(), 1u);
}

TEST(DiskStream, ASaveKeepsTheModeAndTheLinkOfWhatItReplaces) {
    const TempDirectory dir;
    const std::string real = dir.Write("real", "old");
    std::filesystem::permissions(real, std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
    std::filesystem::create_symlink("real", dir.File("link"));
    DiskStream stream;
    ASSERT_TRUE(stream.Open(dir.File("link"), "wb"));
    Writer(stream).Text("new");
    ASSERT_TRUE(stream.Close());
    EXPECT_TRUE(std::filesystem::is_symlink(dir.File("link")));
    EXPECT_EQ(dir.Text("real"), std::string("new\0", 4));
    EXPECT_EQ(static_cast<unsigned>(std::filesystem::status(real).permissions()), 0600u);
}

TEST(DiskStream, ASaveThroughALinkThatLeadsNowhereFailsAndLeavesIt) {
    const TempDirectory dir;
    std::filesystem::create_symlink("missing", dir.File("dangling"));
    std::filesystem::create_symlink("other", dir.File("loop"));
    std::filesystem::create_symlink("loop", dir.File("other"));
    const auto before = dir.List();
    const struct { const char *name, *error; } cases[] = {
        {"dangling", "cannot follow the link: No such file or directory"},
        {"loop", "cannot follow the link: Too many levels of symbolic links"},
    };
    for (const auto& c : cases) {
        DiskStream stream;
        EXPECT_FALSE(stream.Open(dir.File(c.name), "wb"));
        EXPECT_EQ(stream.Error(), c.error);
        EXPECT_TRUE(std::filesystem::is_symlink(dir.File(c.name)));
    }
    EXPECT_EQ(dir.List(), before);
}

TEST(DiskStream, ASaveRemovesThePartsOfTheDeadAndNoneOfTheLiving) {
    const TempDirectory dir;
    for (const char* name : {".vonta-save-1-0", ".vonta-save-2-17", ".vonta-save-notes"}) dir.Write(name, "part");
    const int living = ::open(dir.File(".vonta-save-2-17").c_str(), O_RDONLY | O_CLOEXEC);
    ASSERT_EQ(::flock(living, LOCK_EX), 0);
    DiskStream stream;
    ASSERT_TRUE(stream.Open(dir.File("song"), "wb"));
    EXPECT_EQ(dir.List().size(), 3u);                // these two and that of this save
    const int again = ::open(dir.File(".vonta-save-" + std::to_string(::getpid()) + "-0").c_str(), O_RDONLY | O_CLOEXEC);
    EXPECT_NE(::flock(again, LOCK_EX | LOCK_NB), 0) << "others must find it locked";
    ASSERT_TRUE(stream.Close());
    EXPECT_EQ(dir.List(), (std::set<std::string>{".vonta-save-2-17", ".vonta-save-notes", "song"}));
    ::close(again);
    ::close(living);
}

TEST(DiskStream, ANameOfFullLengthCanBeSaved) {
    const TempDirectory dir;
    DiskStream stream;
    ASSERT_TRUE(stream.Open(dir.File(std::string(255, 'n')), "wb"));
    EXPECT_TRUE(stream.Close());
    EXPECT_EQ(dir.List().size(), 1u);
}

TEST(Streams, SeekStaysInsideTheFile) {
    MemoryStream stream({1, 2, 3, 4});
    const struct { std::int64_t offset; int whence; bool inside; std::int64_t tell; } steps[] = {
        {4, kFromStart, true, 4},  {5, kFromStart, false, 4},  {-1, kFromHere, true, 3},
        {-4, kFromHere, false, 3}, {-1, kFromStart, false, 3}, {INT64_MAX, kFromHere, false, 3},
        {INT64_MIN, kFromHere, false, 3},
    };
    for (const auto& step : steps) {
        EXPECT_EQ(stream.Seek(step.offset, step.whence), step.inside) << step.offset;
        EXPECT_EQ(stream.Tell(), step.tell);
    }
}

TEST(Reader, ValuesPastTheEndAreZeroAndRemembered) {
    MemoryStream stream(ByteBuilder().U16(0x1234).U32(0x80000001).Text("name").U8(0).U8(9).bytes);
    Reader in(stream);
    EXPECT_EQ(in.U16(), 0x1234);
    EXPECT_EQ(in.I32(), INT32_MIN + 1);
    EXPECT_EQ(in.Text(), "name");
    EXPECT_FALSE(in.Truncated());
    EXPECT_EQ(in.U16(), 0);
    EXPECT_TRUE(in.Truncated());
    EXPECT_EQ(in.Text(), "");
}

TEST(Reader, TextsOfAnyLengthEndAtTheirNulOrTheFilesEnd) {
    for (const std::size_t length : {0u, 1u, 63u, 64u, 65u, 5000u}) {
        const std::string text(length, 't');
        MemoryStream whole(ByteBuilder().Text(text).U8(0).U8(7).bytes), cut(ByteBuilder().Text(text).bytes);
        Reader in(whole), short_(cut);
        EXPECT_EQ(in.Text(), text);
        EXPECT_EQ(in.U8(), 7);
        EXPECT_FALSE(in.Truncated());
        EXPECT_EQ(short_.Text(), text);
        EXPECT_TRUE(short_.Truncated());
    }
}

TEST(Writer, FieldsOfFixedWidthAreCutAndFilled) {
    MemoryStream stream;
    Writer out(stream);
    out.FixedText("long name", 4);
    out.FixedText("ab", 4, ' ');
    EXPECT_EQ(out.Text(std::string_view("a\0b", 3)), 2u);
    EXPECT_EQ(stream.Bytes(), ByteBuilder().Text("longab  a").U8(0).bytes);
}

}  // namespace
}  // namespace vonta
