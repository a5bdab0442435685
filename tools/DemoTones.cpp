// The tuned waves: sums of sines.
#include <cmath>
#include <functional>
#include <numbers>

#include "tools/DemoWaves.h"
#include "tools/WaveMath.h"

namespace vonta::demo {
namespace {

constexpr double kTau = 2.0 * std::numbers::pi;

// The sine of the harmonics of one cycle, looked up: a long additive wave costs a table read per partial and frame.
class SineTable {
public:
    static constexpr int kSize = 1 << 14;

    SineTable() : values_(kSize) {
        for (int i = 0; i < kSize; ++i)
            values_[static_cast<std::size_t>(i)] = static_cast<float>(std::sin(kTau * i / kSize));
    }
    // cycles: phase in turns, zero or more.
    float At(double cycles) const {
        const double turn = cycles - std::floor(cycles);
        return values_[static_cast<std::size_t>(turn * kSize) & (kSize - 1)];
    }

private:
    std::vector<float> values_;
};

const SineTable& Sine() {
    static const SineTable table;
    return table;
}

using Spectrum = std::function<double(int harmonic)>;    // amplitude of a harmonic, from 1

Wave MakeCycle(int harmonics, const Spectrum& spectrum) {
    Wave wave(kFramesPerCycle);
    for (int h = 1; h <= harmonics; ++h) {
        const double amplitude = spectrum(h);
        for (int i = 0; i < kFramesPerCycle; ++i)
            wave[static_cast<std::size_t>(i)] +=
                static_cast<float>(amplitude * std::sin(kTau * h * i / kFramesPerCycle));
    }
    return wave;
}

// One of several oscillators that sound together over a loop of `cycles` cycles: it runs through `extraCycles` more,
// or fewer, so that the loop closes however it is detuned.
struct DetunedVoice {
    int extraCycles;
    double startTurn;         // phase at the loop's start
    float left, right;        // levels; a mono wave takes the left one
};

template <std::size_t count>
Wave MakeEnsemble(const DetunedVoice (&voices)[count], int cycles, int channels, const Wave& cycle) {
    const int frames = cycles * kFramesPerCycle;
    Wave wave(static_cast<std::size_t>(frames * channels));
    for (const DetunedVoice& voice : voices)
        for (int i = 0; i < frames; ++i) {
            const double turn = voice.startTurn + static_cast<double>(cycles + voice.extraCycles) * i / frames;
            const double at = (turn - std::floor(turn)) * kFramesPerCycle;
            const auto index = static_cast<std::size_t>(at);
            const float next = cycle[(index + 1) % cycle.size()];
            const float value = cycle[index % cycle.size()] +
                                (next - cycle[index % cycle.size()]) * static_cast<float>(at - std::floor(at));
            wave[static_cast<std::size_t>(i * channels)] += value * voice.left;
            if (channels == 2) wave[static_cast<std::size_t>(2 * i + 1)] += value * voice.right;
        }
    return Normalised(std::move(wave));
}

// Two operators: the second bends the phase of the first.
double PhaseModulated(double turn, double ratio, double index) {
    return Sine().At(turn + index * Sine().At(ratio * turn) + 8.0);
}

}  // namespace

Wave MakeBass(int harmonics) {
    return Normalised(MakeCycle(harmonics, [](int h) {
        const double saw = 1.0 / h, square = h % 2 ? 1.0 / h : 0.0, body = h == 1 ? 0.9 : 0.0;
        return 0.6 * saw + 0.5 * square + body;
    }));
}

Wave MakeSquare(int harmonics) {
    return Normalised(MakeCycle(harmonics, [](int h) { return h % 2 ? 1.0 / h : 0.0; }));
}

Wave MakeLead(int harmonics) {
    // A saw with a pulse of a quarter: bright, with a nasal middle.
    const Wave cycle = MakeCycle(harmonics, [](int h) {
        return (0.7 + 0.5 * std::abs(std::sin(std::numbers::pi * h * 0.25))) / std::pow(h, 1.15);
    });
    constexpr DetunedVoice kVoices[] = {{0, 0.0, 1.0f, 0}, {1, 0.37, 0.55f, 0}, {-1, 0.71, 0.55f, 0}};
    return MakeEnsemble(kVoices, 160, 1, cycle);
}

Wave MakePad(int harmonics) {
    const Wave cycle = MakeCycle(harmonics, [](int h) { return 1.0 / std::pow(h, 1.1); });
    constexpr DetunedVoice kVoices[] = {{0, 0.00, 0.5f, 0.5f}, {1, 0.23, 0.9f, 0.2f},  {-1, 0.61, 0.2f, 0.9f},
                                        {2, 0.45, 0.2f, 0.6f}, {-2, 0.83, 0.6f, 0.2f}};
    return MakeEnsemble(kVoices, 256, 2, cycle);
}

Wave MakePluck(int harmonics) {
    constexpr int kCycles = 300;
    Wave wave(kCycles * kFramesPerCycle);
    for (int h = 1; h <= harmonics; ++h) {
        // Plucked at a seventh of the string: every seventh harmonic is missing, and the high ones die first.
        const double amplitude = std::abs(std::sin(std::numbers::pi * h / 7.0)) / h;
        const double decay = std::exp(-(0.011 + 0.006 * h) / kFramesPerCycle);
        double level = amplitude;
        for (std::size_t i = 0; i < wave.size(); ++i, level *= decay)
            wave[i] += static_cast<float>(level) * Sine().At(static_cast<double>(h) * static_cast<double>(i) / kFramesPerCycle);
    }
    FadeEnd(wave, 20 * kFramesPerCycle);
    return Normalised(std::move(wave));
}

Wave MakeKeys(int harmonics) {
    constexpr int kCycles = 700;
    // An electric piano: a soft tone whose bite fades, and a short metallic tine above it.
    const double tine = harmonics >= 14 ? 14.0 : 7.0;
    Wave wave(kCycles * kFramesPerCycle);
    for (std::size_t i = 0; i < wave.size(); ++i) {
        const double turn = static_cast<double>(i) / kFramesPerCycle;
        const double body = PhaseModulated(turn, 1.0, 0.22 * std::exp(-turn / 110.0)) * std::exp(-turn / 190.0);
        const double strike = PhaseModulated(turn, tine, 0.10 * std::exp(-turn / 22.0)) * std::exp(-turn / 60.0);
        wave[i] = static_cast<float>(body + 0.45 * strike);
    }
    FadeEnd(wave, 40 * kFramesPerCycle);
    return Normalised(std::move(wave));
}

}  // namespace vonta::demo
