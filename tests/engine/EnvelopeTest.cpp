#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <vector>

#include "engine/channels/EnvelopeState.h"

namespace vonta {
namespace {

Envelope Curve(const std::vector<EnvelopePoint>& points) {
    Envelope envelope;
    std::copy(points.begin(), points.end(), envelope.points.begin());
    envelope.numPoints = static_cast<std::uint8_t>(points.size());
    return envelope;
}

std::vector<int> Values(const Envelope& envelope, int ticks, int keyOffAt = 1000, float step = 1.0f) {
    EnvelopeState state{&envelope, 1};
    std::vector<int> values;
    for (int tick = 0; tick < ticks; ++tick) {
        AdvanceEnvelope(state, tick >= keyOffAt, step);
        values.push_back(state.value);
    }
    return values;
}

using Ints = std::vector<int>;

TEST(Envelope, GoesFromPointToPointAndHoldsTheLast) {
    EXPECT_EQ(Values(Curve({{0, 0}, {4, 64}, {6, 10}}), 9), (Ints{0, 16, 32, 48, 64, 37, 10, 10, 10}));
    EXPECT_EQ(Values(Curve({{0, 7}}), 3), (Ints{7, 7, 7}));
    EXPECT_EQ(Values(Curve({{0, 0}, {3, 10}}), 4), (Ints{0, 3, 6, 10}));          // truncated
}

TEST(Envelope, PointsAtOneXGiveTheFirstBeforeThemAndTheLastFromThere) {
    EXPECT_EQ(Values(Curve({{2, 5}, {2, 40}}), 5), (Ints{5, 5, 40, 40, 40}));
}

TEST(Envelope, TimeBasedStepsByTheGivenTicks) {
    Envelope envelope = Curve({{0, 0}, {4, 64}});
    EXPECT_EQ(Values(envelope, 3, 0, 0.5f), (Ints{0, 16, 32}));
    envelope.timeBased = 1;
    EXPECT_EQ(Values(envelope, 9, 0, 0.5f), (Ints{0, 8, 16, 24, 32, 40, 48, 56, 64}));
}

TEST(Envelope, SustainHoldsUntilKeyOffAlsoInsideALoop) {
    Envelope envelope = Curve({{0, 0}, {2, 20}, {4, 40}, {6, 60}});
    envelope.sustainOn = 1;
    envelope.sustainPoint = 1;
    EXPECT_EQ(Values(envelope, 8, 4), (Ints{0, 10, 20, 20, 20, 30, 40, 50}));
    envelope.loopOn = 1;
    envelope.loopStart = 0;
    envelope.loopEnd = 2;
    EXPECT_EQ(Values(envelope, 9, 4), (Ints{0, 10, 20, 20, 20, 30, 0, 10, 20}));
}

TEST(Envelope, AnyBytesStayInRangeAndInTheTable) {
    std::mt19937 random(5);
    for (int round = 0; round < 2000; ++round) {
        Envelope envelope;
        std::vector<std::uint8_t> bytes(sizeof envelope);
        for (auto& byte : bytes) byte = static_cast<std::uint8_t>(random());
        std::memcpy(&envelope, bytes.data(), sizeof envelope);
        for (const int value : Values(envelope, 50, 25)) EXPECT_TRUE(value >= 0 && value <= kMaxEnvelopeY);
    }
}

}  // namespace
}  // namespace vonta
