// The drums and noises, at 44100 Hz.
#include <cmath>
#include <cstdint>
#include <numbers>

#include "tools/DemoWaves.h"
#include "tools/WaveMath.h"

namespace vonta::demo {
namespace {

constexpr double kTau = 2.0 * std::numbers::pi;

// White noise from -1 to 1, the same at every run.
class Noise {
public:
    explicit Noise(std::uint32_t seed) : state_(seed) {}
    double Next() {
        state_ ^= state_ << 13;
        state_ ^= state_ >> 17;
        state_ ^= state_ << 5;
        return static_cast<double>(state_) / 2147483648.0 - 1.0;
    }

private:
    std::uint32_t state_;
};

// A state-variable filter, two poles, all outputs at once.
class Sieve {
public:
    void Tune(double hz, double damping) {
        f_ = 2.0 * std::sin(std::numbers::pi * std::min(hz, 7000.0) / kDrumRate);
        damping_ = damping;
    }
    void Feed(double input) {
        low_ += f_ * band_;
        high_ = input - low_ - damping_ * band_;
        band_ += f_ * high_;
    }
    double Band() const { return band_; }
    double High() const { return high_; }

private:
    double f_ = 0.1, damping_ = 1.0, low_ = 0, band_ = 0, high_ = 0;
};

Wave Silence(double seconds) { return Wave(static_cast<std::size_t>(seconds * kDrumRate)); }

// A sine whose pitch falls from `from` to `to` Hz: the body of every drum with a skin.
class FallingSine {
public:
    FallingSine(double from, double to, double fallSeconds) : from_(from), to_(to), fall_(fallSeconds) {}
    double At(double seconds) {
        const double value = std::sin(kTau * turn_);
        turn_ += (to_ + (from_ - to_) * std::exp(-seconds / fall_)) / kDrumRate;
        return value;
    }

private:
    double from_, to_, fall_, turn_ = 0;
};

// Calls value(seconds) for each frame; the end is faded.
template <class Value>
Wave Render(double seconds, Value value) {
    Wave wave = Silence(seconds);
    for (std::size_t i = 0; i < wave.size(); ++i)
        wave[i] = static_cast<float>(value(static_cast<double>(i) / kDrumRate));
    FadeEnd(wave, wave.size() / 5);
    return Normalised(std::move(wave));
}

// The clangour of a cymbal: six squares whose pitches have no common measure.
double Metal(double seconds) {
    double sum = 0;
    for (const double hz : {2076.0, 3089.0, 3727.0, 4653.0, 5463.0, 8219.0})
        sum += std::fmod(seconds * hz, 1.0) < 0.5 ? 1.0 : -1.0;
    return sum / 6.0;
}

}  // namespace

Wave MakeKick() {
    FallingSine body(210, 47, 0.035);
    Noise noise(11);
    return Render(0.42, [&](double t) {
        const double click = noise.Next() * std::exp(-t / 0.004) * 0.6;
        return std::tanh(1.6 * (body.At(t) * std::exp(-t / 0.16) + click));
    });
}

Wave MakeSnare() {
    FallingSine low(230, 178, 0.02), high(400, 331, 0.02);
    Noise noise(23);
    Sieve sieve;
    sieve.Tune(1500, 1.2);
    return Render(0.32, [&](double t) {
        sieve.Feed(noise.Next());
        const double skin = (low.At(t) + 0.5 * high.At(t)) * std::exp(-t / 0.055);
        return std::tanh(0.9 * skin + 1.1 * sieve.High() * std::exp(-t / 0.085));
    });
}

Wave MakeClap() {
    Noise noise(37);
    Sieve sieve;
    sieve.Tune(1150, 0.55);
    return Render(0.35, [&](double t) {
        sieve.Feed(noise.Next());
        double hands = 0;                      // three pairs, then the room
        for (const double start : {0.0, 0.011, 0.023})
            if (t >= start) hands = std::exp(-(t - start) / 0.006);
        const double room = t > 0.03 ? 0.6 * std::exp(-(t - 0.03) / 0.075) : 0.0;
        return sieve.Band() * (hands + room);
    });
}

Wave MakeHat(double seconds) {
    Noise noise(41);
    Sieve sieve;
    sieve.Tune(6900, 1.1);
    return Render(seconds, [&, ring = seconds / 4.5](double t) {
        sieve.Feed(0.6 * Metal(t) + 0.5 * noise.Next());
        return sieve.High() * std::exp(-t / ring);
    });
}

Wave MakeTom() {
    FallingSine body(190, 110, 0.05);
    Noise noise(53);
    return Render(0.55, [&](double t) {
        return body.At(t) * std::exp(-t / 0.17) + 0.12 * noise.Next() * std::exp(-t / 0.02);
    });
}

Wave MakeCrash() {
    Noise noise(67);
    Sieve left, right;
    left.Tune(4300, 1.0);
    right.Tune(4700, 1.0);
    Wave wave(2 * static_cast<std::size_t>(2.6 * kDrumRate));
    for (std::size_t i = 0; i < wave.size(); i += 2) {
        const double t = static_cast<double>(i / 2) / kDrumRate;
        const double level = 0.7 * std::exp(-t / 0.55) + 0.3 * std::exp(-t / 0.06);
        left.Feed(0.5 * Metal(t * 0.93) + 0.9 * noise.Next());
        right.Feed(0.5 * Metal(t * 1.07) + 0.9 * noise.Next());
        wave[i] = static_cast<float>(left.High() * level);
        wave[i + 1] = static_cast<float>(right.High() * level);
    }
    FadeEnd(wave, wave.size() / 4);
    return Normalised(std::move(wave));
}

Wave MakeRiser() {
    constexpr double kSeconds = 4.2;
    Noise noise(79);
    Sieve sieve;
    Wave wave = Silence(kSeconds);
    for (std::size_t i = 0; i < wave.size(); ++i) {
        const double way = static_cast<double>(i) / static_cast<double>(wave.size());
        sieve.Tune(250.0 * std::pow(24.0, way), 0.35);
        sieve.Feed(noise.Next());
        wave[i] = static_cast<float>(sieve.Band() * (0.04 + 0.96 * way * way * way));
    }
    FadeEnd(wave, 2000);
    return Normalised(std::move(wave));
}

}  // namespace vonta::demo
