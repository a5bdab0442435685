#include "song/Envelope.h"

#include <algorithm>

#include "platform/Shared.h"

namespace vonta {
namespace {

constexpr int kAppendedDistance = 20;   // ticks from the last point to one put behind it

int UsedPoints(const Envelope& envelope) { return std::clamp<int>(envelope.numPoints, 1, kEnvelopePoints); }

void RepairPoints(Envelope& envelope, int used) {
    envelope.points[0].x = 0;
    std::uint16_t reached = 0;
    for (int i = 0; i < used; ++i) {
        EnvelopePoint& point = envelope.points[static_cast<std::size_t>(i)];
        point.x = std::min<std::uint16_t>(std::max(point.x, reached), kMaxEnvelopeX);
        point.y = std::min<std::uint16_t>(point.y, kMaxEnvelopeY);
        reached = point.x;
    }
}

Envelope Repaired(Envelope envelope) {
    const int used = UsedPoints(envelope);
    const auto last = static_cast<std::uint8_t>(used - 1);
    envelope.numPoints = static_cast<std::uint8_t>(used);
    RepairPoints(envelope, used);
    envelope.sustainPoint = std::min(envelope.sustainPoint, last);
    envelope.loopStart = std::min(envelope.loopStart, last);
    envelope.loopEnd = std::max(std::min(envelope.loopEnd, last), envelope.loopStart);
    return envelope;
}

EnvelopePoint PointBehind(const EnvelopePoint& last) {
    return {static_cast<std::uint16_t>(std::min(last.x + kAppendedDistance, kMaxEnvelopeX)), last.y};
}

EnvelopePoint Between(const EnvelopePoint& left, const EnvelopePoint& right) {
    return {static_cast<std::uint16_t>(left.x + (right.x - left.x) / 2),
            static_cast<std::uint16_t>(left.y + (right.y - left.y) / 2)};
}

// What an edit changes goes out field by field: a sounding note reads the envelope meanwhile.
void Publish(Envelope& shared, const Envelope& edited) {
    for (std::size_t i = 0; i < edited.points.size(); ++i) {
        Store(shared.points[i].x, edited.points[i].x);
        Store(shared.points[i].y, edited.points[i].y);
    }
    Store(shared.numPoints, edited.numPoints);
    Store(shared.sustainPoint, edited.sustainPoint);
    Store(shared.loopStart, edited.loopStart);
    Store(shared.loopEnd, edited.loopEnd);
}

}  // namespace

void Envelope::InsertPoint(int after) {
    if (after < 0 || after >= numPoints || numPoints >= kEnvelopePoints) return;
    Envelope edited = *this;
    const auto left = edited.points.begin() + after;
    const auto end = edited.points.begin() + numPoints;
    const auto place = left + 1;
    const EnvelopePoint point = place == end ? PointBehind(*left) : Between(*left, *place);
    std::move_backward(place, end, end + 1);
    *place = point;
    ++edited.numPoints;
    Publish(*this, Repaired(edited));
}

void Envelope::DeletePoint(int index) {
    const int used = UsedPoints(*this);
    if (index < 1 || index >= used) return;
    Envelope edited = *this;
    edited.numPoints = static_cast<std::uint8_t>(used - 1);
    std::move(edited.points.begin() + index + 1, edited.points.begin() + used, edited.points.begin() + index);
    Publish(*this, Repaired(edited));
}

void Envelope::Validate() { Publish(*this, Repaired(*this)); }

}  // namespace vonta
