#include "engine/mix/Filter.h"

#include <algorithm>
#include <cmath>

#include "engine/mix/RunningState.h"

namespace vonta {
namespace {

// Radians per Hz at 44100 Hz, of the older and the newer designs.
constexpr double kRadians1 = 0.00014247619;
constexpr double kRadians2 = 0.00014247166;
constexpr float kMinCutoff = 1.0f, kMaxCutoff = 10000.0f;
constexpr float kMinResonance = 0.01f;
constexpr float kMaxResonance = 1000.0f;         // a damaged song's; keeps every coefficient finite
constexpr float kFirstCutoff = 500.0f, kFirstResonance = 0.95f;

struct FilterNames { std::string_view filter, control1, control2; };
constexpr std::array<FilterNames, kFilterTypes> kNames{{
    {"", "", ""},
    {"LPF 2P", "Cutoff", "Q"},
    {"LPF", "Cutoff", "Q"},
    {"LPF 2", "Cutoff", "Q"},
    {"Bandpass", "Freq.", "Amount"},
    {"Notch", "Freq.", "Amount"},
    {"LPF 3", "None", "Amount"},
    {"Allpass", "Freq.", "Amount"},
    {"DC Removal", "None", "None"},
}};

float BoundCutoff(float f) { return f > kMinCutoff ? std::min(f, kMaxCutoff) : kMinCutoff; }              // NaN too
float BoundResonance(float r) { return r > kMinResonance ? std::min(r, kMaxResonance) : kMinResonance; }

template <int type, int stateSize>
class StateFilter : public Filter {
public:
    void Reset() override { state_.fill(0); }
    std::string_view GetName(int parameter) const override {
        const FilterNames& names = kNames[type];
        return parameter == 1 ? names.control1 : parameter == 2 ? names.control2 : names.filter;
    }

protected:
    using State = std::array<float, stateSize>;
    State state_{};
};

class NoFilter final : public StateFilter<0, 0> {
public:
    void Process(float*, int) override {}
    void SetCutoff(float) override {}
    void SetResonance(float) override {}
};

// Two one-pole stages with feedback of their difference.
class LowPass2Pole final : public StateFilter<1, 2> {
public:
    LowPass2Pole() { SetCutoff(kFirstCutoff); SetResonance(kFirstResonance); }
    void SetCutoff(float value) override {
        const double a = 2.0 - 2.0 * std::cos(BoundCutoff(value) * kRadians1);
        a_ = static_cast<float>(a);
        b_ = static_cast<float>(1.0 - a);
        if (b_ == 0.0f) b_ = kSmallestB;
    }
    void SetResonance(float value) override { g_ = (1.0f / b_ + 1.0f) * BoundResonance(value); }
    void Process(float* samples, int frames) override {
        RunState(state_, samples, frames, [a = a_, b = b_, g = g_](State& st, float x) {
            auto& [s, t] = st;
            s = ((s - t) * g + x) * a + s * b;
            return t = b * t + s * a;
        });
    }

private:
    static constexpr float kSmallestB = 1e-7f;   // b passes through 0 at 7350 Hz
    float a_ = 0, b_ = 1, g_ = 0;
};

// A mass on a spring: v is the speed, damped by d at each frame.
template <int type>
class SpringLowPass : public StateFilter<type, 2> {
public:
    void Process(float* samples, int frames) override {
        RunState(this->state_, samples, frames, [a = a_, d = d_](auto& st, float x) {
            auto& [y1, v] = st;
            v = (x - y1) * a + v;
            y1 = y1 + v;
            v = v * d;
            return y1;
        });
    }

protected:
    float a_ = 0, d_ = 0;
};

class LowPass final : public SpringLowPass<2> {
public:
    LowPass() { SetCutoff(kFirstCutoff); SetResonance(kFirstResonance); }
    void SetCutoff(float value) override {
        a_ = static_cast<float>(2.0 - 2.0 * std::cos(BoundCutoff(value) * kRadians1));
    }
    void SetResonance(float value) override { d_ = BoundResonance(value); }
};

class LowPass2 final : public SpringLowPass<3> {
public:
    LowPass2() { SetCutoff(kFirstCutoff); SetResonance(kFirstResonance); }
    void SetCutoff(float value) override {
        cosine_ = std::cos(BoundCutoff(value) * kRadians2);
        a_ = static_cast<float>(2.0 - 2.0 * cosine_);
    }
    void SetResonance(float value) override {
        const double below = cosine_ - 1.0, scaled = below * BoundResonance(value);
        const double d = (std::sqrt(-(below * below * below)) * std::sqrt(2.0) + scaled) / scaled;
        d_ = std::max(static_cast<float>(d), kMinDamping);
    }

private:
    static constexpr float kMinDamping = 0.01f;
    double cosine_ = 0;
};

class BandPass final : public StateFilter<4, 2> {
public:
    void SetCutoff(float value) override { cosine_ = std::cos(BoundCutoff(value) * kRadians2); }
    void SetResonance(float value) override {
        const double c = cosine_, r = BoundResonance(value);
        b0_ = static_cast<float>(std::sqrt(std::max((r - 4.0 * c * c + 2.0) * r + 1.0, 0.0)) * (1.0 - r));
        b1_ = static_cast<float>(2.0 * c * r);
        b2_ = static_cast<float>(-r * r);
    }
    void Process(float* samples, int frames) override {
        RunState(state_, samples, frames, [b0 = b0_, b1 = b1_, b2 = b2_](State& st, float x) {
            auto& [y1, y2] = st;
            const float y = b2 * y2 + b1 * y1 + b0 * x;
            y2 = y1;
            return y1 = y;
        });
    }

private:
    double cosine_ = 1;
    float b0_ = 1, b1_ = 0, b2_ = 0;
};

class Notch final : public StateFilter<5, 4> {
public:
    void SetCutoff(float value) override { cosine_ = std::cos(BoundCutoff(value) * kRadians2); }
    void SetResonance(float value) override {
        const double c = cosine_, r = BoundResonance(value);
        const double g = (1.0 - r) * (1.0 - r) / (2.0 * (std::abs(c) + 1.0)) + r;
        b0_ = static_cast<float>(g);
        b1_ = static_cast<float>(-2.0 * g * c);
        b2_ = static_cast<float>(2.0 * r * c);
        b3_ = static_cast<float>(-r * r);
    }
    void Process(float* samples, int frames) override {
        RunState(state_, samples, frames, [b0 = b0_, b1 = b1_, b2 = b2_, b3 = b3_](State& st, float x) {
            auto& [x1, x2, y1, y2] = st;
            const float y = (x + x2) * b0 + x1 * b1 + y1 * b2 + y2 * b3;
            x2 = x1;
            x1 = x;
            y2 = y1;
            return y1 = y;
        });
    }

private:
    double cosine_ = 1;
    float b0_ = 1, b1_ = 0, b2_ = 0, b3_ = 0;
};

class LowPass3 final : public StateFilter<6, 1> {
public:
    void SetCutoff(float) override {}
    void SetResonance(float value) override { d_ = BoundResonance(value); }
    void Process(float* samples, int frames) override {
        RunState(state_, samples, frames, [d = d_](State& st, float x) {
            auto& [y1] = st;
            return y1 = (x - y1) * d + y1;
        });
    }

private:
    float d_ = 1;
};

class AllPass final : public StateFilter<7, 4> {
public:
    void SetCutoff(float value) override {
        const double angle = BoundCutoff(value) * kRadians2;
        cosine_ = std::cos(angle);
        sine_ = std::sin(angle);
    }
    void SetResonance(float value) override {
        const double r = BoundResonance(value), i = 1.0 / r;
        const double p = i * cosine_, q = i * sine_, u = cosine_ * r, w = sine_ * r;
        g0_ = static_cast<float>(r * r);
        g1_ = static_cast<float>(-2.0 * r * r * p);
        g2_ = static_cast<float>((q * q + p * p) * r * r);
        g3_ = static_cast<float>(2.0 * u);
        g4_ = static_cast<float>(-w * w - u * u);
    }
    void Process(float* samples, int frames) override {
        RunState(state_, samples, frames,
                 [g0 = g0_, g1 = g1_, g2 = g2_, g3 = g3_, g4 = g4_](State& st, float x) {
            auto& [x1, x2, y1, y2] = st;
            const float y = g3 * y1 + g2 * x2 + g1 * x1 + g0 * x + g4 * y2;
            x2 = x1;
            x1 = x;
            y2 = y1;
            return y1 = y;
        });
    }

private:
    double cosine_ = 1, sine_ = 0;
    float g0_ = 1, g1_ = 0, g2_ = 0, g3_ = 0, g4_ = 0;
};

// Follows the mean slowly and takes it away.
class DcRemoval final : public StateFilter<8, 2> {
public:
    void SetCutoff(float) override {}
    void SetResonance(float) override {}
    void Process(float* samples, int frames) override {
        RunState(state_, samples, frames, [](State& st, float x) {
            auto& [y1, v] = st;
            v = (x - y1) * kPull + v;
            y1 = y1 + v;
            v = v * kDamping;
            return x - y1;
        });
    }

private:
    static constexpr float kPull = 4.567e-6f, kDamping = 0.96f;
};

}  // namespace

FilterBank MakeFilterBank() {
    return {std::make_unique<NoFilter>(), std::make_unique<LowPass2Pole>(), std::make_unique<LowPass>(),
            std::make_unique<LowPass2>(), std::make_unique<BandPass>(),     std::make_unique<Notch>(),
            std::make_unique<LowPass3>(), std::make_unique<AllPass>(),      std::make_unique<DcRemoval>()};
}

}  // namespace vonta
