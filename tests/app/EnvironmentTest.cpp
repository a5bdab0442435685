#include "app/config/Environment.h"

#include <gtest/gtest.h>

#include <vector>

#include "formats/streams/FileStream.h"
#include "tests/support/TempDirectory.h"

namespace vonta {
namespace {

std::vector<std::uint8_t> Written(const Environment& environment) {
    MemoryStream stream;
    WriteEnvironment(stream, environment);
    return stream.Bytes();
}

Environment Read(const std::vector<std::uint8_t>& bytes, Environment environment = {}) {
    MemoryStream stream(bytes);
    ReadEnvironment(stream, environment);
    return environment;
}

// Sound, and all different.
Environment Unusual() {
    Environment environment;
    std::uint16_t n = 0;
    for (auto& kind : environment.predefEnvelopes)
        for (auto& envelope : kind) {
            ++n;
            envelope.numPoints = 6;
            for (std::size_t i = 0; i < envelope.points.size(); ++i)
                envelope.points[i] = {static_cast<std::uint16_t>(i * n), n};
            envelope.enabled = envelope.loopOn = envelope.sustainOn = 1;
            envelope.sustainPoint = 4;
            envelope.loopStart = 2;
            envelope.loopEnd = 5;
            envelope.timeBased = n & 1;
        }
    for (auto& macro : environment.macros) {
        ++n;
        macro = {static_cast<std::uint16_t>(n - 30), n, static_cast<std::uint16_t>(kVolumeCommand + n)};
    }
    return environment;
}

TEST(EnvironmentFile, HoldsTheEnvelopesByKindAndThenTheMacros) {
    Environment environment;
    environment.predefEnvelopes[2][1].points[0].y = 0x33;
    environment.predefEnvelopes[3][7].timeBased = 1;
    environment.macros[9] = {20, 0x12, 0x80C1};
    const auto bytes = Written(environment);
    ASSERT_EQ(bytes.size(), 1852u);
    EXPECT_EQ(bytes[896 + 56 + 2], 0x33);
    EXPECT_EQ(bytes[1791], 1);
    EXPECT_EQ(std::vector<std::uint8_t>(bytes.end() - 6, bytes.end()),
              (std::vector<std::uint8_t>{20, 0, 0x12, 0, 0xC1, 0x80}));
    EXPECT_EQ(bytes[4], 40);                                    // a new slot's second point
    EXPECT_EQ(bytes[48], 0);                                    // not enabled
    EXPECT_EQ(bytes[49], 5);
}

TEST(EnvironmentFile, SavedAndLoadedIsEqual) {
    const TempDirectory directory;
    ASSERT_TRUE(SaveEnvironment(directory.File("Env.cfg"), Unusual()));
    Environment loaded;
    ASSERT_TRUE(LoadEnvironment(directory.File("Env.cfg"), loaded));
    EXPECT_EQ(loaded, Unusual());
    EXPECT_EQ(directory.List().size(), 1u);
}

TEST(EnvironmentFile, ThatIsMissingLeavesEverything) {
    Environment environment = Unusual();
    EXPECT_FALSE(LoadEnvironment(TempDirectory().File("Env.cfg"), environment));
    EXPECT_EQ(environment, Unusual());
}

TEST(EnvironmentFile, ThatIsShortLeavesTheFieldsBehindItsEnd) {
    const Environment defaults;
    const auto bytes = Written(Unusual());
    const std::vector<std::uint8_t> inTheSecond(bytes.begin(), bytes.begin() + 56 + 7);   // in a y of its point 1
    Environment expected;
    expected.predefEnvelopes[0][0] = Unusual().predefEnvelopes[0][0];
    expected.predefEnvelopes[0][1].points[0].y = 2;
    expected.predefEnvelopes[0][1].points[1].x = 2;
    EXPECT_EQ(Read(inTheSecond), expected);
    EXPECT_EQ(Read({}, Unusual()), Unusual());
    std::vector<std::uint8_t> longer = bytes;
    longer.resize(4000);
    EXPECT_EQ(Read(longer), Unusual());
}

// An environment that is sound is not changed by another way through the file.
void ExpectSound(const Environment& environment) {
    ASSERT_EQ(Read(Written(environment)), environment);
    for (const auto& macro : environment.macros) ASSERT_TRUE(macro.effect <= 20 && macro.param <= 255);
}

TEST(EnvironmentFile, OfAnyPrefixAndWithAnyByteFlippedIsBroughtIntoRange) {
    const auto bytes = Written(Unusual());
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        ExpectSound(Read({bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(i)}));
        for (const int flip : {0x01, 0x80, 0xFF}) {
            auto damaged = bytes;
            damaged[i] = static_cast<std::uint8_t>(damaged[i] ^ flip);
            ExpectSound(Read(damaged));
        }
    }
    ExpectSound(Read(std::vector<std::uint8_t>(1852, 0xFF)));
}

}  // namespace
}  // namespace vonta
