#include "app/pack/PackFile.h"

#include <gtest/gtest.h>

#include "app/pack/ImageReader.h"
#include "tests/support/PackBuilder.h"
#include "tests/support/TempDirectory.h"

namespace vonta {
namespace {

using test::ByteBuilder;
using test::PackBuilder;
using test::Tga;

PackFile FromBytes(const std::vector<std::uint8_t>& bytes) { return PackFile(std::make_unique<MemoryStream>(bytes)); }

TEST(PackFile, FindsByThirtyCharactersStartsAnewAndEndsWithTheEntry) {
    TempDirectory directory;
    const std::string full(PackFile::kNameLength, 'n');
    PackFile pack(PackBuilder().Add("skin\\a", {1, 2, 3}).Add("empty", {}).Add(full, {9}).Add("skin\\a", {7})
                      .WriteTo(directory.File("p.vts")));
    ASSERT_TRUE(pack.IsOpen());
    std::uint8_t bytes[3] = {};
    for (int round = 0; round < 2; ++round) {
        ASSERT_TRUE(pack.Find("skin\\a"));
        EXPECT_EQ(pack.Remaining(), 3u);
        EXPECT_TRUE(pack.Read(bytes, 2));
        EXPECT_FALSE(pack.Read(bytes, 2));       // and the position has moved on, so that
        EXPECT_FALSE(pack.Read(bytes, 1));
    }
    EXPECT_EQ(bytes[0], 1);
    ASSERT_TRUE(pack.Find(full + "beyond the field"));
    EXPECT_FALSE(pack.Find("SKIN\\A"));          // changes nothing
    EXPECT_TRUE(pack.Read(bytes, 1));
    EXPECT_EQ(bytes[0], 9);
    ASSERT_TRUE(pack.Find("empty"));
    EXPECT_FALSE(pack.Read(bytes, 1));
}

TEST(PackFile, BelievesNoCountAndNoOffset) {
    const ByteBuilder entry = ByteBuilder().FixedText("a", 30).U32(42).U32(1);
    const struct { ByteBuilder bytes; bool open; } cases[] = {
        {ByteBuilder().U32(0), true},
        {ByteBuilder().U16(0), false},
        {ByteBuilder().U32(0xFFFFFFFF).Bytes(entry.bytes), false},
        {ByteBuilder().U32(2).Bytes(entry.bytes).U8(5), false},
        {ByteBuilder().U32(1).Bytes(entry.bytes), true},                                       // its byte is missing
        {ByteBuilder().U32(1).FixedText("a", 30).U32(0xFFFFFFF0).U32(0xFFFFFFFF), true},
        {ByteBuilder().U32(1).FixedText("a", 30).U32(0).U32(0xFFFFFFFF), true}};
    for (const auto& c : cases) {
        PackFile pack = FromBytes(c.bytes.bytes);
        EXPECT_EQ(pack.IsOpen(), c.open) << c.bytes.bytes.size();
        std::uint8_t bytes[64];
        if (pack.Find("a")) {
            EXPECT_LE(pack.Remaining(), 42u);
            EXPECT_FALSE(pack.Read(bytes, sizeof bytes));
        }
    }
}

TEST(PackFile, WhatDoesNotFitIsNotWrittenAndTheOldFileStays) {
    TempDirectory directory;
    const std::string path = directory.Write("old.vts", "old");
    std::string error;
    EXPECT_FALSE(WritePack(path, {{std::string(31, 'n'), {}}}, error));
    EXPECT_NE(error, "");
    EXPECT_EQ(directory.Text("old.vts"), "old");
}

TEST(ImageReader, TurnsAlphaIntoTheTransparentColour) {
    // Opaque black, just clear, half and fully opaque colours.
    const std::vector<std::uint32_t> pixels = {0xFF000000, 0x7F102030, 0x80405060, 0x81708090};
    TempDirectory directory;
    const auto tga = Tga(2, 2, 32, pixels);
    PackFile pack(PackBuilder().Add("a", tga).WriteTo(directory.File("p.vts")));
    const std::string file = directory.Write("a.tga", std::string(tga.begin(), tga.end()));
    using Bytes = std::vector<std::uint8_t>;
    const struct { PackFile* pack; std::string name; bool invert; Bytes expected; } cases[] = {
        {&pack, "a", false, {1, 1, 1, 0, 0, 0, 0x60, 0x50, 0x40, 0x90, 0x80, 0x70}},
        {&pack, "a", true, {0, 0, 0, 0x30, 0x20, 0x10, 0x60, 0x50, 0x40, 0, 0, 0}},
        {nullptr, file, true, {0, 0, 0, 0, 0, 0, 0x60, 0x50, 0x40, 0x90, 0x80, 0x70}}};
    for (const auto& c : cases) {
        ImageRequest request{.pack = c.pack, .name = c.name, .pixels = {}, .invertAlpha = c.invert};
        ASSERT_EQ(LoadImage(request), kImageOk);
        EXPECT_EQ(request.bits, 32u);
        EXPECT_EQ(request.pixels, c.expected);
    }
}

TEST(ImageReader, RefusesOtherPicturesAndThoseCutShort) {
    TempDirectory directory;
    auto cut = Tga(2, 2, 24, {1, 2, 3, 4});
    cut.pop_back();
    PackFile pack(PackBuilder().Add("deep", Tga(1, 1, 16, {0})).Add("packed", Tga(1, 1, 24, {0}, 10)).Add("cut", cut)
                      .Add("head", {0, 0, 2}).Add("huge", Tga(65535, 65535, 24, {})).Add("none", Tga(0, 0, 24, {}))
                      .WriteTo(directory.File("p.vts")));
    const struct { const char* name; int result; } cases[] = {
        {"deep", kImageWrongDepth}, {"packed", kImageWrongType}, {"cut", kImageWrongType}, {"head", kImageWrongType},
        {"huge", kImageWrongDepth}, {"none", kImageOk},          {"missing", kImageNotFound}};
    for (const auto& c : cases) {
        ImageRequest request{.pack = &pack, .name = c.name, .pixels = {}};
        EXPECT_EQ(LoadImage(request), c.result) << c.name;
        EXPECT_TRUE(request.pixels.empty()) << c.name;
    }
}

}  // namespace
}  // namespace vonta
