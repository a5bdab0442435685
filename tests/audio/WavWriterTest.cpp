#include "audio/WavWriter.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <vector>

#include "formats/samples/WavFormat.h"
#include "tests/support/TempDirectory.h"

namespace vonta {
namespace {

std::vector<std::uint8_t> Written(std::uint32_t bits, const std::vector<float>& values, std::uint32_t rate = 44100) {
    const TempDirectory directory;
    WavWriter writer;
    EXPECT_TRUE(writer.Open(directory.File("a.wav"), rate, bits)) << writer.Error();
    EXPECT_TRUE(writer.Write(values.data(), static_cast<int>(values.size() / 2)));
    EXPECT_TRUE(writer.Close()) << writer.Error();
    EXPECT_EQ(directory.List(), std::set<std::string>{"a.wav"});
    return directory.Bytes("a.wav");
}

template <class Stored>
std::vector<Stored> Data(const std::vector<std::uint8_t>& file) {
    std::vector<Stored> values((file.size() - kWavHeadBytes) / sizeof(Stored));
    std::memcpy(values.data(), file.data() + kWavHeadBytes, values.size() * sizeof(Stored));
    return values;
}

const std::vector<float> kEdges = {0.0f,     1.99f,    -1.99f,    255.9f,  32766.9f, 40000.0f,
                                   -40000.0f, -32768.0f, INFINITY, -INFINITY, NAN,    -0.5f};

TEST(WavWriter, ClipsAndTruncatesAtEveryWidth) {
    EXPECT_EQ(Data<std::uint8_t>(Written(8, kEdges)),
              (std::vector<std::uint8_t>{128, 128, 127, 128, 255, 255, 0, 0, 255, 0, 128, 127}));
    EXPECT_EQ(Data<std::int16_t>(Written(16, kEdges)),
              (std::vector<std::int16_t>{0, 1, -1, 255, 32766, 32767, -32768, -32768, 32767, -32768, 0, 0}));
    EXPECT_EQ(Data<std::int32_t>(Written(32, {1.5f, -0.25f, 32767.0f, 40000.0f, -32768.0f, -40000.0f})),
              (std::vector<std::int32_t>{98304, -16384, 2147418112, 2147418112, -2147483648, -2147483648}));
}

TEST(WavWriter, TheHeadTellsFormatAndSizes) {
    const std::vector<std::uint8_t> expected = {
        'R', 'I', 'F', 'F', 36 + 24, 0, 0, 0, 'W', 'A', 'V', 'E', 'f', 'm', 't', ' ', 16, 0, 0, 0,
        1, 0, 2, 0, 0x00, 0x77, 0x01, 0x00, 0x00, 0xB8, 0x0B, 0x00, 8, 0, 32, 0, 'd', 'a', 't', 'a', 24, 0, 0, 0};
    auto head = Written(32, std::vector<float>(6), 96000);
    head.resize(kWavHeadBytes);
    EXPECT_EQ(head, expected);
}

TEST(WavWriter, ABlockOfAnyLengthIsWrittenWhole) {
    std::vector<float> values(2 * 5001);
    for (std::size_t i = 0; i < values.size(); ++i) values[i] = static_cast<float>(i);
    const auto data = Data<std::int16_t>(Written(16, values));
    ASSERT_EQ(data.size(), values.size());
    for (std::size_t i = 0; i < data.size(); ++i) ASSERT_EQ(data[i], static_cast<std::int16_t>(i));
}

TEST(WavWriter, RefusesWhatTheSizesOfTheFormatCannotHold) {
    const TempDirectory directory;
    WavWriter writer;
    ASSERT_TRUE(writer.Open(directory.File("a.wav"), 44100, 16));
    constexpr int most = static_cast<int>((0xFFFFFFFFu - 36) / 4);
    EXPECT_TRUE(writer.HasRoom(most));
    EXPECT_FALSE(writer.HasRoom(most + 1));
    const float frame[2] = {};
    writer.Write(frame, 1);
    EXPECT_TRUE(writer.HasRoom(most - 1));
    EXPECT_FALSE(writer.HasRoom(most));
}

TEST(WavWriter, AnAbandonedOrForgottenFileLeavesNothing) {
    const TempDirectory directory;
    {
        WavWriter abandoned, forgotten;
        ASSERT_TRUE(abandoned.Open(directory.File("a.wav"), 44100, 16));
        ASSERT_TRUE(forgotten.Open(directory.File("b.wav"), 44100, 16));
        abandoned.Abandon();
    }
    EXPECT_TRUE(directory.List().empty());
}

}  // namespace
}  // namespace vonta
