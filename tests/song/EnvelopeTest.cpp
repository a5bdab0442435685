#include "song/Envelope.h"

#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <vector>

namespace vonta {
namespace {

Envelope WithPoints(const std::vector<EnvelopePoint>& points) {
    Envelope envelope;
    std::copy(points.begin(), points.end(), envelope.points.begin());
    envelope.numPoints = static_cast<std::uint8_t>(points.size());
    return envelope;
}

std::vector<EnvelopePoint> PointsOf(const Envelope& envelope) {
    return {envelope.points.begin(), envelope.points.begin() + envelope.numPoints};
}

void ExpectInLimits(const Envelope& envelope) {
    ASSERT_GE(envelope.numPoints, 1);
    ASSERT_LE(envelope.numPoints, kEnvelopePoints);
    EXPECT_EQ(envelope.points[0].x, 0);
    for (std::size_t i = 0; i < envelope.numPoints; ++i) {
        EXPECT_LE(envelope.points[i].x, kMaxEnvelopeX);
        EXPECT_LE(envelope.points[i].y, kMaxEnvelopeY);
        EXPECT_GE(envelope.points[i].x, envelope.points[i > 0 ? i - 1 : 0].x);
    }
    EXPECT_LT(envelope.sustainPoint, envelope.numPoints);
    EXPECT_LE(envelope.loopStart, envelope.loopEnd);
    EXPECT_LT(envelope.loopEnd, envelope.numPoints);
}

TEST(Envelope, WhateverTheBytesItIsInLimitsAfterTheCheckAndAfterEveryEdit) {
    std::mt19937 random(1);
    for (int round = 0; round < 2000; ++round) {
        Envelope envelope;
        std::array<std::uint8_t, sizeof(Envelope)> bytes;
        for (auto& byte : bytes) byte = static_cast<std::uint8_t>(random());
        std::memcpy(&envelope, bytes.data(), bytes.size());
        if (round % 2) envelope.numPoints %= 14;

        Envelope inserted = envelope, deleted = envelope, validated = envelope;
        validated.Validate();
        ExpectInLimits(validated);
        const Envelope once = validated;
        validated.Validate();
        EXPECT_EQ(validated, once);

        inserted.InsertPoint(round % 16 - 1);
        deleted.DeletePoint(round % 16 - 1);
        if (inserted != envelope) ExpectInLimits(inserted);
        if (deleted != envelope) ExpectInLimits(deleted);
    }
}

TEST(Envelope, TheCheckPushesPointsToTheirPlace) {
    const struct { std::vector<EnvelopePoint> points, checked; } cases[] = {
        {{{7, 1}, {50, 2}}, {{0, 1}, {50, 2}}},
        {{{0, 0}, {100, 9}, {60, 65}}, {{0, 0}, {100, 9}, {100, 64}}},
        {{{0, 0}, {500, 1}, {10, 2}}, {{0, 0}, {420, 1}, {420, 2}}},
    };
    for (const auto& [points, checked] : cases) {
        Envelope envelope = WithPoints(points);
        envelope.Validate();
        EXPECT_EQ(PointsOf(envelope), checked);
    }
}

TEST(Envelope, InsertingPutsAPointHalfWayOrBehindTheLast) {
    const std::vector<EnvelopePoint> points = {{0, 10}, {41, 5}, {410, 64}};
    const struct { int after; std::vector<EnvelopePoint> result; } cases[] = {
        {0, {{0, 10}, {20, 8}, {41, 5}, {410, 64}}},     // halves are cut towards the left point
        {1, {{0, 10}, {41, 5}, {225, 34}, {410, 64}}},
        {2, {{0, 10}, {41, 5}, {410, 64}, {420, 64}}},   // 20 further, but not past the end
        {3, points},
    };
    for (const auto& [after, result] : cases) {
        Envelope envelope = WithPoints(points);
        envelope.InsertPoint(after);
        EXPECT_EQ(PointsOf(envelope), result) << after;
    }
    Envelope full = WithPoints(std::vector<EnvelopePoint>(kEnvelopePoints));
    const Envelope before = full;
    full.InsertPoint(0);
    EXPECT_EQ(full, before);
}

TEST(Envelope, DeletingKeepsTheFirstPoint) {
    const std::vector<EnvelopePoint> points = {{0, 1}, {10, 2}, {20, 3}};
    const struct { int index; std::vector<EnvelopePoint> result; } cases[] = {
        {0, points}, {1, {{0, 1}, {20, 3}}}, {2, {{0, 1}, {10, 2}}}, {3, points},
    };
    for (const auto& [index, result] : cases) {
        Envelope envelope = WithPoints(points);
        envelope.sustainPoint = envelope.loopEnd = 2;
        envelope.DeletePoint(index);
        EXPECT_EQ(PointsOf(envelope), result) << index;
        EXPECT_EQ(envelope.sustainPoint, envelope.numPoints - 1);
        EXPECT_EQ(envelope.loopEnd, envelope.numPoints - 1);
    }
}

}  // namespace
}  // namespace vonta
