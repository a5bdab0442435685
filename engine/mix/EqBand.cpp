#include "engine/mix/EqBand.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "engine/mix/RunningState.h"

namespace vonta {

namespace {

constexpr double kMinFrequency = 1.0;            // Hz
constexpr double kMaxOfRate = 0.49;              // from half the rate on the band would be unstable
constexpr double kMaxGain = 100.0;               // dB either way; songs hold 25 at most

double Bounded(double value, double low, double high) {
    return value > low ? std::min(value, high) : low;       // NaN gives low
}

}  // namespace

void EqBand::Set(float sampleRate, float frequency, float gain) {
    const double rate = std::max(static_cast<double>(sampleRate), kMinFrequency / kMaxOfRate);
    const double hertz = Bounded(frequency, kMinFrequency, kMaxOfRate * rate);
    const double decibels = std::isnan(gain) ? 0.0 : Bounded(gain, -kMaxGain, kMaxGain);

    const double A = std::pow(10.0, decibels * 0.025);
    const double w = 2.0 * std::numbers::pi * hertz / rate;
    const double a = std::sin(w) * 0.5;
    const double a0 = 1.0 + a / A;
    b0_ = static_cast<float>((1.0 + a * A) / a0);
    b1_ = static_cast<float>(-2.0 * std::cos(w) / a0);
    b2_ = static_cast<float>((1.0 - a * A) / a0);
    a1_ = b1_;
    a2_ = static_cast<float>((1.0 - a / A) / a0);
}

void EqBand::Process(State& state, float* samples, int frames) {
    RunState(state, samples, frames, [b0 = b0_, b1 = b1_, b2 = b2_, a1 = a1_, a2 = a2_](State& st, float x) {
        auto& [x1, x2, y1, y2] = st;
        const float y = b1 * x1 + b2 * x2 + b0 * x - a1 * y1 - a2 * y2;
        x2 = x1;
        x1 = x;
        y2 = y1;
        return y1 = y;
    });
}

}  // namespace vonta
