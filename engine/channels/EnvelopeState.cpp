#include "engine/channels/EnvelopeState.h"

#include <algorithm>

#include "platform/Shared.h"

namespace vonta {

namespace {

// The curve while the interface may be editing it: every number is read once and held within its range.
class Curve {
public:
    explicit Curve(const Envelope& envelope)
        : envelope_(envelope), last_(std::clamp<int>(Load(envelope.numPoints), 1, kEnvelopePoints) - 1) {}

    int Last() const { return last_; }
    float X(int point) const { return Load(envelope_.points[std::min(point, kEnvelopePoints - 1)].x); }
    float Y(int point) const { return Load(envelope_.points[point].y); }

    // The last point at or before the position; the first if there is none.
    int PointAt(float position) const {
        for (int i = last_; i > 0; --i)
            if (X(i) <= position) return i;
        return 0;
    }
    float ValueBetween(int point, float position) const {
        const float x = X(point), distance = X(point + 1) - x;
        if (distance == 0) return Y(point);
        const float t = (position - x) / distance;
        return (1 - t) * Y(point) + t * Y(point + 1);
    }

private:
    const Envelope& envelope_;
    int last_;
};

}  // namespace

void AdvanceEnvelope(EnvelopeState& state, bool keyOff, float step) {
    if (!state.on || !state.envelope) return;
    const Envelope& envelope = *state.envelope;
    const Curve curve(envelope);
    const int point = curve.PointAt(state.position);
    float value = curve.Y(point);
    if (point < curve.Last()) {
        value = curve.ValueBetween(point, state.position);
        state.position += Load(envelope.timeBased) == 1 ? step : 1.0f;
        if (Load(envelope.sustainOn) && !keyOff)
            state.position = std::min(state.position, curve.X(Load(envelope.sustainPoint)));
        if (Load(envelope.loopOn) && curve.X(Load(envelope.loopEnd)) <= state.position)
            state.position = curve.X(Load(envelope.loopStart));
    }
    state.value = static_cast<std::int32_t>(std::clamp(value, 0.0f, static_cast<float>(kMaxEnvelopeY)));
}

}  // namespace vonta
